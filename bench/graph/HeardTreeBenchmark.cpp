// Trees whose changes somebody listens to.

#include <string>

#include <boost/make_shared.hpp>

#include "core_api/core_api.h"

#include "bench/graph/OwnTree.h"
#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

using namespace core::event;

template <class Handler>
void moveAllHeard(benchmark::State& state, Shape shape, std::int64_t eventsPerNode,
                  Handler handler) {
    const auto plan = planFor(state, shape);
    const auto manager = boost::make_shared<EventManager>();
    OwnTree tree(manager);
    tree.build(plan);
    EventBase listener(manager);
    std::int64_t deliveries = 0;
    listener.registerHandler(EventType("NodeTransformationUpdate"), [&](Event event) {
        ++deliveries;
        handler(event);
    });
    moveAllNodes(state, tree, plan);
    if (deliveries != eventsPerNode * state.iterations() * plan.size()) {
        state.SkipWithError("wrong number of events");
    }
}

/// One listener, which does not look at the payload.
void moveAllIgnored(benchmark::State& state, Shape shape) {
    moveAllHeard(state, shape, 1, [](const Event& event) { benchmark::DoNotOptimize(event); });
}

/// One listener, which reads every payload as text.
void moveAllRead(benchmark::State& state, Shape shape) {
    std::size_t length = 0;
    moveAllHeard(state, shape, 1, [&length](const Event& event) {
        length += event.getEventData().toString().size();
    });
    benchmark::DoNotOptimize(length);
}

/// An outline of the tree looks up both nodes of every addition while the tree is built.
void buildOutlined(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    for (auto _ : state) {
        state.PauseTiming();
        const auto manager = boost::make_shared<EventManager>();
        auto tree = std::make_unique<OwnTree>(manager);
        EventBase outline(manager);
        int found = 0;
        outline.registerHandler(EventType("NodeNewChild"), [&](Event event) {
            const auto data = event.getEventData();
            const auto parent = tree->scene()->getNodeByID(data.getArg(1));
            const auto child = tree->scene()->getNodeByID(data.getArg(2));
            found += parent && child && parent != child ? 1 : 0;
        });
        state.ResumeTiming();
        tree->build(plan);
        state.PauseTiming();
        if (found != plan.size() - 1) state.SkipWithError("an addition was not heard or not found");
        tree.reset();
        state.ResumeTiming();
    }
    countItems(state, plan.size());
}

const bool heardTreeCasesAdded = [] {
    addCases("moveAllIgnored", moveAllIgnored, {TREE8, FLAT, CHAIN}, {10000});
    addCases("moveAllRead", moveAllRead, {TREE8}, {10000});
    addCases("buildOutlined", buildOutlined, {TREE8, FLAT}, {100000});
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
