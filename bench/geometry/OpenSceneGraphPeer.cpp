#include <cmath>
#include <osgUtil/SmoothingVisitor>

#include <benchmark/benchmark.h>

#include "bench/HeapBytes.h"
#include "bench/OpenSceneGraphTorus.h"

namespace vantorix::bench {
namespace {

/// range(0): cells per side of the torus. Items are triangles.
void openSceneGraphNormals(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    const auto geometry = makeOpenSceneGraphTorus(grid);
    for (auto _ : state) osgUtil::SmoothingVisitor::smooth(*geometry, osg::PI);
    const auto* const normals = dynamic_cast<const osg::Vec3Array*>(geometry->getNormalArray());
    if (!normals || std::abs(normals->front().length() - 1) > 1e-3f) {
        state.SkipWithError("wrong normals");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.triangleCount()));
}
BENCHMARK(openSceneGraphNormals)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

/// range(0): cells per side of the torus. Heap bytes of a mesh with positions, normals and a
/// texture set, indexed once for all of them.
void openSceneGraphMemory(benchmark::State& state) {
    const TorusGrid grid(static_cast<int>(state.range(0)));
    double bytes = 0;
    for (auto _ : state) {
        const double before = heapBytes();
        const auto geometry = makeOpenSceneGraphTorus(grid);
        osg::ref_ptr<osg::Vec3Array> normals =
            new osg::Vec3Array(static_cast<unsigned int>(grid.pointCount()),
                               reinterpret_cast<const osg::Vec3*>(grid.normals.data()));
        geometry->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
        geometry->setTexCoordArray(
            0,
            new osg::Vec2Array(static_cast<unsigned int>(grid.pointCount()),
                               reinterpret_cast<const osg::Vec2*>(grid.textureCoordinates.data())));
        bytes = heapBytes() - before;
    }
    state.counters["bytesPerTriangle"] = bytes / static_cast<double>(grid.triangleCount());
}
BENCHMARK(openSceneGraphMemory)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
