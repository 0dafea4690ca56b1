#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread.hpp>
#include <gtest/gtest.h>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;
using vantorix::core::utils::Matrix;

constexpr int threadCount = 4;
constexpr int rounds = 2000;

/// Runs @p work(index) on several threads that begin together.
template <class Work>
void runTogether(int threads, const Work& work) {
    boost::barrier gate(static_cast<unsigned int>(threads));
    boost::thread_group group;
    for (int i = 0; i < threads; ++i) {
        group.create_thread([&gate, &work, i] {
            gate.wait();
            work(i);
        });
    }
    group.join_all();
}

struct Counter : EventListener {
    ~Counter() override { endDeliveries(); }
    void handleEvent(Event) override { ++count; }
    std::atomic<int> count{0};
};

struct EventThreads : ::testing::Test {
    /// One thread sends without a pause while another does @p work, again and again.
    template <class Work>
    void sendDuring(const Work& work) {
        std::atomic<bool> done{false};
        runTogether(2, [&](int thread) {
            while (thread == 0 && !done) manager->triggerEvent("T", "");
            for (int i = 0; thread == 1 && i < rounds; ++i) work();
            done = true;
        });
    }

    boost::shared_ptr<EventManager> manager = boost::make_shared<EventManager>();
    const EventType type = EventType("T");
};

TEST_F(EventThreads, StandingListenersHearEveryEventWhileOthersComeAndGo) {
    Counter standing;
    EventBase base(manager);
    std::atomic<int> handled{0};
    manager->registerListener(type, &standing);
    base.registerHandler(type, [&handled](Event) { ++handled; });
    runTogether(threadCount, [&](int thread) {
        for (int i = 0; i < rounds; ++i) {
            Counter own;
            if (thread % 2) manager->registerListener(type, &own);
            manager->triggerEvent("T", "x");
            if (thread % 2) {
                EXPECT_GE(own.count, 1);
            }
        }
    });
    EXPECT_EQ(standing.count, threadCount * rounds);
    EXPECT_EQ(handled, threadCount * rounds);
    EXPECT_EQ(manager->getListenerCount(type), 2u);
}

TEST_F(EventThreads, APlainEventBaseMayBeDestroyedWhileItHears) {
    const auto hits = boost::make_shared<std::atomic<int>>(0);
    sendDuring([&] {
        EventBase brief(manager);
        brief.registerHandler(type, [hits](Event) { ++*hits; });
    });
    EXPECT_EQ(manager->getListenerCount(type), 0u);
    EXPECT_FALSE(manager->isHeard(type));
}

/// An object held by shared pointers, whose handler uses it.
struct Owned : EventBase, boost::enable_shared_from_this<Owned> {
    using EventBase::EventBase;
    ~Owned() override { endDeliveries(); }

    static boost::shared_ptr<Owned> make(const boost::shared_ptr<EventManager>& manager) {
        const auto owned = boost::make_shared<Owned>(manager);
        owned->registerHandlerOf(owned, EventType("T"), [raw = owned.get()](Event) {
            raw->text += 'x';
            raw->text.clear();
        });
        return owned;
    }

    std::string text;
};

TEST_F(EventThreads, AnOwnedObjectMayLoseItsLastReferenceWhileItHears) {
    sendDuring([&] { Owned::make(manager).reset(); });
    EXPECT_EQ(manager->getListenerCount(type), 0u);
}

TEST_F(EventThreads, NoDeliveryStartsOnceADestructorReturned) {
    struct Watched : EventListener {
        explicit Watched(std::atomic<int>& alive) : alive_(alive) { ++alive_; }
        ~Watched() override {
            endDeliveries();
            --alive_;
        }
        void handleEvent(Event) override { EXPECT_GE(alive_, 1); }
        std::atomic<int>& alive_;
    };
    std::atomic<int> alive{0};
    sendDuring([&] {
        Watched watched(alive);
        manager->registerListener(type, &watched);
    });
}

TEST_F(EventThreads, EventManagersMayBeReplacedWhileOthersSend) {
    const std::vector<boost::shared_ptr<EventManager>> managers{
        manager, boost::make_shared<EventManager>(), nullptr};
    EventBase base(manager);
    std::atomic<int> handled{0};
    base.registerHandler(type, [&handled](Event) { ++handled; });
    runTogether(threadCount, [&](int thread) {
        for (int i = 0; i < rounds; ++i) {
            if (thread == 0) {
                base.setEventManager(managers[static_cast<std::size_t>(i) % managers.size()]);
            } else {
                base.triggerEvent("T", "");
                base.getEventManager();
            }
        }
    });
    handled = 0;
    base.setEventManager(manager);
    base.triggerEvent("T", "");
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(managers[1]->getListenerCount(type), 0u);
}

TEST_F(EventThreads, APayloadIsRenderedOnceForAllReaders) {
    for (int i = 0; i < 200; ++i) {
        Matrix matrix(true);
        matrix[12] = static_cast<float>(i) / 3;
        const auto data = EventData::withMatrix("Node", matrix);
        const auto expected = "Node," + matrix.toEventDataString();
        runTogether(2, [&](int) { EXPECT_EQ(data.toString(), expected); });
    }
}

TEST_F(EventThreads, TypesOfOneNameAreEqualWhoeverMakesThem) {
    runTogether(threadCount, [](int) {
        for (int i = 0; i < rounds; ++i) {
            const auto name = "thread name " + std::to_string(i % 700);
            const EventType one(name);
            const EventType other = one;
            ASSERT_EQ(other.getName(), name);
            ASSERT_EQ(EventType(name), one);
        }
    });
}

}  // namespace
