#include <string>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::bench {
namespace {

using scene::Node;
using scene::SceneManager;
using ScenePtr = boost::shared_ptr<SceneManager>;

enum Shape { TREE = 8, FLAT = 1 << 30 };
enum Options { RENAME = 0, MERGE_INTO_CHILD = 0x20 };

/// A scene of @p count nodes "n0", "n1", ..., each with at most @p shape children.
ScenePtr makeMergeScene(int count, int shape) {
    const auto scene = boost::make_shared<SceneManager>(nullptr);
    scene->getRoot()->setID("n0");
    std::vector<boost::shared_ptr<Node>> nodes{scene->getRoot()};
    for (int i = 1; i < count; ++i) {
        nodes.push_back(boost::make_shared<Node>(scene));
        nodes.back()->setID("n" + std::to_string(i));
        nodes.back()->addTranslation(1, 2, 3);
        nodes[static_cast<std::size_t>((i - 1) / shape)]->addNode(nodes.back());
    }
    return scene;
}

/// range(0): nodes of either scene, range(1): the shape of both trees, range(2): options. All IDs
/// clash; the receiving root stands below another one, so that trees can be merged node by node.
/// Items are nodes of the incoming scene.
void mergeScenes(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const int options = static_cast<int>(state.range(2));
    const auto source = makeMergeScene(count, static_cast<int>(state.range(1)));
    const auto expected = static_cast<std::size_t>(options == RENAME ? 2 * count + 1 : count + 1);
    for (auto _ : state) {
        state.PauseTiming();
        auto target = makeMergeScene(count, static_cast<int>(state.range(1)));
        auto above = boost::make_shared<Node>(target);
        above->addNode(target->getRoot());
        target->setRoot(above);
        target->getNodeByID("n0");  // A scene in use has its index made.
        state.ResumeTiming();
        target->mergeSceneManager(source, options, above->getID());
        state.PauseTiming();
        if (target->getNodeArray().size() != expected) state.SkipWithError("wrong number of nodes");
        target->stop();
        above.reset();
        target.reset();
        state.ResumeTiming();
    }
    source->stop();
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(mergeScenes)
    ->ArgNames({"nodes", "shape", "options"})
    ->ArgsProduct({{5000, 50000}, {TREE, FLAT}, {RENAME, MERGE_INTO_CHILD}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantorix::bench
