#include <array>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/HeapBytes.h"
#include "bench/TorusGrid.h"
#include "bench/geometry/TorusMesh.h"

namespace vantorix::bench {
namespace {

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

/// @name Faces in the plainest way: each object, list and float array in memory of its own
/// @{
struct PlainElement {
    scene::StreamSemantic semantic;
    std::vector<float> values;
};
struct PlainVertex {
    void add(scene::StreamSemantic semantic, const float* values, std::size_t count) {
        elements.push_back(std::make_shared<PlainElement>(
            PlainElement{semantic, std::vector<float>(values, values + count)}));
    }
    std::vector<std::shared_ptr<PlainElement>> elements;
};
struct PlainFace {
    virtual ~PlainFace() = default;
    std::vector<std::shared_ptr<PlainVertex>> vertices;
    std::array<Eigen::Vector3f, 3> positions;
    std::array<Eigen::Vector3f, 3> edges;
};
/// @}

std::shared_ptr<PlainVertex> makePlainVertex(const TorusGrid& grid, std::size_t point) {
    const auto vertex = std::make_shared<PlainVertex>();
    vertex->add(scene::POSITION, &grid.positions[3 * point], 3);
    vertex->add(scene::NORMAL, &grid.normals[3 * point], 3);
    vertex->add(scene::TEXCOORD0, &grid.textureCoordinates[2 * point], 2);
    return vertex;
}

std::shared_ptr<PlainFace> makePlainFace(const TorusGrid& grid, std::size_t face) {
    const auto made = std::make_shared<PlainFace>();
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const std::size_t point = grid.indices[3 * face + corner];
        made->vertices.push_back(makePlainVertex(grid, point));
        made->positions[corner] = Eigen::Map<const Eigen::Vector3f>(&grid.positions[3 * point]);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        made->edges[i] = made->positions[(i + 1) % 3] - made->positions[i];
    }
    return made;
}

/// What one allocation per object costs.
void makePlainFaces(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    double bytes = 0;
    for (auto _ : state) {
        const double before = heapBytes();
        std::vector<std::shared_ptr<PlainFace>> faces;
        for (std::size_t i = 0; i < grid.triangleCount(); ++i) {
            faces.push_back(makePlainFace(grid, i));
        }
        bytes = heapBytes() - before;
        if (faces.back()->vertices.size() != 3) state.SkipWithError("wrong faces");
    }
    const auto count = static_cast<std::int64_t>(grid.triangleCount());
    state.counters["bytesPerFace"] = bytes / static_cast<double>(count);
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(makePlainFaces)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
