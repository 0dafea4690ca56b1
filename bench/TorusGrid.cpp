#include "bench/TorusGrid.h"

#include <cmath>

namespace vantorix::bench {

TorusGrid::TorusGrid(int side) {
    const float step = 6.2831853f / static_cast<float>(side);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const float u = step * static_cast<float>(column);
            const float v = step * static_cast<float>(row);
            const float radius = 3 + std::cos(v);
            positions.insert(positions.end(),
                             {radius * std::cos(u), radius * std::sin(u), std::sin(v)});
            normals.insert(normals.end(),
                           {std::cos(v) * std::cos(u), std::cos(v) * std::sin(u), std::sin(v)});
            textureCoordinates.insert(textureCoordinates.end(), {u, v});
            const auto at = [&](int right, int up) {
                return static_cast<unsigned int>((row + up) % side * side +
                                                 (column + right) % side);
            };
            indices.insert(indices.end(),
                           {at(0, 0), at(1, 0), at(1, 1), at(0, 0), at(1, 1), at(0, 1)});
        }
    }
}

std::vector<float> gather(const std::vector<float>& values, std::size_t size,
                          const std::vector<unsigned int>& indices) {
    std::vector<float> gathered;
    gathered.reserve(indices.size() * size);
    for (const std::size_t index : indices) {
        for (std::size_t i = 0; i < size; ++i) gathered.push_back(values[index * size + i]);
    }
    return gathered;
}

}  // namespace vantorix::bench
