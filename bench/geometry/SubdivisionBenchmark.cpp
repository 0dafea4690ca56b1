#include <benchmark/benchmark.h>

#include "bench/geometry/TorusMesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::bench {
namespace {

/// One midpoint per edge, of which a torus has one and a half per triangle.
void checkPositions(benchmark::State& state, const scene::Mesh& mesh, int triangles) {
    const auto positions = mesh.getStream("VTX_SUBDIVIDE_POSITION_STREAM");
    if (!positions || positions->count != triangles / 2 + triangles * 3 / 2) {
        state.SkipWithError("wrong number of distinct positions");
    }
}

/// Splits what @p make gives, over and over. Items are triangles before the split.
template <typename Make>
void splitAgain(benchmark::State& state, const Make& make) {
    int triangles = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto torus = make();
        triangles = static_cast<int>(torus.primitive->getCount());
        state.ResumeTiming();
        torus.primitive->subDivide({});
        state.PauseTiming();
        checkPositions(state, *torus.mesh, triangles);
        torus = {};
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * triangles);
}

/// range(0): cells per side of the torus.
void subdividePositions(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    splitAgain(state, [side] { return makeBareTorus(side); });
}
BENCHMARK(subdividePositions)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

/// The same with normals and a texture set.
void subdivideAll(benchmark::State& state) {
    const auto triangles = makeTorusTriangles(static_cast<int>(state.range(0)));
    splitAgain(state, [&triangles] { return addAll(triangles); });
}
BENCHMARK(subdivideAll)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantorix::bench
