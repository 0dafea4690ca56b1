#include <tuple>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"

#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using core::event::Event;
using core::event::EventBase;
using core::event::EventManager;
using test::Names;

struct CameraUpdates : ::testing::Test {
    test::RecordedScene scene;
    Camera camera{scene.manager, Camera::ORTHOGRAPHIC, "cam", "name"};

    CameraUpdates() { scene.forgetEvents(); }
};

TEST_F(CameraUpdates, AreSentForTheProjectionButNotForTheType) {
    camera.setYFov(30.0f);
    camera.setZNear(1.0f);
    camera.setZFar(50.0f);
    camera.setCameraType(Camera::PERSPECTIVE);
    EXPECT_EQ(scene.eventLines(), Names(3, "CameraUpdated|cam"));
    EXPECT_EQ(camera.getCameraType(), Camera::PERSPECTIVE);
    EXPECT_EQ(camera.getYFov(), 30.0f);
    EXPECT_EQ(camera.getZNear(), 1.0f);
    EXPECT_EQ(camera.getZFar(), 50.0f);
}

TEST_F(CameraUpdates, AreDroppedOnceTheSceneIsGone) {
    scene.manager->stop();
    scene.manager.reset();
    camera.setYFov(30.0f);
    EXPECT_EQ(scene.eventLines(), Names());
    EXPECT_EQ(camera.getYFov(), 30.0f);
}

TEST_F(CameraUpdates, ReachTheEventManagerOfTheMoment) {
    const auto plain = boost::make_shared<EventManager>();
    EventBase listener(plain);
    Names heard;
    listener.registerHandler(std::string("CameraUpdated"), [&](Event event) {
        heard.push_back(event.getEventData().toString() + "/" + event.getSender());
    });
    scene->setEventManager(nullptr);
    camera.setYFov(30.0f);
    scene->setEventManager(plain);
    camera.setYFov(31.0f);
    EXPECT_EQ(heard, Names({"cam/"}));
    EXPECT_EQ(scene.eventLines(), Names());
}

TEST_F(CameraUpdates, MayReleaseTheSceneThatSendsThem) {
    EventBase listener(scene.events);
    listener.registerHandler(std::string("CameraUpdated"), [&](Event) {
        scene.manager->stop();
        scene.manager.reset();
    });
    camera.setYFov(30.0f);
    camera.setYFov(31.0f);
    EXPECT_EQ(scene.eventLines(), Names({"CameraUpdated|cam"}));
}

/// A scene manager of which no listener knows, but that sees what is sent through it.
struct WatchingScene : SceneManager {
    using SceneManager::SceneManager;
    using SceneManager::triggerEvent;
    void triggerEvent(Event event) override { seen.push_back(event.getEventType().getName()); }
    Names seen;
};

TEST(UnheardCameraUpdates, AreSeenByASubclassOfTheSceneManager) {
    const auto scene = boost::make_shared<WatchingScene>(boost::make_shared<EventManager>());
    scene->seen.clear();
    Camera(scene, Camera::PERSPECTIVE, "cam", "").setZNear(1.0f);
    scene->stop();
    EXPECT_EQ(scene->seen, Names({"CameraUpdated"}));
}

TEST(Camera, StartsWithTheRangeOfItsType) {
    const std::vector<std::tuple<int, float, float, float>> ranges = {
        {0, 45.0f, 0.1f, 10000.0f}, {1, 1.0f, 0.1f, 10000.0f}, {7, 0.0f, 0.0f, 0.0f}};
    for (const auto& [type, yFov, zNear, zFar] : ranges) {
        const Camera camera(nullptr, static_cast<Camera::Type>(type), "cam", "");
        EXPECT_EQ(camera.getYFov(), yFov);
        EXPECT_EQ(camera.getZNear(), zNear);
        EXPECT_EQ(camera.getZFar(), zFar);
    }
}

TEST(CameraInstance, KeepsNeitherCameraNorNodeAlive) {
    test::RecordedScene scene;
    auto node = scene.makeNode("node");
    auto camera = boost::make_shared<Camera>(scene.manager, Camera::PERSPECTIVE, "cam", "");
    CameraInstance instance(node, camera, "sid");
    EXPECT_EQ(instance.getParentNode(), node);
    EXPECT_EQ(instance.getCamera(), camera);
    node.reset();
    camera.reset();
    EXPECT_FALSE(instance.getParentNode());
    EXPECT_FALSE(instance.getCamera());
}

}  // namespace
}  // namespace vantorix::scene
