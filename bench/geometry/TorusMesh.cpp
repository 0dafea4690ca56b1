#include "bench/geometry/TorusMesh.h"

#include <cmath>

#include <boost/make_shared.hpp>

#include "scene/geometry/Vertex.h"

namespace vantorix::bench {
namespace {

using namespace vantorix::scene;

boost::shared_ptr<Vertex> makeCorner(int side, int column, int row) {
    const float step = 6.2831853f / static_cast<float>(side);
    const float u = step * static_cast<float>(column % side);
    const float v = step * static_cast<float>(row % side);
    const auto corner = boost::make_shared<Vertex>();
    const float radius = 3 + std::cos(v);
    corner->setPosition(radius * std::cos(u), radius * std::sin(u), std::sin(v));
    corner->setNormal(std::cos(v) * std::cos(u), std::cos(v) * std::sin(u), std::sin(v));
    corner->setTextCoord(0, u, v);
    return corner;
}

}  // namespace

std::vector<boost::shared_ptr<Triangle>> makeTorusTriangles(int side) {
    std::vector<boost::shared_ptr<Triangle>> triangles;
    for (int cell = 0; cell < side * side; ++cell) {
        const int column = cell / side;
        const int row = cell % side;
        const auto corner = [&](int right, int up) {
            return makeCorner(side, column + right, row + up);
        };
        triangles.push_back(boost::make_shared<Triangle>(corner(0, 0), corner(1, 0), corner(1, 1)));
        triangles.push_back(boost::make_shared<Triangle>(corner(0, 0), corner(1, 1), corner(0, 1)));
    }
    return triangles;
}

TorusMesh addAll(const std::vector<boost::shared_ptr<Triangle>>& triangles) {
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    const auto primitive =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    mesh->addPrimitive(primitive);
    for (const auto& triangle : triangles) primitive->addTriangle(triangle, true);
    return {mesh, primitive};
}

TorusMesh makeBareTorus(int side) {
    const auto full = addAll(makeTorusTriangles(side));
    const auto& records = full.primitive->getIndexStream();
    const auto stride = static_cast<std::size_t>(full.primitive->getIndexStreamStride());
    std::vector<unsigned int> positions;
    for (std::size_t i = 0; i < records.size(); i += stride) positions.push_back(records[i]);
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    mesh->setVertices(full.mesh->getVertices());
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    return {mesh, boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, positions)};
}

}  // namespace vantorix::bench
