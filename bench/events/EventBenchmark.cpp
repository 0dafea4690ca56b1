#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <boost/signals2.hpp>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;

/// What a program would send through a plain signal: three strings by value.
struct PlainEvent {
    std::string type;
    std::string data;
    std::string sender;
};

const char* const typeName = "SceneUpdate";
const char* const payload = "MaterialList";

void checkDeliveries(benchmark::State& state, std::int64_t deliveries) {
    if (deliveries != state.iterations() * state.range(0)) {
        state.SkipWithError("wrong number of deliveries");
    }
    state.SetItemsProcessed(state.iterations());
}

/// range(0): listeners, here always none. An event is made only if somebody hears it.
void unheardConstant(benchmark::State& state) {
    const auto manager = boost::make_shared<EventManager>();
    const EventBase other(manager);
    const EventType type(typeName);
    for (auto _ : state) {
        auto* const current = other.peekEventManager();
        benchmark::DoNotOptimize(current);
        if (current->isHeard(type)) current->triggerEvent(Event(type, EventData(payload)));
    }
    checkDeliveries(state, 0);
}
BENCHMARK(unheardConstant)->Arg(0);

/// The same while somebody listens to another type.
void unheardBesideOthers(benchmark::State& state) {
    const auto manager = boost::make_shared<EventManager>();
    EventBase other(manager);
    other.registerHandler(EventType("L_NewEffect"), [](const Event&) {});
    const EventType type(typeName);
    for (auto _ : state) {
        auto* const current = other.peekEventManager();
        benchmark::DoNotOptimize(current);
        if (current->isHeard(type)) current->triggerEvent(Event(type, EventData(payload)));
    }
    checkDeliveries(state, 0);
}
BENCHMARK(unheardBesideOthers)->Arg(0);

void unheardByName(benchmark::State& state) {
    const auto manager = boost::make_shared<EventManager>();
    for (auto _ : state) manager->triggerEvent(typeName, payload);
    checkDeliveries(state, 0);
}
BENCHMARK(unheardByName)->Arg(0);

/// range(0): slots.
void signals2(benchmark::State& state) {
    boost::signals2::signal<void(PlainEvent)> signal;
    std::int64_t deliveries = 0;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        signal.connect([&deliveries](PlainEvent event) {
            benchmark::DoNotOptimize(event);
            ++deliveries;
        });
    }
    for (auto _ : state) signal(PlainEvent{typeName, payload, std::string()});
    checkDeliveries(state, deliveries);
}
BENCHMARK(signals2)->Arg(0)->Arg(1)->Arg(8);

/// The same when signals are known by the name of the event.
void signals2ByName(benchmark::State& state) {
    std::unordered_map<std::string, boost::signals2::signal<void(PlainEvent)>> signals;
    std::int64_t deliveries = 0;
    auto& known = signals[typeName];
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        known.connect([&deliveries](PlainEvent event) {
            benchmark::DoNotOptimize(event);
            ++deliveries;
        });
    }
    for (auto _ : state) {
        PlainEvent event{typeName, payload, std::string()};
        const auto signal = signals.find(event.type);
        if (signal != signals.end()) signal->second(std::move(event));
    }
    checkDeliveries(state, deliveries);
}
BENCHMARK(signals2ByName)->Arg(0)->Arg(1)->Arg(8);

/// The lightest signal: an event of our own by value.
void signals2OwnEvent(benchmark::State& state) {
    boost::signals2::signal<void(Event)> signal;
    std::int64_t deliveries = 0;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        signal.connect([&deliveries](Event event) {
            benchmark::DoNotOptimize(event);
            ++deliveries;
        });
    }
    const EventType type(typeName);
    for (auto _ : state) signal(Event(type, EventData(payload)));
    checkDeliveries(state, deliveries);
}
BENCHMARK(signals2OwnEvent)->Arg(0)->Arg(1)->Arg(8);

struct Counter : EventListener {
    void handleEvent(Event event) override {
        benchmark::DoNotOptimize(event);
        ++deliveries;
    }
    std::int64_t deliveries = 0;
};

/// range(0): objects that are registered with the event manager itself.
void heardByListeners(benchmark::State& state) {
    EventManager manager;
    std::vector<Counter> counters(static_cast<std::size_t>(state.range(0)));
    for (auto& counter : counters) manager.registerListener(EventType(typeName), &counter);
    for (auto _ : state) manager.triggerEvent(typeName, payload);
    std::int64_t deliveries = 0;
    for (const auto& counter : counters) deliveries += counter.deliveries;
    checkDeliveries(state, deliveries);
}
BENCHMARK(heardByListeners)->Arg(1)->Arg(8);

/// range(0): event bases with one handler each.
struct Handlers {
    explicit Handlers(std::int64_t count) {
        for (std::int64_t i = 0; i < count; ++i) {
            bases.push_back(boost::make_shared<EventBase>(manager));
            bases.back()->registerHandler(EventType(typeName), [this](Event event) {
                benchmark::DoNotOptimize(event);
                ++deliveries;
            });
        }
    }
    boost::shared_ptr<EventManager> manager = boost::make_shared<EventManager>();
    std::vector<boost::shared_ptr<EventBase>> bases;
    std::int64_t deliveries = 0;
};

void heardByHandlers(benchmark::State& state) {
    Handlers handlers(state.range(0));
    for (auto _ : state) handlers.manager->triggerEvent(typeName, payload);
    checkDeliveries(state, handlers.deliveries);
}
BENCHMARK(heardByHandlers)->Arg(1)->Arg(8);

void heardByHandlersConstant(benchmark::State& state) {
    Handlers handlers(state.range(0));
    const EventType type(typeName);
    for (auto _ : state) handlers.manager->triggerEvent(Event(type, EventData(payload)));
    checkDeliveries(state, handlers.deliveries);
}
BENCHMARK(heardByHandlersConstant)->Arg(1)->Arg(8);

}  // namespace
