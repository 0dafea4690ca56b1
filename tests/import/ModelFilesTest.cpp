#include <numeric>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/import/ModelImporter.h"
#include "scene/animation/Animation.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Sampler.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "tests/support/RecordedScene.h"
#include "tests/support/TemporaryFolder.h"

using namespace vantorix::apps::import;
using namespace vantorix::scene;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// Real files through the real worker into a scene.
struct ModelFiles : ::testing::Test {
    ImportResult read(const std::string& file, bool triangulate = false) {
        ImportOptions options;
        options.triangulate = triangulate;
        options.limits.wallTime = std::chrono::seconds(60);
        return ModelImporter(options).importFile(file, scene.manager);
    }
    unsigned int faceCount() {
        std::vector<boost::shared_ptr<IGeometry>> geometries;
        scene->getGeometryManager()->getGeometries(geometries);
        unsigned int count = 0;
        for (const auto& geometry : geometries) {
            const auto mesh = boost::dynamic_pointer_cast<Mesh>(geometry);
            for (const auto& primitive : mesh->getMeshPrimitives()) count += primitive->getCount();
        }
        return count;
    }

    vantorix::test::TemporaryFolder folder;
    vantorix::test::RecordedScene scene;
};

namespace {

std::string nestedNodes(int depth) {
    std::string open, close;
    for (int i = 0; i < depth; ++i) {
        open += "<node id=\"n" + std::to_string(i) + "\">";
        close += "</node>";
    }
    return "<COLLADA version=\"1.4.1\"><asset/><library_visual_scenes><visual_scene id=\"s\">" +
           open + close +
           "</visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#s\"/>"
           "</scene></COLLADA>";
}

}  // namespace

TEST_F(ModelFiles, ASquareWithATexture) {
    const auto picture = folder.write("maps/Wood.png", "x");
    folder.write("square.mtl", "newmtl wood/dark\nKd 0.5 0.25 1\nd 0.5\nmap_Kd maps\\wood.png\n");
    const auto file = folder.write("square.obj",
                                   "mtllib square.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                   "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                                   "o square\nusemtl wood/dark\nf 1/1 2/2 3/3 4/4\n");
    const auto result = read(file);
    ASSERT_EQ(result.status, ImportResult::DONE) << result.reason;
    EXPECT_EQ(faceCount(), 1u);
    EXPECT_EQ(scene->getSceneName(), "square");
    EXPECT_THAT(result.report.getNotes(),
                Contains("material \"wood/dark\": its id is \"wood_dark\""));

    const auto square = scene->getNodeByName("square");
    ASSERT_TRUE(square);
    EXPECT_EQ(square->getBVMax(), Eigen::Vector3f(1, 1, 0));
    const auto material = square->getInstanceGeometry(0)->getMaterial("wood_dark");
    ASSERT_TRUE(material);
    EXPECT_EQ(material->getParameterByName("diffuse")->getValue(), "0.5 0.25 1 1");
    EXPECT_EQ(material->getParameterByName("opacity")->getValue(), "0.5");
    const auto image = material->getParameterByName("diffuseTexture")->getValue();
    EXPECT_EQ(result.images.at(image).path, picture);

    // The file has no normals, yet the picture is to be lit.
    const auto mesh =
        boost::dynamic_pointer_cast<Mesh>(square->getInstanceGeometry(0)->getGeometry());
    const auto normals = mesh->getStream("NORMAL_stream");
    ASSERT_TRUE(normals);
    EXPECT_NEAR(normals->values[2], 1.0f, 1e-6f);
}

TEST_F(ModelFiles, PolygonsBecomeTrianglesOnlyWhereAsked) {
    const auto file = folder.write("faces.obj",
                                   "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 1 1 0\nv 0 2 0\n"
                                   "f 1 2 3 4 5\nf 1 2 3\nf 1 2 3 4\n");
    const auto types = [this] {
        const auto mesh = boost::dynamic_pointer_cast<Mesh>(
            scene->getGeometryManager()->getGeometry(scene->getGeometryManager()->getIDs().back()));
        std::vector<IMeshPrimitive::Type> list;
        for (const auto& primitive : mesh->getMeshPrimitives()) {
            list.push_back(primitive->getType());
        }
        return list;
    };
    ASSERT_EQ(read(file).status, ImportResult::DONE);
    EXPECT_EQ(faceCount(), 3u);
    EXPECT_EQ(types(), std::vector({IMeshPrimitive::TRIANGLES, IMeshPrimitive::POLYGONS}));
    ASSERT_EQ(read(file, true).status, ImportResult::DONE);
    EXPECT_EQ(faceCount(), 3u + 6u);
    EXPECT_EQ(types(), std::vector({IMeshPrimitive::TRIANGLES}));
}

TEST_F(ModelFiles, TheSampleFigureComesWithItsSkinAndItsMovement) {
    const auto result = read(VANTORIX_SAMPLES "/figure.dae");
    ASSERT_EQ(result.status, ImportResult::DONE) << result.reason;
    EXPECT_THAT(result.report.getNotes(), Not(Contains(HasSubstr("bone"))));
    ASSERT_EQ(scene->getControllersLibrary().size(), 1u);
    const auto skin = scene->getControllersLibrary()[0]->getSkin();
    EXPECT_EQ(skin->getJointsInput("JOINT")->stringValues.size(), 17u);
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(skin->getSourceGeometry());
    ASSERT_EQ(skin->getVCount().size(),
              static_cast<std::size_t>(mesh->getStream("position_stream")->count));
    for (unsigned int vertex = 0; vertex < skin->getVCount().size(); ++vertex) {
        std::vector<int> joints;
        std::vector<float> weights;
        skin->getVertexJointsAndWeights(vertex, joints, weights);
        ASSERT_FALSE(joints.empty());
        ASSERT_NEAR(std::accumulate(weights.begin(), weights.end(), 0.0f), 1.0f, 1e-5f);
    }
    ASSERT_EQ(scene->getAnimationsLibrary().size(), 1u);
    const auto animation = scene->getAnimationsLibrary()[0];
    EXPECT_EQ(animation->getDuration(), boost::posix_time::seconds(4));
    ASSERT_EQ(animation->getChildAnimations().size(), 17u);
    for (const auto& child : animation->getChildAnimations()) {
        const auto times = child->getSamplers()[0]->getStreamBySemantic(Sampler::INPUT);
        // 49 in the file, and one before them.
        EXPECT_EQ(times->count, 50);
        EXPECT_NEAR(times->values[2], 4.0f / 48.0f, 1e-6f);  // The file has six digits.
    }
}

TEST_F(ModelFiles, WhatCannotBeDrawnIsLeftOutAndReported) {
    const auto file = folder.write("odd.obj",
                                   "v nan 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                   "f 1 2 3\nf 2 3 4\nl 1 2\n");
    const auto result = read(file);
    ASSERT_EQ(result.status, ImportResult::DONE) << result.reason;
    EXPECT_EQ(faceCount(), 2u);
    EXPECT_THAT(result.report.getNotes(), Contains(HasSubstr("dropped")));
    EXPECT_THAT(result.report.getNotes(), Contains(HasSubstr("position values that are no")));
}

TEST_F(ModelFiles, EveryOtherFileGetsOneLineWithItsNameAndChangesNothing) {
    scene->getRoot();
    const std::vector<std::string> files = {
        folder.path("missing.obj"),
        folder.write("empty.ply", ""),
        folder.write("text.txt", "no model at all\n"),
        folder.write("cut.glb", std::string("glTF\2\0\0\0\xff\xff\xff\x7f", 12)),
        folder.write("counts.off", "OFF\n2000000000 2000000000 0\n0 0 0\n"),
        folder.write("counts.ply",
                     "ply\nformat ascii 1.0\nelement vertex 4000000000\nproperty float x\n"
                     "element face 4000000000\nproperty list uchar int vertex_indices\n"
                     "end_header\n0\n"),
        folder.write("deep.dae", nestedNodes(200000)),
    };
    scene.forgetEvents();
    for (const auto& file : files) {
        const auto result = read(file);
        EXPECT_NE(result.status, ImportResult::DONE) << file;
        EXPECT_EQ(result.reason.rfind(file + ": ", 0), 0u) << result.reason;
        EXPECT_GT(result.reason.size(), file.size() + 4) << result.reason;
        EXPECT_EQ(result.reason.find('\n'), std::string::npos);
    }
    EXPECT_THAT(scene.eventNames(), IsEmpty());
}

TEST_F(ModelFiles, AModelCannotMakeTheWorkerWaitForAPipe) {
    ASSERT_EQ(::mkfifo(folder.path("pipe.mtl").c_str(), 0600), 0);
    const auto file = folder.write(
        "waits.obj", "mtllib pipe.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nusemtl m\nf 1 2 3\n");
    EXPECT_EQ(read(file).status, ImportResult::DONE);
}

/// Each budget alone, so small that the sample meets it: what is over is counted, not copied.
TEST_F(ModelFiles, EveryBudgetIsNamedWithWhatWasMetAndWhatIsAllowed) {
    using Budget = std::uint64_t ImportLimits::*;
    const std::tuple<Budget, std::uint64_t, const char*> budgets[] = {
        {&ImportLimits::fileBytes, 1000, "763505 bytes"},
        {&ImportLimits::answerBytes, 1000, "[0-9]+ bytes when read"},
        {&ImportLimits::nodes, 4, "6 nodes"},
        {&ImportLimits::depth, 3, "4 levels of nodes"},
        {&ImportLimits::vertices, 100, "22836 vertices"},
        {&ImportLimits::faces, 100, "7612 faces"},
        {&ImportLimits::corners, 100, "22836 corners of faces"},
        {&ImportLimits::influences, 100, "42500 influences of bones"},
        {&ImportLimits::keys, 1000, "2499 animation keys"},
        {&ImportLimits::items, 2, "6 materials"},
    };
    for (const auto& [budget, allowed, met] : budgets) {
        ImportOptions options;
        options.limits.*budget = allowed;
        const auto result =
            ModelImporter(options).importFile(VANTORIX_SAMPLES "/figure.dae", scene.manager);
        EXPECT_EQ(result.status, ImportResult::LIMIT_MET);
        EXPECT_THAT(result.reason,
                    testing::MatchesRegex(".*/figure.dae: has " + std::string(met) + ", " +
                                          std::to_string(allowed) + " are allowed"));
        EXPECT_EQ(result.limit.allowed, static_cast<double>(allowed));
        EXPECT_GT(result.limit.met, result.limit.allowed);
    }
    EXPECT_TRUE(scene->getNodeArray().empty());
}

TEST_F(ModelFiles, SomeModelsOfTheTestPackage) {
    const std::string models = "/usr/share/assimp/models/";
    if (!std::filesystem::exists(models)) GTEST_SKIP() << "assimp-testmodels is not installed";
    // Faces after polygons were cut into triangles.
    const std::vector<std::pair<std::string, unsigned int>> expectations = {
        {"OBJ/box.obj", 12},        {"STL/Spider_ascii.stl", 1368},
        {"Collada/duck.dae", 4212}, {"glTF2/BoxTextured-glTF-Binary/BoxTextured.glb", 12},
        {"OBJ/spider.obj", 1368},
    };
    for (const auto& [model, triangles] : expectations) {
        const unsigned int before = faceCount();
        const auto result = read(models + model, true);
        EXPECT_EQ(result.status, ImportResult::DONE) << result.reason;
        EXPECT_EQ(faceCount() - before, triangles) << model;
    }
}

TEST_F(ModelFiles, CamerasAndUnitsOfTheTestPackage) {
    const std::string models = "/usr/share/assimp/models/";
    if (!std::filesystem::exists(models)) GTEST_SKIP() << "assimp-testmodels is not installed";
    ASSERT_EQ(read(models + "FBX/spider.fbx").status, ImportResult::DONE);
    EXPECT_FLOAT_EQ(scene->getMeterUnit(), 0.01f);
    // 49.13434 degrees wide at 16:9; the camera looks along +x of its node.
    const auto camera = scene->getCameraAt(0);
    EXPECT_NEAR(camera->getYFov(), 28.84f, 0.01f);
    const auto place = scene->getCameraInstanceAt(0)->getParentNode();
    EXPECT_NEAR((place->getTransformations().col(2) + Eigen::Vector4f::UnitX()).norm(), 0, 1e-6f);

    // The heights stand in the file: 0.7 radians, and a "ymag" of 1.
    ASSERT_EQ(read(models + "glTF2/cameras/Cameras.gltf").status, ImportResult::DONE);
    EXPECT_NEAR(scene->getCameraAt(1)->getYFov(), 40.107f, 0.001f);
    EXPECT_EQ(scene->getCameraAt(2)->getCameraType(), Camera::ORTHOGRAPHIC);
    EXPECT_EQ(scene->getCameraAt(2)->getYFov(), 1.0f);
}
