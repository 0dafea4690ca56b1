#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;
using Texts = std::vector<std::string>;

struct EventBaseTest : ::testing::Test {
    boost::function<void(Event)> note(std::string name) {
        return
            [this, name](Event event) { notes.push_back(name + event.getEventData().toString()); };
    }

    boost::shared_ptr<EventManager> manager = boost::make_shared<EventManager>();
    const EventType type = EventType("T");
    Texts notes;
};

TEST_F(EventBaseTest, HandlersOfOneTypeAreCalledInOrderOncePerEvent) {
    EventBase base(manager);
    base.registerToListen(type);
    base.registerHandler(type, note("a"));
    base.registerToListen(type);
    base.registerHandler(type, note("b"));
    base.registerHandler(EventType("U"), note("u"));
    base.registerHandler(type, boost::function<void(Event)>());
    base.triggerEvent("T", "1");
    base.triggerEvent(Event(EventType("U"), EventData("2")));
    EXPECT_EQ(notes, Texts({"a1", "b1", "u2"}));
}

TEST_F(EventBaseTest, HandlersFollowTheEventManagerAlsoByWayOfNone) {
    const auto second = boost::make_shared<EventManager>();
    EventBase base(nullptr);
    base.registerHandler(type, note("x"));
    base.triggerEvent("T", "nobody sends");

    base.setEventManager(manager);
    manager->triggerEvent("T", "1");
    base.setEventManager(second);
    manager->triggerEvent("T", "lost");
    second->triggerEvent("T", "2");
    base.setEventManager(nullptr);
    EXPECT_EQ(base.getEventManager(), nullptr);
    EXPECT_EQ(base.peekEventManager(), nullptr);
    second->triggerEvent("T", "lost");
    base.setEventManager(second);
    base.setEventManager(second);
    second->triggerEvent("T", "3");
    EXPECT_EQ(notes, Texts({"x1", "x2", "x3"}));
    EXPECT_FALSE(manager->isHeard(type));
}

TEST_F(EventBaseTest, DestroyingTheObjectInAHandlerSkipsItsOtherHandlers) {
    auto base = std::make_unique<EventBase>(manager);
    base->registerHandler(type, note("first"));
    base->registerHandler(type, [&base](Event) { base.reset(); });
    base->registerHandler(type, note("never"));
    manager->triggerEvent("T", "");
    EXPECT_EQ(notes, Texts({"first"}));
    EXPECT_EQ(manager->getListenerCount(type), 0u);
}

TEST_F(EventBaseTest, AHandlerCalledDirectlyMayDestroyTheObjectToo) {
    auto base = std::make_unique<EventBase>(nullptr);
    base->registerHandler(type, [&base](Event) { base.reset(); });
    base->registerHandler(type, note("never"));
    base->handleEvent(Event(type, EventData("")));
    EXPECT_TRUE(notes.empty());
}

TEST_F(EventBaseTest, AHandlerAddedByAHandlerHearsTheNextEvent) {
    EventBase base(manager);
    base.registerHandler(type, [&](Event) {
        if (notes.empty()) base.registerHandler(type, note("new"));
        notes.push_back("old");
    });
    manager->triggerEvent("T", "1");
    manager->triggerEvent("T", "2");
    EXPECT_EQ(notes, Texts({"old", "old", "new2"}));
}

TEST_F(EventBaseTest, AHandlerMayReplaceTheEventManagerOfItsObject) {
    EventBase base(manager);
    const auto second = boost::make_shared<EventManager>();
    base.registerHandler(type, [&](Event) { base.setEventManager(second); });
    base.registerHandler(type, note("still"));
    manager->triggerEvent("T", "1");
    second->triggerEvent("T", "2");
    EXPECT_EQ(notes, Texts({"still1", "still2"}));
}

TEST_F(EventBaseTest, AnOverriddenHandleEventSeesEveryTypeThatIsListenedTo) {
    struct Filter : EventBase {
        using EventBase::EventBase;
        void handleEvent(Event event) override {
            ++count;
            EventBase::handleEvent(std::move(event));
        }
        int count = 0;
    } filter(manager);
    filter.registerToListen(EventType("U"));
    filter.registerHandler(type, note("h"));
    manager->triggerEvent("T", "1");
    manager->triggerEvent("U", "2");
    EXPECT_EQ(filter.count, 2);
    EXPECT_EQ(notes, Texts({"h1"}));
}

TEST_F(EventBaseTest, AHandlerOfAnOwnerKeepsItForTheCallAndFallsSilentAfterIt) {
    auto owner = boost::make_shared<std::string>("owner");
    const auto* const text = owner.get();
    EventBase base(manager);
    base.registerHandlerOf(owner, type, [&](Event) {
        owner.reset();
        notes.push_back(*text);
    });
    manager->triggerEvent("T", "");
    manager->triggerEvent("T", "");
    EXPECT_EQ(notes, Texts({"owner"}));
}

TEST_F(EventBaseTest, WhatAHandlerHoldsIsReleasedWithTheObject) {
    const auto held = boost::make_shared<int>(1);
    auto base = std::make_unique<EventBase>(manager);
    EventBase other(manager);
    other.registerHandler(type, [](Event) {});
    base->registerHandler(type, [held](Event) {});
    base.reset();
    EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
