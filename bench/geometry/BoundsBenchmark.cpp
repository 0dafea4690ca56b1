#include <benchmark/benchmark.h>

#include "bench/geometry/TorusMesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::bench {
namespace {

/// range(0): cells per side of the torus. Items are positions; larger meshes are sampled.
void boundsFromPositions(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const auto torus = makeBareTorus(side);
    for (auto _ : state) {
        scene::Mesh mesh("measured", "");
        mesh.setVertices(torus.mesh->getVertices());
        if (mesh.getBVMax().x() != 4.0f) state.SkipWithError("wrong box");
    }
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(boundsFromPositions)->Arg(70)->Arg(223);

/// The same through the index records of a primitive. Items are indices.
void boundsFromRecords(benchmark::State& state) {
    const auto torus = makeBareTorus(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(torus.primitive->clone(torus.mesh));
    const auto indices = static_cast<std::int64_t>(torus.primitive->getIndexStream().size());
    state.SetItemsProcessed(state.iterations() * indices);
}
BENCHMARK(boundsFromRecords)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
