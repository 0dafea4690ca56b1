#include <atomic>
#include <stdexcept>

#include <boost/thread.hpp>
#include <boost/thread/barrier.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/system/MillisecClock.h"

#include "scene/geometry/GeometryManager.h"
#include "tests/support/CycleControl.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using scene::Node;
using scene::SceneManager;

/// Calls a function for every "SyncScene".
class SyncListener : public core::event::EventBase {
public:
    SyncListener(const boost::shared_ptr<core::event::EventManager>& manager,
                 std::function<void()> action)
        : EventBase(manager), action_(std::move(action)) {
        registerHandler(core::event::EventType("SyncScene"), [this](const core::event::Event&) {
            action_();
            heard.reach();
        });
    }
    Gate heard;

private:
    std::function<void()> action_;
};

struct Synchronisation : testing::Test {
    boost::shared_ptr<core::event::EventManager> events =
        boost::make_shared<core::event::EventManager>();
    boost::shared_ptr<SceneManager> scene = boost::make_shared<SceneManager>(events);
};

TEST_F(Synchronisation, EveryControllerIsUpdatedAndOneChangeAnnouncesTheCycle) {
    std::atomic<bool> balanced{true};
    int seen = 0;
    const auto first = makeController([] { return true; });
    const auto second = makeController([&] {
        balanced = balanced && first->updated.count() == seen + 1;
        ++seen;
        return false;
    });
    SyncListener listener(events, [] {});
    scene->lockScene();
    scene->addSceneController(first);
    scene->addSceneController(second);
    scene->unlockScene();
    EXPECT_EQ(first->attached.lock(), scene);
    ASSERT_TRUE(listener.heard.await(5));
    scene->stop();
    EXPECT_TRUE(balanced);
    EXPECT_EQ(listener.heard.count(), first->updated.count()) << "one event per cycle";
    EXPECT_FALSE(first->total.is_negative());
}

TEST_F(Synchronisation, StopEndsTheEventsAndMayBeRepeated) {
    const auto controller = makeController([] { return true; });
    SyncListener listener(events, [] {});
    scene->addSceneController(controller);
    ASSERT_TRUE(listener.heard.await(1));
    scene->lockScene();
    scene->stop();  // By the holder of the scene lock, which the thread may be waiting for.
    scene->stop();
    scene->unlockScene();
    scene->unlockScene();
    const int heard = listener.heard.count();
    const int updated = controller->updated.count();
    scene->getRoot()->triggerTransformationUpdate();
    boost::this_thread::yield();
    EXPECT_EQ(listener.heard.count(), heard);
    EXPECT_EQ(controller->updated.count(), updated);
}

TEST_F(Synchronisation, AHandlerMayLockTheSceneAndStopIt) {
    SyncListener listener(events, [&] {
        scene->lockScene();
        scene->stop();
        scene->unlockScene();
    });
    scene->addSceneController(makeController([] { return true; }));
    ASSERT_TRUE(listener.heard.await(1));
    scene->stop();
    EXPECT_EQ(listener.heard.count(), 1);
}

TEST_F(Synchronisation, TheLastReferenceMayGoInsideAHandler) {
    boost::shared_ptr<SceneManager> keeper;
    const boost::weak_ptr<SceneManager> watched = scene;
    Gate start;
    SyncListener listener(events, [&] {
        if (start.await(1)) keeper.reset();
    });
    scene->addSceneController(makeController([] { return true; }));
    keeper.swap(scene);
    start.reach();
    ASSERT_TRUE(listener.heard.await(1));
    EXPECT_TRUE(watched.expired());
}

TEST_F(Synchronisation, TheLastReferenceMayGoInsideAnUpdate) {
    auto keeper = boost::make_shared<boost::shared_ptr<SceneManager>>();
    const boost::weak_ptr<SceneManager> watched = scene;
    Gate start;
    Gate released;
    auto controller = makeController([&, keeper] {
        if (!start.await(1)) return false;
        keeper->reset();
        released.reach();
        return true;
    });
    scene->addSceneController(controller);
    keeper->swap(scene);
    start.reach();
    ASSERT_TRUE(released.await(1));
    EXPECT_TRUE(watched.expired());
    ASSERT_TRUE(controller->updated.await(1));
}

TEST_F(Synchronisation, AControllerMayAddRemoveStopAndFail) {
    const auto victim = makeController([] { return false; });
    const auto added = makeController([] { return false; });
    Gate done;
    const auto editor = makeController([&]() -> bool {
        scene->removeSceneController(victim);
        if (done.count() == 0) scene->addSceneController(added);
        done.reach();
        throw std::runtime_error("on purpose");
    });
    scene->lockScene();  // Both stand in the list before the next cycle begins.
    scene->addSceneController(editor);
    scene->addSceneController(victim);
    scene->unlockScene();
    ASSERT_TRUE(added->updated.await(2));
    scene->stop();
    EXPECT_LE(victim->updated.count(), 1) << "it may have run before the editor came";
    EXPECT_GE(done.count(), 2) << "a failing controller is asked again";
}

/// Fails whenever it is asked.
struct BrokenClock : core::system::MillisecClock {
    BrokenClock() : MillisecClock(true) {}
    boost::posix_time::ptime getTime() override { throw 42; }
};

struct Unattachable : Controller {
    using Controller::Controller;
    void attach(boost::shared_ptr<SceneManager>) override { throw 42; }
};

TEST_F(Synchronisation, GoesOnWhateverIsThrown) {
    Gate thrown;
    core::event::EventBase listener(events);
    listener.registerHandler(core::event::EventType("SyncScene"), [&](const core::event::Event&) {
        thrown.reach();
        if (thrown.count() % 2 == 0) throw 42;
        throw std::runtime_error("on purpose");
    });
    scene->setClock(boost::make_shared<BrokenClock>());
    scene->addSceneController(makeController([]() -> bool { throw 42; }));
    const auto changing = makeController([] { return true; });
    EXPECT_THROW(scene->addSceneController(boost::make_shared<Unattachable>([] { return false; })),
                 int);
    scene->addSceneController(changing);  // The locks are free again.
    ASSERT_TRUE(thrown.await(4));
    scene->stop();
    EXPECT_TRUE(changing->total == boost::posix_time::seconds(0)) << "time stood still";
}

TEST_F(Synchronisation, HundredsOfScenesComeAndGo) {
    for (int i = 0; i < 300; ++i) {
        const auto passing = boost::make_shared<SceneManager>(events);
        if (i % 3 == 0) passing->stop();
        if (i % 3 == 1) passing->getRoot()->addNode(boost::make_shared<Node>(passing));
    }
}

TEST_F(Synchronisation, ThreadsEditUnderTheLockWhileControllersMoveNodes) {
    const auto root = scene->getRoot();
    const auto controller = makeController([root] {
        root->addTranslation(1, 0, 0);
        return true;
    });
    scene->addSceneController(controller);
    boost::thread_group editors;
    for (int thread = 0; thread < 3; ++thread) {
        editors.create_thread([&] {
            for (int i = 0; i < 200; ++i) {
                const auto node = boost::make_shared<Node>(scene);
                scene->lockScene();
                root->addNode(node);
                node->getCombinedTransformations();
                if (i % 2 == 0) scene->removeNode(node);
                scene->unlockScene();
            }
        });
    }
    boost::thread swapper([&] {
        for (int i = 0; i < 50; ++i) {
            scene->setEventManager(boost::make_shared<core::event::EventManager>());
        }
    });
    editors.join_all();
    swapper.join();
    ASSERT_TRUE(controller->updated.await(1));
    scene->stop();
    EXPECT_EQ(root->getChildCount(), 300u);
}

/// Unlocking the scene releases what was replaced, unless the thread holds the lock: it does it.
bool isReleased(const RecordedScene& scene,
                const boost::weak_ptr<core::event::EventManager>& gone) {
    for (int i = 0; i < 100000 && !gone.expired(); ++i) {
        scene->lockScene();
        scene->unlockScene();
    }
    return gone.expired();
}

/// Lets the second of two callers overtake the first one, where nothing keeps them in order.
struct HesitantManager : scene::GeometryManager {
    HesitantManager() : GeometryManager(nullptr) {}
    void setEventManager(boost::shared_ptr<core::event::EventManager> manager) override {
        const bool isFirst = ++callers == 1;
        for (int i = 0; i < 50 && isFirst && !hasSecondLeft; ++i) boost::this_thread::yield();
        GeometryManager::setEventManager(std::move(manager));
        hasSecondLeft = !isFirst;
    }
    std::atomic<int> callers{1};  // The scene gives its own manager first.
    std::atomic<bool> hasSecondLeft{false};
};

TEST(SceneEventManagers, GivenByTwoThreadsAtOnceEndAsOneEverywhere) {
    const RecordedScene scene;
    for (int round = 0; round < 10 && !testing::Test::HasFailure(); ++round) {
        const auto geometries = boost::make_shared<HesitantManager>();
        scene->setGeometryManager(geometries);
        geometries->callers = 0;
        geometries->hasSecondLeft = false;
        boost::weak_ptr<core::event::EventManager> given[2];
        boost::barrier start(2);
        const auto give = [&](int which) {
            auto manager = boost::make_shared<core::event::EventManager>();
            given[which] = manager;
            start.wait();
            scene->setEventManager(std::move(manager));
        };
        boost::thread other(give, 1);
        give(0);
        other.join();
        const auto current = scene->getEventManager();
        EXPECT_EQ(scene->getGeometryManager()->getEventManager(), current);
        EXPECT_TRUE(isReleased(scene, given[given[0].lock() == current ? 1 : 0]));
    }
}

}  // namespace
}  // namespace vantorix::test
