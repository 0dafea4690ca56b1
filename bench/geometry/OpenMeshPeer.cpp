#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Subdivider/Uniform/LoopT.hh>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"

namespace vantorix::bench {
namespace {

using HalfEdgeMesh = OpenMesh::TriMesh_ArrayKernelT<>;

HalfEdgeMesh makeMesh(const TorusGrid& grid) {
    HalfEdgeMesh mesh;
    std::vector<HalfEdgeMesh::VertexHandle> points;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3) {
        points.push_back(
            mesh.add_vertex({grid.positions[i], grid.positions[i + 1], grid.positions[i + 2]}));
    }
    for (std::size_t i = 0; i < grid.indices.size(); i += 3) {
        mesh.add_face(points[grid.indices[i]], points[grid.indices[i + 1]],
                      points[grid.indices[i + 2]]);
    }
    return mesh;
}

/// range(0): cells per side of the torus. One triangle becomes four, corners stay where they are.
/// Items are triangles before the split.
void openMeshSubdivide(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    const auto original = makeMesh(grid);
    for (auto _ : state) {
        state.PauseTiming();
        auto mesh = original;
        OpenMesh::Subdivider::Uniform::LoopT<HalfEdgeMesh> split;
        split.attach(mesh);
        state.ResumeTiming();
        split(1, false);
        state.PauseTiming();
        if (mesh.n_faces() != 4 * grid.triangleCount()) state.SkipWithError("wrong split");
        split.detach();
        mesh.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.triangleCount()));
}
BENCHMARK(openMeshSubdivide)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantorix::bench
