#include <cmath>

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include "apps/render/MeshFlattener.h"
#include "apps/render/SceneReader.h"
#include "apps/render/SkinPose.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/controller/Skin.h"
#include "tests/apps/SceneMaking.h"

namespace vantorix::apps::render {
namespace {

using Eigen::Matrix4f;
using Eigen::Vector3f;

struct Influence {
    int joint;
    float weight;
};

/// A rod from (0,0,0) over (0,1,0) to (0,2,0) of three vertices, and the joints "low" at its foot
/// and "high" in its middle.
struct SkinnedRod : ::testing::Test {
    SkinnedRod() {
        low = addJoint("low", {0, 0, 0});
        high = addJoint("high", {0, 1, 0});
        skin->setStreams({jointStream, matrixStream, weightStream});
        skin->setJointsInput("JOINT", "joints");
        skin->setJointsInput("INV_BIND_MATRIX", "matrices");
        skin->setVertexWeightsInput("JOINT", "joints");
        skin->setVertexWeightsInput("WEIGHT", "weights");
        follow({{{0, 1.0f}}, {{0, 0.5f}, {1, 0.5f}}, {{1, 1.0f}}});
    }

    boost::shared_ptr<scene::Node> addJoint(const std::string& id, const Vector3f& place) {
        const auto node = scene.addNode();
        node->setID(id);
        node->addTranslation(place);
        jointStream->stringValues.push_back(id);
        const std::vector<float> row = {1, 0, 0, -place.x(), 0, 1, 0, -place.y(),
                                        0, 0, 1, -place.z(), 0, 0, 0, 1};
        matrixStream->values.insert(matrixStream->values.end(), row.begin(), row.end());
        return node;
    }
    void follow(const std::vector<std::vector<Influence>>& vertices) {
        std::vector<unsigned int> counts;
        std::vector<int> pairs;
        for (const auto& influences : vertices) {
            counts.push_back(static_cast<unsigned int>(influences.size()));
            for (const auto& [joint, weight] : influences) {
                pairs.push_back(joint);
                pairs.push_back(weightStream->insertValue(1, &weight));
            }
        }
        skin->setVCount(counts);
        skin->setV(pairs);
    }
    Vector3f placeOf(unsigned int vertex, const Matrix4f& world = Matrix4f::Identity()) const {
        const float y = static_cast<float>(vertex);
        return SkinPose(*scene.manager, skin, world).matrixOf(vertex) * Eigen::Vector4f(0, y, 0, 1);
    }

    QuietScene scene;
    boost::shared_ptr<scene::Mesh> mesh = makeMesh({0, 0, 0, 0, 1, 0, 0, 2, 0});
    boost::shared_ptr<scene::Skin> skin = boost::make_shared<scene::Skin>(mesh);
    boost::shared_ptr<scene::Stream> jointStream = makeStream("joints", 1, {});
    boost::shared_ptr<scene::Stream> matrixStream = makeStream("matrices", 16, {});
    boost::shared_ptr<scene::Stream> weightStream = makeStream("weights", 1, {});
    boost::shared_ptr<scene::Node> low, high;
};

Eigen::Matrix3f quarterTurnAboutZ() {
    return Eigen::AngleAxisf(std::acos(0.0f), Vector3f::UnitZ()).toRotationMatrix();
}

bool isNear(const Vector3f& a, const Vector3f& b) { return (a - b).norm() < 1e-5f; }

TEST_F(SkinnedRod, AtRestEveryVertexStaysInItsPlace) {
    // The node that shows a skin does not move it.
    const Matrix4f moved = Eigen::Affine3f(Eigen::Translation3f(7, 8, 9)).matrix();
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_TRUE(isNear(placeOf(i, moved), {0, static_cast<float>(i), 0})) << i;
    }
}

TEST_F(SkinnedRod, VerticesFollowTheMeanOfTheirJoints) {
    high->rotate(quarterTurnAboutZ());
    EXPECT_TRUE(isNear(placeOf(2), {-1, 1, 0}));
    low->addTranslation(0, 0, 4);
    EXPECT_TRUE(isNear(placeOf(0), {0, 0, 4}));
    EXPECT_TRUE(isNear(placeOf(1), {0, 1, 2}));
}

TEST_F(SkinnedRod, TheBindShapeComesFirst) {
    skin->setBindShapeMatrix(Eigen::Affine3f(Eigen::Scaling(2.0f)).matrix());
    high->rotate(quarterTurnAboutZ());
    EXPECT_TRUE(isNear(placeOf(2), {-3, 1, 0}));
}

TEST_F(SkinnedRod, WhatNoJointMovesStaysWithTheNode) {
    const Matrix4f moved = Eigen::Affine3f(Eigen::Translation3f(7, 8, 9)).matrix();
    follow({{}, {{0, 0.0f}}, {{-1, 1.0f}, {5, 1.0f}}});
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_TRUE(isNear(placeOf(i, moved), {7, 8 + static_cast<float>(i), 9})) << i;
    }
    // Weights count in proportion, also where one of the joints is missing.
    jointStream->stringValues[0] = "nobody";
    follow({{{0, 3.0f}, {1, 0.25f}}});
    high->addTranslation(1, 0, 0);
    EXPECT_TRUE(isNear(placeOf(0, moved), {1, 0, 0}));
}

TEST_F(SkinnedRod, MatricesThatAreMissingAreTheIdentity) {
    matrixStream->values.resize(20);
    EXPECT_TRUE(isNear(placeOf(2), {0, 3, 0}));
}

TEST_F(SkinnedRod, NormalsTurnWithTheirVertex) {
    follow({{{1, 1.0f}}, {{1, 1.0f}}, {{1, 1.0f}}});
    high->rotate(quarterTurnAboutZ());
    high->setScale({4, 1, 1});
    const auto normals = makeStream("normals", 3, {0.6f, 0.8f, 0});
    scene::TriangleMeshPrimitive primitive(mesh, {vertexMapping(), {scene::NORMAL, normals, 1}},
                                           {0, 0, 1, 0, 2, 0});
    const SkinPose pose(*scene.manager, skin, Matrix4f::Identity());
    const auto corners = flatten(*mesh, primitive, scene::TEXCOORD0, &pose).corners;
    ASSERT_EQ(corners.size(), 3u);
    // Stretched to four times its length along x, a surface faces y more than before.
    const Vector3f stretched = quarterTurnAboutZ() * Vector3f(0.15f, 0.8f, 0).normalized();
    EXPECT_TRUE(isNear(Vector3f(corners[0].normal), stretched)) << Vector3f(corners[0].normal);
}

TEST_F(SkinnedRod, IsReadThroughItsController) {
    const std::vector<unsigned int> indices = {0, 1, 2};
    mesh->addPrimitive(boost::make_shared<scene::TriangleMeshPrimitive>(
        mesh, std::vector<scene::StreamMapping>{vertexMapping()}, indices));
    const auto controller = boost::make_shared<scene::Controller>("skin", "");
    controller->setSkin(skin);
    const auto shown =
        boost::make_shared<scene::InstanceGeometry>(mesh, makeMaterial({{"diffuse", "1 0 0"}}));
    const auto node = scene.addNode();
    node->addTranslation(50, 0, 0);
    node->addInstanceController(boost::make_shared<scene::InstanceController>(shown, controller));
    node->addInstanceController(boost::make_shared<scene::InstanceController>(nullptr, controller));
    high->rotate(quarterTurnAboutZ());

    const auto contents = readScene(*scene.manager);
    ASSERT_EQ(contents.list.items.size(), 1u);
    EXPECT_EQ(contents.list.items[0].surface.colour.y(), 0.0f);
    EXPECT_TRUE(isNear(contents.box.least.cast<float>(), {-1, 0, 0}));
    EXPECT_TRUE(isNear(contents.box.most.cast<float>(), {0, 1, 0}));
}

}  // namespace
}  // namespace vantorix::apps::render
