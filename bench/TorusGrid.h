#pragma once

#include <cstddef>
#include <vector>

namespace vantorix::bench {

/// A closed grid of @p side by @p side cells, two triangles each, as flat arrays. Radius 3 in the
/// x-y plane, thickness 1; six triangles meet at each point.
struct TorusGrid {
    explicit TorusGrid(int side);

    std::size_t pointCount() const { return positions.size() / 3; }
    std::size_t triangleCount() const { return indices.size() / 3; }

    std::vector<float> positions;           ///< Three floats per point.
    std::vector<float> normals;             ///< Three floats per point.
    std::vector<float> textureCoordinates;  ///< Two floats per point.
    std::vector<unsigned int> indices;      ///< Points, three per triangle.
};

/// The tuples of @p size floats that @p indices name, one after the other.
std::vector<float> gather(const std::vector<float>& values, std::size_t size,
                          const std::vector<unsigned int>& indices);

}  // namespace vantorix::bench
