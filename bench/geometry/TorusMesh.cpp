#include "bench/geometry/TorusMesh.h"

#include <boost/make_shared.hpp>

#include "bench/TorusGrid.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Vertex.h"

namespace vantorix::bench {
namespace {

using namespace vantorix::scene;

boost::shared_ptr<Vertex> makeCorner(const TorusGrid& grid, std::size_t point) {
    const float* const position = &grid.positions[3 * point];
    const float* const normal = &grid.normals[3 * point];
    const float* const texture = &grid.textureCoordinates[2 * point];
    const auto corner = boost::make_shared<Vertex>();
    corner->setPosition(position[0], position[1], position[2]);
    corner->setNormal(normal[0], normal[1], normal[2]);
    corner->setTextCoord(0, texture[0], texture[1]);
    return corner;
}

}  // namespace

std::vector<boost::shared_ptr<Triangle>> makeTriangles(const TorusGrid& grid) {
    std::vector<boost::shared_ptr<Triangle>> triangles;
    triangles.reserve(grid.triangleCount());
    for (std::size_t i = 0; i < grid.indices.size(); i += 3) {
        triangles.push_back(boost::make_shared<Triangle>(makeCorner(grid, grid.indices[i]),
                                                         makeCorner(grid, grid.indices[i + 1]),
                                                         makeCorner(grid, grid.indices[i + 2])));
    }
    return triangles;
}

std::vector<boost::shared_ptr<Triangle>> makeTorusTriangles(int side) {
    return makeTriangles(TorusGrid(side));
}

TorusMesh makeEmptyMesh() {
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    const auto primitive =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    mesh->addPrimitive(primitive);
    return {mesh, primitive};
}

TorusMesh addAll(const std::vector<boost::shared_ptr<Triangle>>& triangles) {
    auto torus = makeEmptyMesh();
    for (const auto& triangle : triangles) torus.primitive->addTriangle(triangle, true);
    return torus;
}

TorusMesh makeBareTorus(int side) {
    const TorusGrid grid(side);
    const auto stream = boost::make_shared<Stream>("position_stream", 3, false);
    stream->values = grid.positions;
    stream->count = static_cast<int>(grid.pointCount());
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    mesh->addStream(stream);
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    return {mesh, boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, grid.indices)};
}

}  // namespace vantorix::bench
