#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/lexical_cast.hpp>
#include <fmt/compile.h>
#include <fmt/format.h>

#include "core_api/utils/Matrix.h"

namespace {

using vantorix::core::utils::Matrix;

enum Shape { POSE, TRANSLATION };

/// A thousand matrices, the same in every run.
std::vector<Matrix> makeMatrices(Shape shape) {
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

std::string withOurText(const Matrix& matrix) { return matrix.toEventDataString(); }

std::string withFmt(const Matrix& matrix) {
    fmt::memory_buffer buffer;
    for (int i = 0; i < 16; ++i) {
        if (i > 0) buffer.push_back(' ');
        fmt::format_to(std::back_inserter(buffer), FMT_COMPILE("{}"), matrix[i]);
    }
    return fmt::to_string(buffer);
}

std::string withLexicalCast(const Matrix& matrix) {
    std::string text;
    for (int i = 0; i < 16; ++i) {
        if (i > 0) text += ' ';
        text += boost::lexical_cast<std::string>(matrix[i]);
    }
    return text;
}

void matrixText(benchmark::State& state, std::string (*write)(const Matrix&), Shape shape) {
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
BENCHMARK_CAPTURE(matrixText, pose, withOurText, POSE);
BENCHMARK_CAPTURE(matrixText, poseFmt, withFmt, POSE);
BENCHMARK_CAPTURE(matrixText, poseLexicalCast, withLexicalCast, POSE);
BENCHMARK_CAPTURE(matrixText, translation, withOurText, TRANSLATION);
BENCHMARK_CAPTURE(matrixText, translationFmt, withFmt, TRANSLATION);
BENCHMARK_CAPTURE(matrixText, translationLexicalCast, withLexicalCast, TRANSLATION);

}  // namespace
