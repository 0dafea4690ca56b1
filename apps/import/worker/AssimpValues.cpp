#include "apps/import/worker/AssimpValues.h"

#include <algorithm>
#include <cmath>

namespace vantorix::apps::import {

std::string textOf(const aiString& text) {
    return std::string(text.data, std::min<std::size_t>(text.length, sizeof(text.data) - 1));
}

bool convertMatrix(const aiMatrix4x4& matrix, std::array<float, 16>& result) {
    std::array<float, 16> columns{};
    bool finite = true;
    for (unsigned int row = 0; row < 4; ++row) {
        for (unsigned int column = 0; column < 4; ++column) {
            columns[column * 4 + row] = matrix[row][column];
            finite = finite && std::isfinite(matrix[row][column]);
        }
    }
    if (finite) result = columns;
    return finite;
}

bool isFinite(const aiVector3D& vector) {
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

std::size_t repairFloats(std::vector<float>& values) {
    std::size_t repaired = 0;
    for (auto& value : values) {
        if (std::isfinite(value)) continue;
        value = 0.0f;
        ++repaired;
    }
    return repaired;
}

}  // namespace vantorix::apps::import
