#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::bench {
namespace {

using scene::Node;
using scene::SceneManager;

constexpr std::size_t usualStack = std::size_t(8) << 20;

/// Builds a chain of @p count nodes, asks for its end in every way, and releases it.
bool goThroughChain(std::int64_t count) {
    const auto scene = boost::make_shared<SceneManager>(nullptr);
    auto last = scene->getRoot();
    for (std::int64_t i = 1; i < count; ++i) {
        auto node = boost::make_shared<Node>(scene);
        node->addTranslation(0.0f, 0.0f, 1.0f);
        last->addNode(node);
        last = std::move(node);
    }
    const auto depth = static_cast<float>(count - 1);
    const auto found = scene->getNodeByID(last->getID());
    const bool isRight = found == last && last->getCombinedTransformations()(2, 3) == depth &&
                         scene->getNodeArray().size() == static_cast<std::size_t>(count) &&
                         scene->getRoot()->getBVMax() == Eigen::Vector3f::Zero();
    scene->stop();
    return isRight;
}

/// range(0): nodes of one chain, on a thread with the stack that programs usually have.
void deepChain(benchmark::State& state) {
    for (auto _ : state) {
        bool isRight = false;
        boost::thread::attributes attributes;
        attributes.set_stack_size(usualStack);
        boost::thread thread(attributes, [&] { isRight = goThroughChain(state.range(0)); });
        thread.join();
        if (!isRight) state.SkipWithError("wrong answers");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(deepChain)->Arg(1000000)->Iterations(1)->MeasureProcessCPUTime();

}  // namespace
}  // namespace vantorix::bench
