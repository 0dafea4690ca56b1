#include <benchmark/benchmark.h>

#include "bench/HeapBytes.h"
#include "bench/TorusGrid.h"
#include "bench/geometry/TorusMesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::bench {
namespace {

/// range(0): cells per side of the torus. Items are corners.
void addTriangleDeduplicated(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const auto triangles = makeTorusTriangles(side);
    double bytes = 0;
    for (auto _ : state) {
        const double before = heapBytes();
        const auto torus = addAll(triangles);
        bytes = heapBytes() - before;
        if (torus.mesh->getStream("position_stream")->count != side * side) {
            state.SkipWithError("wrong number of distinct positions");
            break;
        }
    }
    const auto corners = static_cast<std::int64_t>(triangles.size() * 3);
    state.SetItemsProcessed(state.iterations() * corners);
    state.SetComplexityN(corners);
    state.counters["bytesPerTriangle"] = 3 * bytes / static_cast<double>(corners);
}
BENCHMARK(addTriangleDeduplicated)->Arg(16)->Arg(70)->Arg(223)->Arg(707)->Complexity();

/// The same in one call from flat arrays.
void addTrianglesFromArrays(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    const auto positions = gather(grid.positions, 3, grid.indices);
    const auto normals = gather(grid.normals, 3, grid.indices);
    const auto texture = gather(grid.textureCoordinates, 2, grid.indices);
    for (auto _ : state) {
        const auto torus = makeEmptyMesh();
        torus.primitive->addTriangles({{scene::POSITION, 3, positions.data()},
                                       {scene::NORMAL, 3, normals.data()},
                                       {scene::TEXCOORD0, 2, texture.data()}},
                                      grid.triangleCount(), true);
        const auto points =
            static_cast<std::size_t>(torus.mesh->getStream("position_stream")->count);
        if (points != grid.pointCount()) state.SkipWithError("wrong number of distinct positions");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.indices.size()));
}
BENCHMARK(addTrianglesFromArrays)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
