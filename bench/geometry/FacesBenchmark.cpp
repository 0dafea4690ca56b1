#include <malloc.h>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"
#include "bench/geometry/TorusMesh.h"

namespace vantorix::bench {
namespace {

double heapBytes() { return static_cast<double>(mallinfo2().uordblks); }

/// range(0): cells per side of the torus. Items are faces; they are released too.
void getPrimitives(benchmark::State& state) {
    const auto torus = addAll(makeTorusTriangles(static_cast<int>(state.range(0))));
    const std::size_t count = torus.primitive->getCount();
    double bytes = 0;
    for (auto _ : state) {
        const double before = heapBytes();
        const auto faces = torus.primitive->getPrimitives();
        bytes = heapBytes() - before;
        if (faces.size() != count) state.SkipWithError("wrong number of faces");
    }
    state.counters["bytesPerFace"] = bytes / static_cast<double>(count);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}
BENCHMARK(getPrimitives)->Arg(70)->Arg(223)->Arg(707);

/// What one allocation per object costs: the same faces out of plain vertices.
void makePlainFaces(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    double bytes = 0;
    for (auto _ : state) {
        const double before = heapBytes();
        const auto faces = makeTriangles(grid);
        bytes = heapBytes() - before;
        if (faces.size() != grid.triangleCount()) state.SkipWithError("wrong number of faces");
    }
    const auto count = static_cast<std::int64_t>(grid.triangleCount());
    state.counters["bytesPerFace"] = bytes / static_cast<double>(count);
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(makePlainFaces)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
