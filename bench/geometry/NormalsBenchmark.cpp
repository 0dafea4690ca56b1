#include <cmath>

#include <benchmark/benchmark.h>

#include "bench/geometry/TorusMesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::bench {
namespace {

void checkNormals(benchmark::State& state, const scene::Stream& normals) {
    for (const float component : normals.values) {
        if (!(std::abs(component) <= 1.001f)) return state.SkipWithError("wrong normals");
    }
}

/// range(0): cells per side of the torus. Items are triangles; normals lie beside the positions.
void sharedNormals(benchmark::State& state) {
    const auto torus = makeBareTorus(static_cast<int>(state.range(0)));
    for (auto _ : state) torus.primitive->recalculateVertexNormals();
    checkNormals(state, *torus.mesh->getStream("VT_Calculated_Normals"));
    state.SetItemsProcessed(state.iterations() * torus.primitive->getCount());
}
BENCHMARK(sharedNormals)->Arg(70)->Arg(223)->Arg(707);

/// The same with a normal stream of the primitive's own, where equal normals are stored once.
void distinctNormals(benchmark::State& state) {
    const auto torus = addAll(makeTorusTriangles(static_cast<int>(state.range(0))));
    for (auto _ : state) torus.primitive->recalculateVertexNormals();
    checkNormals(state, *torus.mesh->getStream("NORMAL_stream"));
    state.SetItemsProcessed(state.iterations() * torus.primitive->getCount());
}
BENCHMARK(distinctNormals)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
