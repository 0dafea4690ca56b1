#include <meshoptimizer.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"

namespace vantorix::bench {
namespace {

/// range(0): cells per side of the torus. Each stream by itself, given as flat arrays. Items are
/// corners.
void meshoptimizerRemap(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    const auto positions = gather(grid.positions, 3, grid.indices);
    const auto normals = gather(grid.normals, 3, grid.indices);
    const auto texture = gather(grid.textureCoordinates, 2, grid.indices);
    const std::size_t corners = grid.indices.size();
    for (auto _ : state) {
        std::vector<unsigned int> remap(corners);
        const auto distinct = [&](const std::vector<float>& values) {
            return meshopt_generateVertexRemap(remap.data(), nullptr, corners, values.data(),
                                               corners, values.size() / corners * sizeof(float));
        };
        const std::size_t points = distinct(positions);
        benchmark::DoNotOptimize(distinct(normals));
        if (distinct(texture) != points) state.SkipWithError("wrong number of distinct values");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(corners));
}
BENCHMARK(meshoptimizerRemap)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
