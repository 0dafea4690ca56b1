#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;
using Texts = std::vector<std::string>;

struct Recorder : EventListener {
    void handleEvent(Event event) override {
        texts.push_back(event.getEventType().getName() + ":" + event.getEventData().toString());
    }
    Texts texts;
};

/// Sees what passes the dispatch.
struct Spy : EventManager {
    using EventManager::triggerEvent;
    void triggerEvent(Event event) override {
        seen.push_back(event.getEventType().getName() + ":" + event.getEventData().toString() +
                       ":" + event.getSender());
        EventManager::triggerEvent(event);
    }
    Texts seen;
};

struct EventManagerTest : ::testing::Test {
    EventManager manager;
    Recorder recorder;
    const EventType type = EventType("SceneUpdate");
};

TEST_F(EventManagerTest, DeliversOnlyRegisteredTypesAndOnlyOnce) {
    EXPECT_TRUE(manager.registerListener(type, &recorder));
    EXPECT_FALSE(manager.registerListener(type, &recorder));
    EXPECT_FALSE(manager.registerListener(type, nullptr));
    EXPECT_TRUE(manager.isHeard(type));
    manager.triggerEvent("SceneUpdate", "a,b");
    manager.triggerEvent("Other", "c");
    EXPECT_EQ(recorder.texts, Texts({"SceneUpdate:a,b"}));

    EXPECT_TRUE(manager.unregisterListener(type, &recorder));
    EXPECT_FALSE(manager.unregisterListener(type, &recorder));
    EXPECT_FALSE(manager.isHeard(type));
    manager.triggerEvent("SceneUpdate", "d");
    EXPECT_EQ(recorder.texts.size(), 1u);
}

TEST_F(EventManagerTest, KnowsWhoListensToWhat) {
    Recorder other;
    manager.registerListener(type, &recorder);
    manager.registerListener(type, &other);
    manager.registerListener(EventType("Second"), &recorder);
    EXPECT_EQ(manager.getListenerCount(type), 2u);
    EXPECT_TRUE(manager.isListening(type, &other));
    EXPECT_FALSE(manager.isListening(EventType("Second"), &other));
    EXPECT_THAT(manager.getListenedTypes(),
                ::testing::UnorderedElementsAre(type, EventType("Second")));

    EXPECT_EQ(manager.unregisterFromAll(&recorder), 2u);
    EXPECT_EQ(manager.getListenerCount(type), 1u);
    EXPECT_EQ(manager.getListenerCount(EventType("Second")), 0u);
}

TEST_F(EventManagerTest, TellsApartNamesThatAgreeInLengthAndSomeLetters) {
    manager.registerListener(EventType("AxBxC"), &recorder);
    manager.triggerEvent("AyByC", "1");
    manager.triggerEvent("AxBxC", "2");
    manager.triggerEvent(Event(EventType("AyByC"), EventData("3")));
    EXPECT_EQ(recorder.texts, Texts({"AxBxC:2"}));
}

TEST_F(EventManagerTest, ASubclassHearsEverythingInBothWaysOfSending) {
    Spy spy;
    EventManager& base = spy;
    EXPECT_TRUE(base.isHeard(type));
    base.triggerEvent("Named", "1,2");
    base.triggerEvent(Event(type, EventData(""), "me"));
    EXPECT_EQ(spy.seen, Texts({"Named:1,2:", "SceneUpdate::me"}));
}

TEST_F(EventManagerTest, AListenerMayReleaseTheEventManagerThatCallsIt) {
    auto owned = boost::make_shared<EventManager>();
    EventBase first(nullptr);
    Recorder second;
    first.registerHandler(type, [&owned](Event) { owned.reset(); });
    owned->registerListener(type, &first);
    owned->registerListener(type, &second);
    owned->triggerEvent("SceneUpdate", "x");
    EXPECT_FALSE(owned);
    EXPECT_EQ(second.texts, Texts({"SceneUpdate:x"}));
}

TEST_F(EventManagerTest, ACopyOfAListenerHearsNothing) {
    manager.registerListener(type, &recorder);
    const Recorder copy(recorder);
    EXPECT_FALSE(manager.isListening(type, &copy));
    recorder = copy;
    EXPECT_TRUE(manager.isListening(type, &recorder));
}

TEST_F(EventManagerTest, AnExceptionReachesTheSenderAndLeavesNothingBehind) {
    auto thrower = std::make_unique<EventBase>(nullptr);
    thrower->registerHandler(type, [](Event) { throw std::runtime_error("handler"); });
    manager.registerListener(type, thrower.get());
    EXPECT_THROW(manager.triggerEvent("SceneUpdate", ""), std::runtime_error);
    thrower.reset();
    EXPECT_FALSE(manager.isHeard(type)) << "the listener was the last one";
    EXPECT_NO_THROW(manager.triggerEvent("SceneUpdate", ""));
}

TEST_F(EventManagerTest, ManyListenersComeAndGoInOneDispatch) {
    std::vector<std::unique_ptr<Recorder>> crowd;
    EventBase leader(nullptr);
    leader.registerHandler(type, [&](Event) {
        for (int i = 0; i < 20000; ++i) {
            crowd.push_back(std::make_unique<Recorder>());
            manager.registerListener(type, crowd.back().get());
        }
        crowd.resize(10);
    });
    manager.registerListener(type, &leader);
    manager.triggerEvent("SceneUpdate", "");
    EXPECT_EQ(manager.getListenerCount(type), 11u);
    for (const auto& one : crowd) EXPECT_TRUE(one->texts.empty());
}

TEST(EventTypeTest, ComparesByNameAlsoBeyondTheNamesThatStay) {
    std::vector<EventType> types;
    for (int i = 0; i < 6000; ++i) types.push_back(EventType("made up " + std::to_string(i)));
    for (int i = 0; i < 6000; ++i) {
        const EventType same("made up " + std::to_string(i));
        const auto& type = types[static_cast<std::size_t>(i)];
        ASSERT_EQ(type, same);
        ASSERT_EQ(type.getHash(), same.getHash());
        ASSERT_EQ(type.getName(), "made up " + std::to_string(i));
    }
    EXPECT_NE(types[0], types[1]);
    EXPECT_LT(EventType("a"), EventType("b"));
    EXPECT_EQ(EventType(std::string("a\0b", 3)).getName().size(), 3u);
    EXPECT_NE(EventType(std::string("a\0", 2)), EventType("a"));
}

}  // namespace
