#include <cmath>
#include <stdexcept>

#include <boost/function.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/utils/Matrix.h"

#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationSkew.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using core::utils::Matrix;
using namespace scene;
using Vector = core::utils::Vector<float, 3>;

constexpr float pi = 3.14159265f;

Eigen::Matrix3f quarterTurnAboutZ() {
    return Eigen::AngleAxisf(pi / 2, Eigen::Vector3f::UnitZ()).toRotationMatrix();
}

Eigen::Vector3f originOf(const Eigen::Matrix4f& matrix) { return matrix.topRightCorner<3, 1>(); }

testing::AssertionResult isNear(const Eigen::MatrixXf& actual, const Eigen::MatrixXf& expected) {
    if ((actual - expected).cwiseAbs().maxCoeff() < 1e-5f) return testing::AssertionSuccess();
    return testing::AssertionFailure() << actual << "\nis not\n" << expected;
}

std::string textOf(const Eigen::Matrix4f& matrix) {
    return Matrix(matrix.data()).toEventDataString();
}

using Setter = std::function<void(Node&)>;

/// Everything that moves a node, once each.
std::vector<Setter> transformSetters() {
    const Eigen::Matrix4f identity = Eigen::Matrix4f::Identity();
    const Eigen::Vector3f factors(1, 2, 3);
    const Eigen::Translation3f place(1, 2, 3);
    return {[](Node& node) { node.move(1, 0, 0); },
            [](Node& node) { node.addTranslation(1, 0, 0); },
            [=](Node& node) { node.setTranslation(place); },
            [](Node& node) { node.rotate(quarterTurnAboutZ()); },
            [](Node& node) { node.addRotation(quarterTurnAboutZ()); },
            [=](Node& node) { node.setRotation(identity); },
            [=](Node& node) { node.scale(factors); },
            [=](Node& node) { node.setScale(factors); },
            [=](Node& node) { node.addTransformation(identity); },
            [](Node& node) { node.addTransformation(boost::make_shared<TransformationMatrix>()); },
            [=](Node& node) { node.setTransformations(identity); },
            [=](Node& node) { node.setTransformations(place, identity); },
            [](Node& node) { node.triggerTransformationUpdate(); }};
}

/// A running scene that records its events, and two nodes that are not attached yet.
struct TwoNodes : testing::Test {
    RecordedScene scene;
    boost::shared_ptr<Node> parent = scene.makeNode("parent");
    boost::shared_ptr<Node> child = scene.makeNode("child");
    const core::event::EventType moved{"NodeTransformationUpdate"};
};
struct NodeHierarchy : TwoNodes {};
struct NodeTransformation : TwoNodes {};
struct NodeElements : TwoNodes {};
struct NodeInstances : TwoNodes {};
struct NodeLayers : TwoNodes {};

TEST_F(NodeHierarchy, AChildOfAnotherSceneIsAnnouncedThereToo) {
    const RecordedScene other;
    const auto guest = other.makeNode("guest");
    other.forgetEvents();
    scene->setEventManager(boost::make_shared<core::event::EventManager>());  // Nobody listens.
    parent->addNode(guest);
    EXPECT_EQ(other.eventNames(), Names({"NodeTransformationUpdate", "SceneUpdate"}));
}

TEST_F(NodeHierarchy, PositionsOutsideTheListsThrow) {
    parent->addNode(child);
    EXPECT_EQ(parent->getChildNode(0), child);
    try {
        parent->getChildNode(1);
        FAIL();
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
    EXPECT_THROW(parent->getInstanceLight(0), std::out_of_range);
    EXPECT_THROW(parent->getInstanceGeometry(0), std::out_of_range);
}

TEST_F(NodeHierarchy, WithoutItsSceneANodeIsReadableButTakesNoChildren) {
    parent->addNode(child);
    scene.manager.reset();
    scene.forgetEvents();
    const auto other = boost::make_shared<Node>(nullptr);
    parent->addNode(other);
    parent->addTranslation(1, 0, 0);
    parent->addToLayer("anything");
    parent->removeChild(other);
    EXPECT_EQ(parent->getChildCount(), 1u);
    EXPECT_TRUE(isNear(originOf(child->getCombinedTransformations()), Eigen::Vector3f(1, 0, 0)));
    EXPECT_TRUE(parent->getLayersNames().empty());
    EXPECT_EQ(scene.eventNames(), Names());
}

TEST_F(NodeHierarchy, AListenerMayReleaseTheNodesThatItIsToldAbout) {
    core::event::EventBase releaser(scene.events);
    releaser.registerHandler(moved, [&](const auto&) {
        parent.reset();
        scene.manager.reset();
    });
    scene.forgetEvents();
    parent.get()->addNode(child);
    EXPECT_EQ(scene.eventNames(), Names({"NodeTransformationUpdate"})) << "then the scene was gone";
    EXPECT_EQ(child->getParent(), nullptr);
}

TEST_F(NodeTransformation, MovingAppliesTheProductOfScaleAndRotation) {
    for (int i = 0; i < 200; ++i) {
        const Eigen::Vector4f factors(Eigen::Vector4f::Random().head<3>().homogeneous());
        const Eigen::Matrix4f rotation = Eigen::Matrix4f::Random();
        const Eigen::Vector3f offset = Eigen::Vector3f::Random();
        const auto node = scene.makeNode("node");
        node->scale({9, 9, 9});
        node->scale(factors.head<3>());  // Replaces the last one.
        node->setRotation(rotation);
        node->move(offset);
        Eigen::Matrix4f product;
        for (int row = 0; row < 4; ++row) product.row(row) = factors[row] * rotation.row(row);
        const Eigen::Vector3f expected =
            product.topLeftCorner<3, 3>() * offset + product.topRightCorner<3, 1>();
        EXPECT_EQ(node->getTranslation().vector(), expected) << "to the last bit";
    }
}

TEST_F(NodeTransformation, AScaleInsideAWholeMatrixIsDropped) {
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topLeftCorner<3, 3>() = quarterTurnAboutZ() * 3.0f;
    matrix.topRightCorner<3, 1>() = Eigen::Vector3f(1, 2, 3);
    child->setScale({5, 5, 5});
    child->setTransformations(matrix);
    EXPECT_EQ(child->getScale(), Eigen::Vector3f(5, 5, 5));
    EXPECT_TRUE(isNear(child->getRotation().topLeftCorner<3, 3>(), quarterTurnAboutZ()));
    child->setTransformations(Eigen::Matrix4f::Zero());
    EXPECT_TRUE(std::isnan(child->getRotation()(0, 0))) << "a zero column is not guarded against";
}

TEST_F(NodeTransformation, AWholeMatrixMultipliesTheRotationAndAddsItsTranslation) {
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topRightCorner<3, 1>() = Eigen::Vector3f(1, 2, 3);
    child->addTransformation(matrix);
    child->addTransformation(matrix);
    EXPECT_TRUE(isNear(child->getTranslation().vector(), Eigen::Vector3f(2, 4, 6)));
    EXPECT_TRUE(isNear(originOf(child->getTransformations()), Eigen::Vector3f(4, 8, 12)));
    child->addTransformation(child->getTransformations());  // Its own matrix as the argument.
    EXPECT_TRUE(isNear(child->getTranslation().vector(), Eigen::Vector3f(6, 12, 18)));
}

TEST_F(NodeTransformation, EverySetterAnnouncesTheNewLocalMatrixOnce) {
    const auto setters = transformSetters();
    for (std::size_t i = 0; i < setters.size(); ++i) {
        scene.forgetEvents();
        setters[i](*child);
        EXPECT_EQ(scene.eventLines(),
                  Names({"NodeTransformationUpdate|child," + textOf(child->getTransformations()),
                         "SceneUpdate|"}))
            << "setter " << i;
    }
}

TEST_F(NodeTransformation, ANodeReleasedByItsOwnEventStillSendsTheSecondOne) {
    core::event::EventBase releaser(scene.events);
    releaser.registerHandler(moved, [&](const auto&) { child.reset(); });
    for (const auto& setter : transformSetters()) {
        child = scene.makeNode("child");
        const boost::weak_ptr<Node> watched = child;
        scene.forgetEvents();
        setter(*child.get());
        EXPECT_EQ(scene.eventNames(), Names({"NodeTransformationUpdate", "SceneUpdate"}));
        EXPECT_TRUE(watched.expired());
    }
}

TEST_F(NodeTransformation, AListenerReadsTheNewWorldMatrix) {
    parent->addNode(child);
    child->getCombinedTransformations();
    Eigen::Vector3f seen;
    core::event::EventBase reader(scene.events);
    reader.registerHandler(
        moved, [&](const auto&) { seen = originOf(child->getCombinedTransformations()); });
    parent->addTranslation(1, 2, 3);
    EXPECT_EQ(seen, Eigen::Vector3f(1, 2, 3));
}

TEST_F(NodeElements, ApplyInTheirOrderAndAreAllListed) {
    child->addTransformation(boost::make_shared<TransformationTranslate>(Vector(1.0f, 0.0f, 0.0f)));
    child->addTransformation(
        boost::make_shared<TransformationRotate>(Vector(0.0f, 0.0f, 2.0f), 90.0f));
    child->addTransformation(boost::make_shared<TransformationScale>(2.0f, 3.0f, 4.0f));
    child->addTransformation(boost::make_shared<TransformationScale>(Vector()));
    child->addTransformation(boost::make_shared<TransformationLookAt>(
        Vector(1.0f, 1.0f, 1.0f), Vector(0.0f, 0.0f, 0.0f), Vector(0.0f, 1.0f, 0.0f)));
    child->addTransformation(boost::make_shared<TransformationSkew>(30.0f, Vector(1.0f, 0.0f, 0.0f),
                                                                    Vector(0.0f, 1.0f, 0.0f)));
    child->addTransformation(boost::make_shared<TransformationRotate>());
    child->addTransformation(boost::shared_ptr<ITransformation>());
    EXPECT_EQ(child->getOriginalTransformations().size(), 7u);
    EXPECT_TRUE(isNear(child->getTranslation().vector(), Eigen::Vector3f(1, 0, 0)));
    EXPECT_TRUE(isNear(child->getRotation().topLeftCorner<3, 3>(), quarterTurnAboutZ()));
    EXPECT_EQ(child->getScale(), Eigen::Vector3f(2, 3, 4));
}

TEST_F(NodeElements, AMatrixSplitsIntoTranslationRotationAndScale) {
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topLeftCorner<3, 3>() =
        quarterTurnAboutZ() * Eigen::Vector3f(2, 3, 4).asDiagonal().toDenseMatrix();
    matrix.topRightCorner<3, 1>() = Eigen::Vector3f(1, 2, 3);
    child->addTransformation(boost::make_shared<TransformationMatrix>(matrix.data()));
    EXPECT_TRUE(isNear(child->getTransformations(), matrix));
    EXPECT_TRUE(isNear(child->getScale(), Eigen::Vector3f(2, 3, 4)));
    const auto mirrored = scene.makeNode("mirrored");
    matrix.topLeftCorner<3, 3>() = quarterTurnAboutZ() *
                                   Eigen::AngleAxisf(1.0f, Eigen::Vector3f(1, 1, 0).normalized()) *
                                   Eigen::Vector3f(2, -3, 4).asDiagonal();
    mirrored->addTransformation(boost::make_shared<TransformationMatrix>(matrix.data()));
    EXPECT_TRUE(isNear(mirrored->getTransformations(), matrix));
    EXPECT_GT(mirrored->getRotation().determinant(), 0.0f);
    matrix(0, 0) = std::nanf("");
    child->addTransformation(boost::make_shared<TransformationMatrix>(matrix.data()));
    EXPECT_TRUE(child->getRotation().allFinite());
}

TEST_F(NodeInstances, LightsAreAnnouncedAndCamerasAreNot) {
    scene.forgetEvents();
    child->addInstanceLight(
        boost::make_shared<Light>(scene.manager, Light::POINT, "lamp", "a lamp"));
    child->addInstanceCamera(
        boost::make_shared<Camera>(scene.manager, Camera::PERSPECTIVE, "eye", "an eye"));
    child->addInstanceLight(nullptr);
    child->addInstanceCamera(nullptr);
    child->addInstanceGeometry(nullptr);
    child->addInstanceController(nullptr);
    child->removeInstanceGeometry(nullptr);
    child->removeChild(nullptr);
    EXPECT_EQ(scene.eventLines(), Names({"NodeAddedLight|child,lamp"}));
    EXPECT_EQ(child->getInstanceLight(0)->getID(), "lamp");
    EXPECT_EQ(child->getInstanceCamera(0)->getID(), "eye");
    EXPECT_EQ(child->getInstanceLightCount() + child->getInstanceCameraCount(), 2u);
    EXPECT_EQ(child->getInstanceGeometryCount() + child->getInstanceControllerCount(), 0u);
    const auto controller = boost::make_shared<InstanceController>(nullptr, nullptr);
    child->addInstanceController(controller);
    EXPECT_EQ(child->getInstanceController(0), controller);
    EXPECT_THROW(child->getInstanceController(1), std::out_of_range);
}

TEST_F(NodeLayers, AreAnnouncedByNameWhetherOrNotTheyChange) {
    scene.forgetEvents();
    child->setVisible(false);
    EXPECT_FALSE(child->isVisible());
    child->addToLayer("mine");
    child->addToLayer(6);
    child->removeFromLayer("visible");
    child->setVisible(true);
    EXPECT_EQ(scene.eventLines(),
              Names({"NodeAddedLayer|child,hidden", "NodeAddedLayer|child,mine",
                     "NodeAddedLayer|child,mine", "NodeRemovedLayer|child,visible",
                     "NodeRemovedLayer|child,hidden"}));
    EXPECT_EQ(child->getLayers(), std::set<int>({6}));
}

TEST_F(NodeLayers, AskingForAnUnknownNameRegistersIt) {
    EXPECT_FALSE(child->inLayer("new"));
    EXPECT_EQ(child->getLayerName(6), "new");
    child->addToLayer("new");
    child->addToLayer("selected");
    child->addToLayer(77);
    EXPECT_TRUE(child->inLayer("new"));
    EXPECT_EQ(child->getLayersNames(), std::set<std::string>({"", "new", "selected"}));
}

/// A geometry that edits the scene when it is measured.
struct EditingMesh : Mesh {
    EditingMesh() : Mesh("editing", "") {}
    Eigen::Vector3f getBVMin() override {
        edit();
        return {1, 2, 3};
    }
    Eigen::Vector3f getBVMax() override { return {4, 5, 6}; }
    boost::function<void()> edit;
};

TEST_F(NodeHierarchy, AGeometryMayEditTheTreeThatItIsMeasuredFor) {
    parent->addNode(child);
    const auto mesh = boost::make_shared<EditingMesh>();
    const auto instance = boost::make_shared<InstanceGeometry>(mesh, boost::shared_ptr<Material>());
    child->addInstanceGeometry(instance);
    child->addInstanceGeometry(instance);
    mesh->edit = [&] {
        if (child) child->removeInstanceGeometry(instance);
        parent->removeChild(child);
        child.reset();
    };
    EXPECT_EQ(parent->getBVMin(), Eigen::Vector3f(1, 2, 3));
    EXPECT_EQ(parent->getBVMax(), Eigen::Vector3f(0, 0, 0));
}

}  // namespace
}  // namespace vantorix::test
