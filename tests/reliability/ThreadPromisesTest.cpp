// What docs/threads.md promises of the calls that need no lock, and of the threads on which events
// come; the tests of the classes hold the rest. ThreadSanitizer makes most of these tests.

#include <atomic>

#include <boost/make_shared.hpp>
#include <boost/thread.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"
#include "core_api/system/MillisecClock.h"

#include "scene/animation/AnimationManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Material.h"
#include "tests/reliability/ScriptedScene.h"
#include "tests/support/CycleControl.h"

namespace vantorix::test {
namespace {

using boost::posix_time::milliseconds;
using core::event::EventManager;
using core::system::MillisecClock;
using scene::Node;
using scene::SceneManager;

struct ThreadPromises : testing::Test {
    /// Runs @p action in a number of threads until all are through.
    template <class Action>
    static void inThreads(int count, Action action) {
        boost::thread_group threads;
        for (int i = 0; i < count; ++i) threads.create_thread([=] { action(i); });
        threads.join_all();
    }

    boost::shared_ptr<EventManager> events = boost::make_shared<EventManager>();
    boost::shared_ptr<SceneManager> scene = boost::make_shared<SceneManager>(events);
};

TEST_F(ThreadPromises, UpdatesAnnounceOnTheScenesThreadAndSyncSceneFollowsThere) {
    std::atomic<int> astray{0};
    boost::thread::id updating;
    const auto root = scene->getRoot();
    const auto controller = makeController([&] {
        updating = boost::this_thread::get_id();
        root->addTranslation(1, 0, 0);
        return true;
    });
    Gate announced;
    core::event::EventBase listener(events);
    for (const auto* name : {"NodeTransformationUpdate", "SyncScene"}) {
        listener.registerHandler(core::event::EventType(name), [&](const core::event::Event&) {
            if (boost::this_thread::get_id() != updating) ++astray;
            scene->lockScene();  // Held already during the update, free again for "SyncScene".
            root->getCombinedTransformations();
            scene->unlockScene();
            announced.reach();
        });
    }
    scene->addSceneController(controller);
    ASSERT_TRUE(announced.await(10));
    scene->stop();
    EXPECT_NE(updating, boost::this_thread::get_id());
    EXPECT_EQ(astray, 0);
}

TEST_F(ThreadPromises, SyncSceneComesWhileEveryLockIsFree) {
    Gate done;
    core::event::EventBase listener(events);
    listener.registerHandler(core::event::EventType("SyncScene"), [&](const core::event::Event&) {
        boost::thread other([&] {
            const auto passing = makeController([] { return false; });
            scene->addSceneController(passing);
            scene->removeSceneController(passing);
            scene->lockScene();
            scene->unlockScene();
        });
        other.join();
        done.reach();
    });
    scene->addSceneController(makeController([] { return true; }));
    EXPECT_TRUE(done.await(2));
    scene->stop();
}

TEST_F(ThreadPromises, AddingAndRemovingControllersWaitForTheCycleInProgress) {
    Gate entered, mayLeave;
    std::atomic<bool> hasLeft{false};
    std::atomic<int> early{0};
    const auto slow = makeController([&] {
        entered.reach();
        mayLeave.await(1);
        boost::this_thread::yield();
        hasLeft = true;
        return false;
    });
    scene->addSceneController(slow);
    ASSERT_TRUE(entered.await(1));
    boost::thread adder([&] {
        scene->addSceneController(makeController([] { return false; }));
        if (!hasLeft) ++early;
    });
    mayLeave.reach();
    scene->removeSceneController(slow);
    if (!hasLeft) ++early;
    const int updates = slow->updated.count();
    adder.join();
    scene->stop();
    EXPECT_EQ(early, 0);
    EXPECT_EQ(slow->updated.count(), updates) << "none begins once it was removed";
}

TEST_F(ThreadPromises, PlaybackIsControlledFromAnyThreadWhileTheSceneDrivesIt) {
    ScriptedScene scripted(events, nullptr);
    const auto player = scripted.player;
    for (const auto& step : ScriptedScene::script()) {
        if (std::string(step.name) == "setAnimation") step.run(scripted);
    }
    scripted.scene->addSceneController(player);
    Gate cycles;
    const auto counting = makeController([&] {
        cycles.reach();
        return false;
    });
    scripted.scene->addSceneController(counting);
    inThreads(3, [player](int thread) {
        for (int i = 0; i < 2000; ++i) {
            player->setTime(milliseconds(i));
            player->setTimeTarget(milliseconds(1500 - i));
            player->setSmooth(i % 2 == thread % 2);
            if (i % 3 == thread) player->pause();
            if (!player->paused()) player->getCurrentTime();
            player->resume();
            player->getLoopDuration();
        }
    });
    ASSERT_TRUE(cycles.await(cycles.count() + 2));
    scripted.scene->stop();
    EXPECT_LE(player->getCurrentTime(), player->getLoopDuration());
}

TEST_F(ThreadPromises, ClocksAndEventManagersAreReplacedWithoutALock) {
    const auto root = scene->getRoot();
    scene->addSceneController(makeController([root] {
        root->addTranslation(0, 1, 0);
        return true;
    }));
    inThreads(3, [this](int thread) {
        for (int i = 0; i < 300; ++i) {
            const auto clock = boost::make_shared<MillisecClock>(i % 2 == 0);
            scene->setClock(clock);
            clock->setSpeed(static_cast<float>(i));
            clock->pause();
            scene->getClock()->getTime();
            clock->unpause();
            if (thread == 0) scene->setEventManager(boost::make_shared<EventManager>());
        }
    });
    scene->stop();
    EXPECT_FALSE(scene->getEventManager());
}

TEST_F(ThreadPromises, WhatNobodyElseKnowsIsMadeWithoutALock) {
    scene->addSceneController(makeController([] { return false; }));
    inThreads(4, [this](int thread) {
        for (int i = 0; i < 200; ++i) {
            const auto node = boost::make_shared<Node>(scene);
            const auto name = std::to_string(thread) + "/" + std::to_string(i);
            node->setName(name);
            node->addTranslation(1, 2, 3);
            const auto mesh = boost::make_shared<scene::Mesh>(name, "");
            mesh->addStream(boost::make_shared<scene::Stream>("positions", 3, true));
            boost::make_shared<scene::Material>(name, "")->setTechnique("toon");
            scene->lockScene();
            node->setID("OID" + name);
            scene->getRoot()->addNode(node);
            scene->unlockScene();
        }
    });
    scene->stop();
    EXPECT_EQ(scene->getRoot()->getChildCount(), 800u);
}

TEST_F(ThreadPromises, SeveralThreadsStopAndReleaseOneScene) {
    for (int round = 0; round < 100; ++round) {
        auto shared = boost::make_shared<SceneManager>(events);
        const boost::weak_ptr<SceneManager> watched = shared;
        shared->addSceneController(makeController([] { return true; }));
        std::vector<boost::shared_ptr<SceneManager>> references(3, shared);
        shared.reset();
        inThreads(3, [&references, round](int thread) {
            auto& own = references[static_cast<std::size_t>(thread)];
            if ((round + thread) % 2 == 0) own->stop();
            own.reset();
        });
        ASSERT_TRUE(watched.expired());
    }
}

}  // namespace
}  // namespace vantorix::test
