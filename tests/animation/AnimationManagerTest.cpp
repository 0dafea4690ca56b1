#include <atomic>
#include <functional>
#include <limits>
#include <tuple>

#include <boost/chrono.hpp>
#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"

#include "scene/animation/AnimationManager.h"
#include "scene/animation/CameraInstance.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using core::utils::Vector;
using test::Floats;
using test::Keys;
using test::makeAnimation;
using test::Names;

/// A node whose translation is animated: x is 0, 10 and 40 after 1, 2 and 3 seconds.
struct AnimatedNode : ::testing::Test {
    AnimatedNode() {
        scene->getRoot()->addNode(node);
        test::addElement<TransformationScale>(*node, "untargeted", 2.0f, 2.0f, 2.0f);
        test::addElement<TransformationTranslate>(*node, "t");
        animation->addChannel(keys.sampler, "node/t.X");
        manager->attach(scene.manager);
        manager->setAnimation(animation);
        scene.forgetEvents();
    }

    bool show(int time) {
        manager->setTime(milliseconds(time));
        return manager->update(seconds(0));
    }
    /// The base scales by 2.
    float shownAt(int time) {
        show(time);
        return node->getTranslation().x() / 2;
    }
    int currentTime() const {
        return static_cast<int>(manager->getCurrentTime().total_milliseconds());
    }
    /// Adds keys of @p stride floats from 1 s to 3 s to another element of the node.
    Keys addKeys(const std::string& target, int stride, const Floats& values) {
        const Keys added({1, 3}, stride, values);
        animation->addChannel(added.sampler, target);
        return added;
    }

    test::RecordedScene scene;
    boost::shared_ptr<Node> node = scene.makeNode("node");
    Keys keys{{1, 2, 3}, 1, {0, 10, 40}};
    boost::shared_ptr<Animation> animation = makeAnimation();
    boost::shared_ptr<AnimationManager> manager = boost::make_shared<AnimationManager>();
};

using PlaybackTime = AnimatedNode;

TEST_F(PlaybackTime, MovesToItsTargetWhilePaused) {
    EXPECT_TRUE(manager->paused());
    EXPECT_FALSE(manager->update(seconds(1)));
    manager->setTimeTarget(milliseconds(2500));
    EXPECT_TRUE(manager->update(seconds(2)));
    EXPECT_EQ(currentTime(), 2000);
    EXPECT_FALSE(manager->update(seconds(2)));  // The target is reached, and counts as shown.
    EXPECT_EQ(currentTime(), 2500);
    manager->setTimeTarget(milliseconds(500));
    EXPECT_TRUE(manager->update(seconds(1)));
    EXPECT_EQ(currentTime(), 1500);
    manager->setTimeTarget(seconds(-5));
    EXPECT_TRUE(manager->update(seconds(2)));
    EXPECT_EQ(currentTime(), 0);
    manager->setTimeTarget(seconds(9));
    EXPECT_FALSE(manager->update(seconds(8)));
    EXPECT_EQ(currentTime(), 3000);
}

TEST_F(PlaybackTime, JumpsToItsTargetUnlessSmooth) {
    manager->setSmooth(false);
    manager->setTimeTarget(seconds(2));
    EXPECT_FALSE(manager->update(milliseconds(1)));
    EXPECT_EQ(currentTime(), 2000);
}

TEST_F(PlaybackTime, WrapsOncePerUpdateWhilePlaying) {
    manager->resume();
    EXPECT_TRUE(manager->update(seconds(2)));
    EXPECT_TRUE(manager->update(seconds(2)));
    EXPECT_EQ(currentTime(), 1000);
    EXPECT_FALSE(manager->update(seconds(8)));
    EXPECT_EQ(currentTime(), 3000);
    EXPECT_TRUE(manager->update(seconds(1)));
    EXPECT_EQ(currentTime(), 1000);
    manager->pause();
    EXPECT_FALSE(manager->update(seconds(1)));
    EXPECT_EQ(currentTime(), 1000);
}

TEST_F(PlaybackTime, IsShownOnceAfterItWasSet) {
    EXPECT_TRUE(show(1000));
    EXPECT_FALSE(manager->update(seconds(0)));
    EXPECT_FALSE(show(99000));
    EXPECT_EQ(currentTime(), 3000);
    EXPECT_TRUE(show(-1000));
    EXPECT_EQ(currentTime(), -1000);
    manager->attach(scene.manager);
    EXPECT_EQ(currentTime(), 0);
}

TEST_F(PlaybackTime, CountsInWholeMilliseconds) {
    using boost::posix_time::microseconds;
    manager->setTime(microseconds(1500900));
    manager->update(seconds(0));
    const float shown = node->getTranslation().x();
    manager->setTime(microseconds(1500000));
    manager->update(seconds(0));
    EXPECT_EQ(node->getTranslation().x(), shown);
    manager->setTimeTarget(microseconds(1500900));
    manager->setSmooth(false);
    EXPECT_FALSE(manager->update(seconds(0))) << "the target is what is shown";
}

TEST_F(PlaybackTime, TakesDurationsThatAreNone) {
    for (const auto special : {boost::posix_time::pos_infin, boost::posix_time::neg_infin,
                               boost::posix_time::not_a_date_time}) {
        const boost::posix_time::time_duration duration(special);
        manager->setTime(duration);
        manager->setTimeTarget(duration);
        manager->update(duration);
        manager->resume();
        for (int i = 0; i < 20; ++i) manager->update(duration);
        manager->pause();
    }
    EXPECT_TRUE(show(1000));
}

using ChannelValues = AnimatedNode;

TEST_F(ChannelValues, LieBetweenTheKeys) {
    EXPECT_EQ(shownAt(1000), 0);  // At the first key no more than before it.
    EXPECT_EQ(shownAt(1500), 5);
    EXPECT_EQ(shownAt(2000), 10);
    EXPECT_EQ(shownAt(2500), 25);
    keys.input->values[2] = 2.25f;
    EXPECT_EQ(shownAt(2500), 0);  // Nothing after the last key.
}

TEST_F(ChannelValues, OfAnUnexpectedStrideWarn) {
    const std::string vector = "[WARN] No valid target...";
    const std::string rotation = "[WARN] Animating Translation with no valid target...";
    const std::vector<std::tuple<std::string, int, std::string>> mismatches = {
        {"node/t", 1, vector},   {"node/s", 4, vector},         {"node/s.y", 3, vector},
        {"node/t.w", 1, vector}, {"node/s.ANGLE", 1, vector},   {"node/r", 3, rotation},
        {"node/t", 3, ""},       {"node/r.angle", 4, rotation}, {"node/m", 4, ""},
        {"node/t", -3, vector},  {"node/r", 0, rotation},       {"node/x", 1, ""}};
    test::addElement<TransformationRotate>(*node, "r", Vector<float, 3>(0, 0, 1), 0.0f);
    test::addElement<TransformationScale>(*node, "s");
    test::addElement<TransformationMatrix>(*node, "m");
    for (const auto& [target, stride, warning] : mismatches) {
        SCOPED_TRACE(target + " " + std::to_string(stride));
        animation = makeAnimation();
        animation->addChannel(keys.sampler, "node/t.X");
        addKeys(target, stride, {});
        manager->setAnimation(animation);
        ::testing::internal::CaptureStderr();
        show(1500);
        const auto log = ::testing::internal::GetCapturedStderr();
        EXPECT_NE(log.find(warning), std::string::npos) << log;
        EXPECT_EQ(log.empty(), warning.empty()) << log;
        EXPECT_EQ(shownAt(1500), 5);
    }
}

Eigen::Matrix4f scaledTurn(float degrees, float x, float y, float z) {
    const Eigen::AngleAxisf turn(degrees * 0.017453292f, Eigen::Vector3f::UnitZ());
    return (Eigen::Translation3f(degrees, 0, 0) * turn * Eigen::Scaling(x, y, z)).matrix();
}

struct MatrixChannel : AnimatedNode {
    /// Plays from one key at 1 s to the other at 3 s on a node of its own.
    Eigen::Matrix4f between(const Eigen::Matrix4f& start, const Eigen::Matrix4f& end, int time,
                            const std::string& name = "LINEAR") {
        const auto moved = scene.makeNode("moved");
        scene->getRoot()->addNode(moved);
        test::addElement<TransformationMatrix>(*moved, "m");
        auto values = test::rowsOf(start);
        const auto last = test::rowsOf(end);
        values.insert(values.end(), last.begin(), last.end());
        const auto added = addKeys("moved/m", 16, values);
        added.names->stringValues[0] = name;
        manager->setAnimation(animation);
        show(time);
        const auto result = moved->getTransformations();
        moved->setID("done");
        return result;
    }
};

TEST_F(MatrixChannel, TurnsAlongTheShortestArc) {
    // From 170 to -170 degrees by way of 180.
    auto across = between(scaledTurn(170, 1, 1, 1), scaledTurn(-170, 1, 1, 1), 2000);
    across(0, 3) = 180;
    EXPECT_TRUE(test::isNear(across, scaledTurn(180, 1, 1, 1)));
}

TEST_F(MatrixChannel, KeepsAMirroredMatrixMirrored) {
    const auto start = scaledTurn(0, -1, 1, 1);
    const auto end = scaledTurn(60, -2, 1, 1);
    EXPECT_TRUE(test::isNear(between(start, end, 2000), scaledTurn(30, -1.5f, 1, 1)));
    EXPECT_TRUE(test::isNear(between(start, end, 2000, "step"), start));
}

TEST_F(MatrixChannel, StaysFiniteWhereAScaleIsZero) {
    const float infinite = std::numeric_limits<float>::infinity();
    for (const auto& scale :
         {Eigen::Vector3f(0, 0, 0), Eigen::Vector3f(0, 1, 1), Eigen::Vector3f(0, 0, 1),
          Eigen::Vector3f(1e30f, 1, 0), Eigen::Vector3f(infinite, 0, 1)}) {
        const auto flat = scaledTurn(30, scale.x(), scale.y(), scale.z());
        for (const auto* const name : {"STEP", "LINEAR"}) {
            EXPECT_TRUE(between(flat, scaledTurn(0, 1, 1, 1), 1500, name).allFinite()) << scale;
            EXPECT_TRUE(between(scaledTurn(0, 1, 1, 1), flat, 2500, name).allFinite()) << scale;
        }
    }
    const auto flat = between(scaledTurn(0, 1, 1, 0), scaledTurn(90, 1, 1, 0), 2000);
    EXPECT_TRUE(test::isNear(flat, scaledTurn(45, 1, 1, 0)));
}

using FrameTimes = AnimatedNode;

TEST_F(FrameTimes, AreThoseOfFirstChannelsChildrenFirst) {
    addKeys("node/t.Y", 1, {0, 0}).input->values[0] = 7;  // No first channel.
    const auto child = makeAnimation();
    const Keys other({5, 2, 5}, 1, {});
    child->addChannel(other.sampler, "elsewhere/t");
    animation->addAnimation(child);
    manager->setAnimation(animation);
    EXPECT_EQ(manager->getFrameTimes(), Floats({5, 2, 1, 3}));
    manager->setAnimation(nullptr);
    EXPECT_TRUE(manager->getFrameTimes().empty());
    EXPECT_TRUE(manager->getTargetedTransformationsMap().empty());
    EXPECT_FALSE(manager->update(seconds(1)));
}

TEST_F(FrameTimes, GoWithTheKeysThatAreRemoved) {
    manager->getFrameTimes() = {2, 2, 2, 1, 2, 3};
    manager->removeKeyFrame(animation, 2);  // Passes over what follows a removed entry.
    EXPECT_EQ(manager->getFrameTimes(), Floats({2, 1, 3}));
    EXPECT_TRUE(keys.input->values == Floats({1, 3}));
    manager->removeKeyFrame(animation, 3);
    EXPECT_EQ(manager->getLoopDuration(), seconds(1));
    manager->removeKeyFrame(nullptr, 1);
    EXPECT_EQ(manager->getFrameTimes(), Floats({2, 1}));

    animation->addAnimation(makeAnimation());
    manager->getFrameTimes() = {4, 4, 4};
    manager->removeKeyFrame(animation, 4);  // Twice: once for the child.
    EXPECT_EQ(manager->getFrameTimes(), Floats());
}

using Targets = AnimatedNode;

TEST_F(Targets, AreFoundWhenTheAnimationIsSet) {
    addKeys("node/t.Y", 1, {0, 0});
    addKeys("node/r", 4, {});
    addKeys("nowhere/r", 4, {});
    const auto made = animation->getChannel("node", "node/m", nullptr);
    manager->setAnimation(animation);
    EXPECT_EQ(manager->getTargetedTransformationsForNode(node), Names({"t", "r", "m"}));
    EXPECT_EQ(manager->getTargetedTransformationsMap().size(), 1u);
    EXPECT_TRUE(manager->isNodeTargeted(node));
    EXPECT_FALSE(manager->isNodeTargeted(nullptr));
    EXPECT_TRUE(manager->getTargetedTransformationsForNode(scene->getRoot()).empty());
    EXPECT_EQ(animation->getChildAnimations()[0]->getTargetNode(), node);
    EXPECT_EQ(animation->getTimeRange(), 3000);
    EXPECT_EQ(animation->getChildAnimations()[0]->getTimeRange(), 3000);
}

using Recording = AnimatedNode;

TEST_F(Recording, TakesTargetedNodesAndTheDefaultCamera) {
    const auto camera = manager->getDefaultCamera();
    ASSERT_TRUE(camera);
    EXPECT_EQ(manager->getDefaultCamera(), camera);
    EXPECT_EQ(camera->getParentNode()->getName(), "DefaultCamera");
    EXPECT_EQ(camera->getParentNode()->getParent(), scene->getRoot());
    test::addElement<TransformationMatrix>(*node, "m");
    manager->resume();
    manager->insertKeyframe(4);
    EXPECT_TRUE(manager->paused());
    Names children;
    for (const auto& child : animation->getChildAnimations()) children.push_back(child->getID());
    EXPECT_EQ(children,
              Names({"node-node-m", camera->getParentNode()->getID() + "-node-transform"}));
    EXPECT_EQ(manager->getFrameTimes(), Floats({1, 2, 3, 4}));
    EXPECT_EQ(manager->getLoopDuration(), seconds(4));
    manager->setAnimation(nullptr);
    manager->insertKeyframe(7);
    EXPECT_EQ(manager->getFrameTimes(), Floats({7})) << "a time needs no animation";
}

TEST_F(Recording, MakesACameraWhereTheDefaultCameraIs) {
    const auto standard = manager->getDefaultCamera()->getParentNode();
    standard->addTranslation(1, 2, 3);
    standard->setScale(Eigen::Vector3f(1, 2, 3));
    const auto added = manager->addAnimationCamera();
    ASSERT_TRUE(added);
    EXPECT_EQ(scene->getCameraInstanceAt(1), added);
    const auto placed = added->getParentNode();
    EXPECT_EQ(placed->getName(), "AnimationCamera");
    EXPECT_EQ(placed->getTransformations(), standard->getTransformations());
    ASSERT_EQ(placed->getOriginalTransformations().size(), 1u);
    EXPECT_EQ(placed->getOriginalTransformations()[0]->getSid(), "transform");
    EXPECT_FALSE(AnimationManager().addAnimationCamera());
}

struct Handlers : AnimatedNode {
    void onUpdate(const std::function<void()>& handler) {
        scene->getRoot()->addNode(second);
        test::addElement<TransformationTranslate>(*second, "t");
        addKeys("second/t", 3, {0, 0, 0, 8, 8, 8});
        listener.registerHandler(std::string("NodeTransformationUpdate"),
                                 [handler](core::event::Event) { handler(); });
    }

    core::event::EventBase listener{scene.events};
    boost::shared_ptr<Node> second = scene.makeNode("second");
};

TEST_F(Handlers, HearOfMatrixAndScaleOfEveryNode) {
    scene.forgetEvents();
    show(1500);
    EXPECT_EQ(scene.eventNames(), Names({"NodeTransformationUpdate", "SceneUpdate",
                                         "NodeTransformationUpdate", "SceneUpdate"}));
}

TEST_F(Handlers, MayReplaceTheAnimationAndUpdateAgain) {
    int depth = 0;
    onUpdate([&] {
        if (depth > 0) return;
        ++depth;
        scene->removeNode(second);
        manager->setAnimation(makeAnimation());
        manager->setAnimation(animation);
        show(2000);
    });
    EXPECT_TRUE(show(1500));
    EXPECT_EQ(second->getTranslation().x(), 2.0f);  // Computed before the first node was written.
}

TEST_F(Handlers, MayReleaseSceneManagerAndAll) {
    onUpdate([&] {
        manager.reset();
        animation.reset();
        node.reset();
        second.reset();
        scene.manager.reset();
    });
    auto* const playing = manager.get();
    playing->setTime(milliseconds(1500));
    EXPECT_TRUE(playing->update(seconds(0)));
}

TEST_F(AnimatedNode, DoesNotKeepItsSceneAlive) {
    scene->setAnimationManager(manager);
    scene->addSceneController(manager);
    EXPECT_EQ(scene->getAnimationManager(), manager);
    const boost::weak_ptr<SceneManager> left(scene.manager);
    scene.manager->stop();
    scene.manager.reset();
    EXPECT_TRUE(left.expired());
    EXPECT_FALSE(show(1500));
    manager->insertKeyframe(1);
    EXPECT_FALSE(manager->getDefaultCamera());
    manager->setAnimation(animation);
    EXPECT_FALSE(show(1500));
}

TEST_F(AnimatedNode, FollowsTheSceneThatItIsAttachedTo) {
    const test::RecordedScene other;
    const auto namesake = other.makeNode("node");
    other->getRoot()->addNode(namesake);
    test::addElement<TransformationTranslate>(*namesake, "t");
    show(1500);
    manager->attach(other.manager);
    show(2000);
    EXPECT_EQ(node->getTranslation().x(), 10);
    EXPECT_EQ(namesake->getTranslation().x(), 10);  // Without the base of the other.
    manager->attach(nullptr);
    EXPECT_FALSE(show(1500));
}

TEST_F(AnimatedNode, EndsWhereAnimationsContainThemselves) {
    const auto child = makeAnimation();
    child->addAnimation(animation);
    animation->addAnimation(child);
    animation->addAnimation(animation);
    manager->setAnimation(animation);
    EXPECT_EQ(shownAt(2000), 10);
    manager->removeKeyFrame(animation, 3);
    EXPECT_EQ(manager->getLoopDuration(), seconds(2));
    *child = Animation("", "");
    *animation = Animation("", "");
}

struct OpenManager : AnimationManager {
    using AnimationManager::getInterpolationType;
    using AnimationManager::indexOfCoordinateValue;
    using AnimationManager::interpolateBezier;
};

TEST(AnimationManagerNames, AreReadInAnyLetterCase) {
    const OpenManager manager;
    const std::vector<std::pair<std::string, int>> types = {
        {"Step", 0},     {"LINEAR", 1},  {"bezier", 2},  {"Hermite", 3},
        {"CARDINAL", 4}, {"BSpline", 5}, {"unknown", 1}, {"", 1}};
    for (const auto& [name, type] : types) EXPECT_EQ(manager.getInterpolationType(name), type);
    const std::vector<std::pair<std::string, int>> components = {
        {"X", 0}, {"y", 1}, {"Z", 2}, {"w", 3}, {"ANGLE", 3}, {"", -1}, {"xy", -1}};
    for (const auto& [name, index] : components) {
        EXPECT_EQ(manager.indexOfCoordinateValue(name), index) << name;
    }
    const Eigen::Vector2f tangent(100, 100);
    EXPECT_EQ(manager.interpolateBezier(2, 4, 1, 2, 1.5f, tangent, tangent), 3);
    EXPECT_EQ(manager.interpolateBezier(2, 4, 1, 1, 7, tangent, tangent), 2);
}

TEST_F(AnimatedNode, IsDrivenByTheSceneWhileKeysAreEdited) {
    std::atomic<int> cycles{0};
    core::event::EventBase listener(scene.events);
    listener.registerHandler(std::string("SyncScene"), [&](core::event::Event) { ++cycles; });
    test::addElement<TransformationMatrix>(*node, "m");
    manager->resume();
    scene->addSceneController(manager);
    const auto end = boost::chrono::steady_clock::now() + boost::chrono::seconds(60);
    for (int step = 0; cycles < 20 && boost::chrono::steady_clock::now() < end; ++step) {
        scene->lockScene();
        const float time = static_cast<float>(step % 100) / 100;
        keys.output->values[1] = time;
        animation->insertKeyFrame(node, time);
        if (step % 7 == 0) animation->removeKeyFrame(time);
        if (step % 50 == 0) manager->setAnimation(animation);
        if (step % 11 == 0) node->setID(step % 2 == 0 ? "node" : "other");
        scene->unlockScene();
        manager->setSmooth(step % 2 == 0);
        manager->resume();
    }
    EXPECT_GE(cycles, 20);
    scene->removeSceneController(manager);
}

}  // namespace
}  // namespace vantorix::scene
