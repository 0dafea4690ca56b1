#include <optional>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "bench/TorusGrid.h"
#include "bench/spatial/RayCases.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"

namespace vantorix::bench {
namespace {

using namespace vantorix::scene;

boost::shared_ptr<Mesh> makeTorus(const TorusGrid& grid) {
    const auto stream = boost::make_shared<Stream>("positions", 3, false);
    stream->values = grid.positions;
    stream->count = static_cast<int>(grid.pointCount());
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    mesh->addStream(stream);
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, grid.indices));
    return mesh;
}

struct TorusScene {
    explicit TorusScene(int side)
        : manager(
              boost::make_shared<SceneManager>(boost::make_shared<core::event::EventManager>())) {
        manager->stop();
        manager->getRoot()->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
            makeTorus(TorusGrid(side)), boost::shared_ptr<Material>()));
    }
    boost::shared_ptr<SceneManager> manager;
};

constexpr int deepest = 12;
constexpr int facesPerLeaf = 32;

std::size_t countFaces(const OctreeNode& node) {
    std::size_t count = node.getPrimitives().size();
    for (unsigned int i = 0; node.getChildAt(i); ++i) count += countFaces(*node.getChildAt(i));
    return count;
}

/// range(0): cells per side of the torus. Gathers and sorts its faces; items are faces.
void buildOctree(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const TorusScene torus(side);
    std::optional<Octree> octree;
    for (auto _ : state) {
        octree.emplace();
        octree->setSceneNode(torus.manager->getRoot());
        octree->calculate(deepest, facesPerLeaf);
        state.PauseTiming();
        const auto faces = static_cast<std::size_t>(2 * side * side);
        if (countFaces(*octree->getRoot()) < faces) state.SkipWithError("faces are lost");
        octree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 2 * side * side);
}
BENCHMARK(buildOctree)->Arg(70)->Arg(223)->Arg(707)->Unit(benchmark::kMillisecond);

/// range(0): cells per side of the torus. Items are rays.
void pickNearest(benchmark::State& state) {
    const TorusScene torus(static_cast<int>(state.range(0)));
    Octree octree;
    octree.setSceneNode(torus.manager->getRoot());
    octree.calculate(deepest, facesPerLeaf);
    measureHits(state, [&octree](const StraightLine& line) {
        const Ray ray(Eigen::Map<const Eigen::Vector3f>(line.origin.data()),
                      Eigen::Map<const Eigen::Vector3f>(line.direction.data()));
        return octree.pick(ray).has_value();
    });
}
BENCHMARK(pickNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
