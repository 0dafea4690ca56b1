#include <cstring>
#include <embree3/rtcore.h>
#include <limits>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"
#include "bench/spatial/RayCases.h"

namespace vantorix::bench {
namespace {

/// The torus in a scene of a device with one thread.
struct EmbreeTorus {
    explicit EmbreeTorus(const TorusGrid& grid) : device(rtcNewDevice("threads=1")) {
        scene = rtcNewScene(device);
        const auto geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
        void* const points =
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), grid.pointCount());
        std::memcpy(points, grid.positions.data(), grid.positions.size() * sizeof(float));
        void* const indices =
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned int), grid.triangleCount());
        std::memcpy(indices, grid.indices.data(), grid.indices.size() * sizeof(unsigned int));
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene, geometry);
        rtcReleaseGeometry(geometry);
        rtcCommitScene(scene);
    }
    ~EmbreeTorus() {
        rtcReleaseScene(scene);
        rtcReleaseDevice(device);
    }
    EmbreeTorus(const EmbreeTorus&) = delete;
    EmbreeTorus& operator=(const EmbreeTorus&) = delete;

    bool hits(const StraightLine& line) const {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit query{};
        query.ray.org_x = line.origin[0];
        query.ray.org_y = line.origin[1];
        query.ray.org_z = line.origin[2];
        query.ray.dir_x = line.direction[0];
        query.ray.dir_y = line.direction[1];
        query.ray.dir_z = line.direction[2];
        query.ray.tfar = std::numeric_limits<float>::infinity();
        query.ray.mask = ~0u;
        query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(scene, &context, &query);
        return query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    }

    RTCDevice device;
    RTCScene scene;
};

/// range(0): cells per side of the torus. Items are rays.
void embreeNearest(benchmark::State& state) {
    const EmbreeTorus torus(TorusGrid(static_cast<int>(state.range(0))));
    measureHits(state, [&torus](const StraightLine& line) { return torus.hits(line); });
}
BENCHMARK(embreeNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
