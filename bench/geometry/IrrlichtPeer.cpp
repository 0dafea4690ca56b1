#include <cmath>
#include <irrlicht/irrlicht.h>

#include <benchmark/benchmark.h>

#include "bench/TorusGrid.h"

namespace vantorix::bench {
namespace {

/// The torus in a mesh buffer with long indices, and a device without a window to work on it.
struct IrrlichtTorus {
    explicit IrrlichtTorus(int side) : grid(side) {
        irr::SIrrlichtCreationParameters parameters;
        parameters.DeviceType = irr::EIDT_CONSOLE;
        parameters.DriverType = irr::video::EDT_NULL;
        parameters.LoggingLevel = irr::ELL_NONE;
        device = irr::createDeviceEx(parameters);
        for (std::size_t i = 0; i < grid.positions.size(); i += 3) {
            const irr::core::vector3df position(grid.positions[i], grid.positions[i + 1],
                                                grid.positions[i + 2]);
            buffer.getVertexBuffer().push_back(irr::video::S3DVertex(position, {}, 0xffffffff, {}));
        }
        for (const unsigned int index : grid.indices) buffer.getIndexBuffer().push_back(index);
    }
    ~IrrlichtTorus() {
        if (device) device->drop();
    }
    IrrlichtTorus(const IrrlichtTorus&) = delete;
    IrrlichtTorus& operator=(const IrrlichtTorus&) = delete;

    TorusGrid grid;
    irr::IrrlichtDevice* device = nullptr;
    irr::scene::CDynamicMeshBuffer buffer{irr::video::EVT_STANDARD, irr::video::EIT_32BIT};
};

/// range(0): cells per side of the torus. Items are triangles.
void irrlichtNormals(benchmark::State& state) {
    IrrlichtTorus torus(static_cast<int>(state.range(0)));
    if (!torus.device) return state.SkipWithError("no device");
    auto* const manipulator = torus.device->getSceneManager()->getMeshManipulator();
    for (auto _ : state) manipulator->recalculateNormals(&torus.buffer, true, false);
    if (std::abs(torus.buffer.getNormal(0).getLength() - 1) > 1e-3f) {
        state.SkipWithError("wrong normals");
    }
    state.SetItemsProcessed(state.iterations() *
                            static_cast<std::int64_t>(torus.grid.triangleCount()));
}
BENCHMARK(irrlichtNormals)->Arg(70)->Arg(223)->Arg(707);

/// range(0): cells per side of the torus. Items are vertices.
void irrlichtBounds(benchmark::State& state) {
    IrrlichtTorus torus(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        torus.buffer.recalculateBoundingBox();
        if (torus.buffer.getBoundingBox().MaxEdge.X != 4.0f) state.SkipWithError("wrong box");
    }
    state.SetItemsProcessed(state.iterations() *
                            static_cast<std::int64_t>(torus.grid.pointCount()));
}
BENCHMARK(irrlichtBounds)->Arg(70)->Arg(223);

}  // namespace
}  // namespace vantorix::bench
