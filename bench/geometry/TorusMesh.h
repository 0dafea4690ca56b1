#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

namespace vantorix::bench {

/// A closed grid of @p side by @p side cells, two triangles each, with positions, normals and one
/// texture set. Every face has vertices of its own; a position is shared by six of them.
std::vector<boost::shared_ptr<scene::Triangle>> makeTorusTriangles(int side);

struct TorusMesh {
    boost::shared_ptr<scene::Mesh> mesh;
    boost::shared_ptr<scene::TriangleMeshPrimitive> primitive;
};

/// The triangles in a new mesh, equal values stored once.
TorusMesh addAll(const std::vector<boost::shared_ptr<scene::Triangle>>& triangles);

/// Positions only, reached through VERTEX.
TorusMesh makeBareTorus(int side);

}  // namespace vantorix::bench
