#include <cmath>
#include <optional>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

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

/// A closed torus of side x side cells, two triangles each, in the x-y plane.
boost::shared_ptr<Mesh> makeTorus(int side) {
    std::vector<float> values;
    std::vector<unsigned int> indices;
    const float step = 6.2831853f / static_cast<float>(side);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const float u = step * static_cast<float>(column);
            const float v = step * static_cast<float>(row);
            const float radius = 3 + std::cos(v);
            values.insert(values.end(), {radius * std::cos(u), radius * std::sin(u), std::sin(v)});
            const auto at = [&](int right, int up) {
                return static_cast<unsigned int>((row + up) % side * side +
                                                 (column + right) % side);
            };
            indices.insert(indices.end(),
                           {at(0, 0), at(1, 0), at(1, 1), at(0, 0), at(1, 1), at(0, 1)});
        }
    }
    const auto stream = boost::make_shared<Stream>("positions", 3, false);
    stream->values = values;
    stream->count = side * side;
    const auto mesh = boost::make_shared<Mesh>("torus", "");
    mesh->addStream(stream);
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, indices));
    return mesh;
}

struct TorusScene {
    explicit TorusScene(int side)
        : manager(
              boost::make_shared<SceneManager>(boost::make_shared<core::event::EventManager>())) {
        manager->stop();
        manager->getRoot()->addInstanceGeometry(
            boost::make_shared<InstanceGeometry>(makeTorus(side), boost::shared_ptr<Material>()));
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

/// Rays from a sphere around the torus to points in its box.
std::vector<Ray> makeRays() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> between(-1, 1);
    std::vector<Ray> rays;
    while (rays.size() < 4096) {
        const Eigen::Vector3f from(between(random), between(random), between(random));
        const Eigen::Vector3f to(4 * between(random), 4 * between(random), between(random));
        const Eigen::Vector3f origin = from.normalized() * 10;
        rays.emplace_back(origin, to - origin);
    }
    return rays;
}

/// range(0): cells per side of the torus. Items are rays.
void pickNearest(benchmark::State& state) {
    const TorusScene torus(static_cast<int>(state.range(0)));
    Octree octree;
    octree.setSceneNode(torus.manager->getRoot());
    octree.calculate(deepest, facesPerLeaf);
    const auto rays = makeRays();
    std::size_t hits = 0;
    for (const auto& ray : rays) hits += octree.pick(ray).has_value();
    if (hits < rays.size() / 3) return state.SkipWithError("too few hits");
    std::size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(octree.pick(rays[next++ % rays.size()]));
    state.SetItemsProcessed(state.iterations());
    state.counters["hit"] = static_cast<double>(hits) / static_cast<double>(rays.size());
}
BENCHMARK(pickNearest)->Arg(70)->Arg(223)->Arg(707);

}  // namespace
}  // namespace vantorix::bench
