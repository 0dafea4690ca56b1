#include <BulletCollision/CollisionShapes/btBvhTriangleMeshShape.h>
#include <BulletCollision/CollisionShapes/btTriangleIndexVertexArray.h>
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"
#include "bench/spatial/RayCases.h"

namespace vantorix::bench {
namespace {

/// Refers to the grid, which has to stay.
btTriangleIndexVertexArray makeArray(TorusGrid& grid, std::vector<int>& indices) {
    indices.assign(grid.indices.begin(), grid.indices.end());
    btIndexedMesh part;
    part.m_numTriangles = static_cast<int>(grid.triangleCount());
    part.m_triangleIndexBase = reinterpret_cast<const unsigned char*>(indices.data());
    part.m_triangleIndexStride = 3 * sizeof(int);
    part.m_numVertices = static_cast<int>(grid.pointCount());
    part.m_vertexBase = reinterpret_cast<const unsigned char*>(grid.positions.data());
    part.m_vertexStride = 3 * sizeof(float);
    part.m_vertexType = PHY_FLOAT;
    btTriangleIndexVertexArray array;
    array.addIndexedMesh(part);
    return array;
}

/// range(0): cells per side of the torus. Items are faces.
void bulletBuild(benchmark::State& state) {
    TorusGrid grid(static_cast<int>(state.range(0)));
    std::vector<int> indices;
    auto array = makeArray(grid, indices);
    for (auto _ : state) {
        const btBvhTriangleMeshShape shape(&array, true);
        benchmark::DoNotOptimize(&shape);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(grid.triangleCount()));
}
BENCHMARK(bulletBuild)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

struct NearestHit : btTriangleRaycastCallback {
    using btTriangleRaycastCallback::btTriangleRaycastCallback;
    btScalar reportHit(const btVector3& /*normal*/, btScalar fraction, int /*part*/,
                       int /*triangle*/) override {
        isHit = true;
        return fraction;
    }
    bool isHit = false;
};

/// range(0): cells per side of the torus. Items are rays.
void bulletNearest(benchmark::State& state) {
    TorusGrid grid(static_cast<int>(state.range(0)));
    std::vector<int> indices;
    auto array = makeArray(grid, indices);
    btBvhTriangleMeshShape shape(&array, true);
    measureHits(state, [&shape](const StraightLine& line) {
        const btVector3 from(line.origin[0], line.origin[1], line.origin[2]);
        const btVector3 direction(line.direction[0], line.direction[1], line.direction[2]);
        const btVector3 to = from + direction * 2;  // Behind the torus.
        NearestHit nearest(from, to);
        shape.performRaycast(&nearest, from, to);
        return nearest.isHit;
    });
}
BENCHMARK(bulletNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
