#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

namespace vantorix::bench {

struct TorusGrid;

/// The triangles of @p grid with positions, normals and one texture set. Every face has vertices of
/// its own.
std::vector<boost::shared_ptr<scene::Triangle>> makeTriangles(const TorusGrid& grid);
std::vector<boost::shared_ptr<scene::Triangle>> makeTorusTriangles(int side);

struct TorusMesh {
    boost::shared_ptr<scene::Mesh> mesh;
    boost::shared_ptr<scene::TriangleMeshPrimitive> primitive;
};

/// A mesh with one primitive and no faces.
TorusMesh makeEmptyMesh();

/// The triangles in a new mesh, equal values stored once.
TorusMesh addAll(const std::vector<boost::shared_ptr<scene::Triangle>>& triangles);

/// Positions only, reached through VERTEX.
TorusMesh makeBareTorus(int side);

}  // namespace vantorix::bench
