#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "core_api/utils/Matrix.h"

namespace vantorix::bench {

using core::utils::Matrix;

enum Shape { POSE, TRANSLATION };

/// A thousand matrices, the same in every run.
inline std::vector<Matrix> makeMatrices(Shape shape) {
    unsigned int seed = 1;
    const auto next = [&seed] {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
    };
    std::vector<Matrix> matrices(1000, Matrix(true));
    for (auto& matrix : matrices) {
        for (const int index : {12, 13, 14}) matrix[index] = 10.0f * next();
        if (shape == TRANSLATION) continue;
        for (const int index : {0, 1, 2, 4, 5, 6, 8, 9, 10}) matrix[index] = next();
    }
    return matrices;
}

/// Writes all matrices with @p write and reads the last text back.
inline void matrixText(benchmark::State& state, std::string (*write)(const Matrix&), Shape shape) {
    const auto matrices = makeMatrices(shape);
    for (auto _ : state) {
        for (const auto& matrix : matrices) benchmark::DoNotOptimize(write(matrix));
    }
    Matrix read(true);
    if (!Matrix::fromEventDataString(write(matrices.back()), read) ||
        std::memcmp(read.getMatrix(), matrices.back().getMatrix(), 16 * sizeof(float)) != 0) {
        state.SkipWithError("the text does not read back");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(matrices.size()));
}

}  // namespace vantorix::bench
