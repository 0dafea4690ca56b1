#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;

constexpr std::size_t listenerCount = 6;
constexpr std::size_t typeCount = 3;
constexpr std::size_t deepest = 3;
constexpr std::size_t longestLog = 2000;

using Delivery = std::pair<std::size_t, std::size_t>;  // listener, type

/// What both worlds do alike: every delivery is noted and takes the next action of the script.
class World {
public:
    explicit World(unsigned int seed) : random_(seed) {}
    virtual ~World() = default;

    void act() {
        const auto listener = pick(listenerCount);
        const auto type = pick(typeCount);
        switch (pick(8)) {
            case 0:
            case 1:
            case 2:
                return listen(listener, type);
            case 3:
                return unlisten(listener, type);
            case 4:
                return replace(listener);
            default:
                return trigger(type);
        }
    }

    std::vector<Delivery> log;

protected:
    virtual void listen(std::size_t listener, std::size_t type) = 0;
    virtual void unlisten(std::size_t listener, std::size_t type) = 0;
    /// Destroys the listener and makes another one in its place, which hears nothing yet.
    virtual void replace(std::size_t listener) = 0;
    virtual void trigger(std::size_t type) = 0;

    void deliver(std::size_t listener, std::size_t type) {
        if (log.size() == longestLog) return;
        log.emplace_back(listener, type);
        if (depth_ == deepest) return;
        ++depth_;
        for (auto actions = pick(3); actions > 0; --actions) act();
        --depth_;
    }

private:
    std::size_t pick(std::size_t count) { return random_() % count; }

    std::mt19937 random_;
    std::size_t depth_ = 0;
};

/// Rows of registrations, each with a number of its own.
class NaiveWorld : public World {
public:
    using World::World;

private:
    struct Registration {
        std::size_t listener;
        int number;
    };
    using Row = std::vector<Registration>;

    static Row::iterator find(Row& row, std::size_t listener) {
        return std::find_if(row.begin(), row.end(), [listener](const Registration& one) {
            return one.listener == listener;
        });
    }

    void listen(std::size_t listener, std::size_t type) override {
        auto& row = rows_[type];
        if (find(row, listener) == row.end()) row.push_back({listener, next_++});
    }

    void unlisten(std::size_t listener, std::size_t type) override {
        auto& row = rows_[type];
        const auto found = find(row, listener);
        if (found != row.end()) row.erase(found);
    }

    void replace(std::size_t listener) override {
        for (std::size_t type = 0; type < typeCount; ++type) unlisten(listener, type);
    }

    void trigger(std::size_t type) override {
        const auto row = rows_[type];
        for (const auto& registration : row) {
            const auto found = find(rows_[type], registration.listener);
            const bool stands = found != rows_[type].end() && found->number == registration.number;
            if (stands) deliver(registration.listener, type);
        }
    }

    std::array<Row, typeCount> rows_;
    int next_ = 0;
};

/// The same with an event manager; listeners of every kind.
class RealWorld : public World {
public:
    explicit RealWorld(unsigned int seed) : World(seed) {
        for (std::size_t i = 0; i < listenerCount; ++i) replace(i);
    }

private:
    struct Direct : EventListener {
        Direct(RealWorld& itsWorld, std::size_t itsNumber) : world(itsWorld), number(itsNumber) {}
        void handleEvent(Event event) override { world.receive(number, event); }
        RealWorld& world;
        const std::size_t number;
    };
    struct Derived : EventBase {
        using EventBase::EventBase;
    };

    template <class Base>
    std::unique_ptr<EventListener> makeBase(std::size_t listener) {
        auto base = std::make_unique<Base>(nullptr);
        for (const auto& type : types_) {
            base->registerHandler(type,
                                  [this, listener](Event event) { receive(listener, event); });
        }
        return base;
    }

    void receive(std::size_t listener, const Event& event) {
        deliver(listener, static_cast<std::size_t>(std::stoi(event.getEventData().getArg(1))));
    }

    void listen(std::size_t listener, std::size_t type) override {
        manager_.registerListener(types_[type], listeners_[listener].get());
    }

    void unlisten(std::size_t listener, std::size_t type) override {
        manager_.unregisterListener(types_[type], listeners_[listener].get());
    }

    void replace(std::size_t listener) override {
        listeners_[listener].reset();
        if (listener % 3 == 0) listeners_[listener] = std::make_unique<Direct>(*this, listener);
        if (listener % 3 == 1) listeners_[listener] = makeBase<EventBase>(listener);
        if (listener % 3 == 2) listeners_[listener] = makeBase<Derived>(listener);
    }

    void trigger(std::size_t type) override {
        manager_.triggerEvent(types_[type].getName(), std::to_string(type));
    }

    const std::array<EventType, typeCount> types_{EventType("A"), EventType("B"), EventType("C")};
    EventManager manager_;
    std::array<std::unique_ptr<EventListener>, listenerCount> listeners_;
};

TEST(DispatchModel, HandlersThatRegisterUnregisterDestroyAndTriggerMatchTheNaiveModel) {
    for (unsigned int seed = 0; seed < 300; ++seed) {
        NaiveWorld expected(seed);
        RealWorld actual(seed);
        for (int i = 0; i < 60; ++i) {
            expected.act();
            actual.act();
        }
        ASSERT_EQ(actual.log, expected.log) << "seed " << seed;
    }
}

}  // namespace
