#include <cstdlib>

#include <gtest/gtest.h>

#include "apps/render/Background.h"
#include "apps/render/PictureFile.h"
#include "apps/render/RenderError.h"
#include "apps/render/SceneRenderer.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "tests/apps/SceneMaking.h"

namespace vantorix::apps::render {
namespace {

constexpr float side = 2.0f;

struct Images {
    ImageFile operator()(const std::string&) const {
        if (image.bytes.empty()) throw std::runtime_error("no images here");
        return image;
    }
    ImageFile image;
};

/// One renderer for all tests: a driver starts slowly.
struct SceneRendering : ::testing::Test {
    static void SetUpTestSuite() { renderer = std::make_unique<SceneRenderer>(); }
    static void TearDownTestSuite() { renderer.reset(); }

    /// Looks along -z at what is drawn around the origin, 4 units high.
    void addCamera() {
        const auto node = scene.addNode();
        node->addTranslation(0, 0, 10);
        const auto camera = boost::make_shared<scene::Camera>(
            scene.manager, scene::Camera::ORTHOGRAPHIC, "front", "");
        camera->setYFov(2.0f);
        scene.manager->addCamera(camera);
        node->addInstanceCamera(camera);
        scene.manager->addCameraInstance(
            boost::make_shared<scene::CameraInstance>(node, camera, "sid"));
    }

    void addLight(scene::Light::LightType type, const Eigen::Vector3f& color, float z) {
        const auto light = boost::make_shared<scene::Light>(scene.manager, type, "light", "");
        light->setColor(color);
        const auto node = scene.addNode();
        node->addTranslation(0, 0, z);
        node->addInstanceLight(light);
    }

    Rendering render() {
        return renderer->render(*scene.manager, ImageSource(Images{image}), view);
    }

    static std::unique_ptr<SceneRenderer> renderer;
    QuietScene scene;
    View view{40, 40, "", false};
    ImageFile image;  ///< Behind every image ID; without bytes there is none.
};
std::unique_ptr<SceneRenderer> SceneRendering::renderer;

using SceneLighting = SceneRendering;
using SceneTextures = SceneRendering;
using SceneCameras = SceneRendering;

/// Red, green, blue, alpha in the middle of a picture.
std::vector<int> middleOf(const Picture& picture) {
    const auto* pixel = picture.pixel(picture.width / 2, picture.height / 2);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

TEST_F(SceneRendering, DrawsWhereTheGeometryIsWithSmoothEdges) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "1 0 0"}}))
        ->addTranslation(0.02f, 0, 0);
    const Rendering rendering = render();
    EXPECT_NEAR(static_cast<double>(rendering.coveredPixels), 400.0, 25.0);
    EXPECT_GT(middleOf(rendering.picture)[0], 150);
    EXPECT_EQ(middleOf(rendering.picture)[1], middleOf(rendering.picture)[2]);
    EXPECT_EQ(rendering.picture.pixel(2, 2)[3], 0);
    // The edge goes through the pixels of one column.
    const int edge = rendering.picture.pixel(10, 20)[3];
    EXPECT_TRUE(edge > 0 && edge < 255) << edge;
}

TEST_F(SceneRendering, RefusesScenesThatWouldTakeForever) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0});
    std::vector<unsigned int> indices;
    for (int i = 0; i < 200000; ++i) indices.insert(indices.end(), {0, 1, 2});
    mesh->addPrimitive(boost::make_shared<scene::TriangleMeshPrimitive>(
        mesh, std::vector<scene::StreamMapping>{vertexMapping()}, indices));
    for (int i = 0; i < 501; ++i) scene.show(mesh, makeMaterial({}));
    EXPECT_THROW(render(), RenderLimit);
}

TEST_F(SceneRendering, HiddenNodesHideWhatStandsBelowThem) {
    EXPECT_EQ(render().coveredPixels, 0u) << "nothing is there";
    const auto parent = scene.addNode();
    const auto child = scene.show(makeRectangle(side, side), makeMaterial({}));
    scene.manager->getRoot()->removeChild(child);
    parent->addNode(child);
    EXPECT_GT(render().coveredPixels, 0u);
    parent->setVisible(false);
    EXPECT_EQ(render().coveredPixels, 0u);
}

TEST_F(SceneRendering, NearerSurfacesCoverFartherOnesInAnyOrder) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "0 0 1"}}))
        ->addTranslation(0, 0, 1);
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "1 0 0"}}));
    EXPECT_GT(middleOf(render().picture)[2], 150);
    EXPECT_LT(middleOf(render().picture)[0], 60);
}

TEST_F(SceneRendering, GlassShowsWhatLiesBehindIt) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "0 0 1"}, {"opacity", "0.5"}}))
        ->addTranslation(0, 0, 1);
    const auto alone = middleOf(render().picture);
    EXPECT_NEAR(alone[3], 128, 2);
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "1 0 0"}}));
    const auto both = middleOf(render().picture);
    EXPECT_EQ(both[3], 255);
    EXPECT_GT(both[0], 70);
    EXPECT_GT(both[2], 70);
}

TEST_F(SceneLighting, LightsOfTheSceneColorSurfaces) {
    addCamera();
    addLight(scene::Light::DIRECTIONAL, {0, 1, 0}, 0);
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", "1 1 1"}}));
    const Rendering rendering = render();
    EXPECT_FALSE(rendering.usedDefaultLight);
    EXPECT_GT(middleOf(rendering.picture)[1], 240);
    EXPECT_LT(middleOf(rendering.picture)[0], 80);
}

TEST_F(SceneLighting, BothSidesOfASurfaceAreLit) {
    addCamera();
    addLight(scene::Light::POINT, {1, 1, 1}, 5);
    const auto node = scene.show(makeRectangle(side, side), makeMaterial({}));
    const auto front = middleOf(render().picture);
    node->rotate(Eigen::AngleAxisf(3.14159265f, Eigen::Vector3f::UnitY()).toRotationMatrix());
    EXPECT_NEAR(middleOf(render().picture)[0], front[0], 2);
}

TEST_F(SceneLighting, ADefaultLightHelpsWhereItIsDark) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({}));
    EXPECT_TRUE(render().usedDefaultLight);
    addLight(scene::Light::POINT, {1, 1, 1}, -5);  // Behind the surface.
    const Rendering rendering = render();
    EXPECT_TRUE(rendering.usedDefaultLight);
    EXPECT_GT(middleOf(rendering.picture)[0], 120);
}

TEST_F(SceneLighting, LightsOfAnyBrightnessLeaveShapesVisible) {
    addCamera();
    addLight(scene::Light::POINT, {50000, 25000, 25000}, 5);
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuse", ".5 .5 .5"}}));
    const auto middle = middleOf(render().picture);
    EXPECT_GT(middle[0], middle[1] + 20);
    EXPECT_LT(middle[1], 200);
}

TEST_F(SceneTextures, ShowImagesTheRightWayUp) {
    addCamera();
    // Plain pixels, rows from the top: red above blue.
    image = {"plain", {255, 0, 0, 255, 0, 0, 255, 255}, 1, 2};
    scene.show(makeRectangle(side, side), makeMaterial({{"diffuseTexture", "image"}}));
    const Picture picture = render().picture;
    EXPECT_GT(picture.pixel(20, 26)[0], 150);
    EXPECT_GT(picture.pixel(20, 14)[2], 150);
}

TEST_F(SceneTextures, CutOutsAreNotThere) {
    addCamera();
    image = {"plain", {255, 0, 0, 0, 255, 255, 255, 200}, 1, 2};
    scene.show(makeRectangle(side, side),
               makeMaterial({{"diffuseTexture", "image"}, {"alphaMode", "MASK"}}));
    const Picture picture = render().picture;
    EXPECT_EQ(picture.pixel(20, 28)[3], 0);
    EXPECT_EQ(picture.pixel(20, 12)[3], 255);
}

TEST_F(SceneTextures, ImagesThatCannotBeReadLeaveTheColorAndANote) {
    addCamera();
    scene.show(makeRectangle(side, side),
               makeMaterial({{"diffuseTexture", "image"}, {"diffuse", "0 1 0"}}));
    const Rendering rendering = render();
    EXPECT_EQ(rendering.notes, std::vector<std::string>{"texture image: no images here"});
    EXPECT_GT(middleOf(rendering.picture)[1], 150);
}

TEST_F(SceneCameras, AreFoundByIdSidAndPlace) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({}));
    for (const std::string name : {"front", "sid"}) {
        view.camera = name;
        EXPECT_EQ(middleOf(render().picture)[3], 255) << name;
    }
    view.camera = "back";
    try {
        render();
        FAIL();
    } catch (const UnknownCamera& error) {
        EXPECT_STREQ(error.what(), "there is no camera \"back\"; the model has front");
    }
}

TEST_F(SceneCameras, OneThatShowsNothingGivesWayUnlessItWasAskedFor) {
    addCamera();
    scene.show(makeRectangle(side, side), makeMaterial({}))->addTranslation(100, 0, 0);
    const Rendering rendering = render();
    EXPECT_GT(rendering.coveredPixels, 0u);
    ASSERT_EQ(rendering.notes.size(), 1u);
    EXPECT_NE(rendering.notes[0].find("\"front\" shows nothing"), std::string::npos);
    view.camera = "front";
    EXPECT_EQ(render().coveredPixels, 0u);
}

/// Mean difference of the channels.
double difference(const Picture& a, const Picture& b) {
    if (a.rgba.size() != b.rgba.size()) return 255.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < a.rgba.size(); ++i) sum += std::abs(a.rgba[i] - b.rgba[i]);
    return sum / static_cast<double>(a.rgba.size());
}

/// Set VANTORIX_WRITE_GOLDEN to replace the stored picture by what is drawn now.
TEST_F(SceneRendering, LooksAsItDidBefore) {
    const auto turned = [](float degrees, const Eigen::Vector3f& axis) {
        return Eigen::AngleAxisf(degrees * 0.017453292f, axis).toRotationMatrix();
    };
    image = {"plain",
             {255, 255, 255, 255, 200, 30, 30, 255, 200, 30, 30, 255, 255, 255, 255, 255},
             2,
             2};
    const auto floor = scene.show(makeRectangle(4, 4), makeMaterial({{"diffuse", ".5 .6 .4"}}));
    floor->rotate(turned(-90, Eigen::Vector3f::UnitX()));
    const auto board = scene.show(makeRectangle(2, 2), makeMaterial({{"diffuseTexture", "image"}}));
    board->addTranslation(-0.5f, 1, -1);
    const auto glass =
        scene.show(makeRectangle(1.5f, 1.5f), makeMaterial({{"diffuse", "0.1 0.2 0.9"},
                                                            {"opacity", "0.4"},
                                                            {"shininess", "30"},
                                                            {"specular", "1 1 1"}}));
    glass->addTranslation(0.6f, 0.75f, 0.5f);
    glass->rotate(turned(-30, Eigen::Vector3f::UnitY()));
    view.width = 96;
    view.height = 72;
    Picture picture = render().picture;
    putBehind(Background(), picture);

    const std::string golden = VANTORIX_GOLDEN "/three_boards.png";
    if (std::getenv("VANTORIX_WRITE_GOLDEN")) writePng(picture, golden);
    EXPECT_LT(difference(picture, readPng(golden)), 2.0);
}

}  // namespace
}  // namespace vantorix::apps::render
