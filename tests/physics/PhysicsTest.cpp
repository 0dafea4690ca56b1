#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/physics/PhysicsAttachment.h"
#include "scene/physics/PhysicsInstanceModel.h"
#include "scene/physics/PhysicsInstanceRigidBody.h"
#include "scene/physics/PhysicsInstanceRigidConstraint.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"
#include "scene/physics/PhysicsScene.h"
#include "scene/physics/PhysicsShape.h"
#include "scene/physics/ShapeBox.h"
#include "scene/physics/ShapeCapsule.h"
#include "scene/physics/ShapeCylinder.h"
#include "scene/physics/ShapePlane.h"
#include "scene/physics/ShapeSphere.h"
#include "scene/physics/ShapeTaperedCapsule.h"
#include "scene/physics/ShapeTaperedCylinder.h"

namespace vantorix::scene {
namespace {

const Eigen::Vector2f narrow(1.0f, 2.0f);
const Eigen::Vector2f wide(3.0f, 4.0f);

template <class Shape>
void expectStraight(IPhysicsShape::ShapeType type) {
    const Shape shape(5.0f, narrow);
    EXPECT_EQ(shape.getType(), type);
    EXPECT_EQ(shape.getHeight(), 5.0f);
    EXPECT_EQ(shape.getRadius(), narrow);
}

template <class Shape>
void expectTapered(IPhysicsShape::ShapeType type) {
    const Shape shape(5.0f, narrow, wide);
    EXPECT_EQ(shape.getType(), type);
    EXPECT_EQ(shape.getHeight(), 5.0f);
    EXPECT_EQ(shape.getRadius1(), narrow);
    EXPECT_EQ(shape.getRadius2(), wide);
}

TEST(PhysicsShapes, TellTheirTypeAndMeasures) {
    const ShapePlane plane(Eigen::Vector4f(1, 2, 3, 4));
    EXPECT_EQ(plane.getType(), IPhysicsShape::PLANE);
    EXPECT_EQ(plane.getEquation(), Eigen::Vector4f(1, 2, 3, 4));
    const ShapeBox box(Eigen::Vector3f(1, 2, 3));
    EXPECT_EQ(box.getType(), IPhysicsShape::BOX);
    EXPECT_EQ(box.getHalfExtents(), Eigen::Vector3f(1, 2, 3));
    const ShapeSphere sphere(2.5f);
    EXPECT_EQ(sphere.getType(), IPhysicsShape::SPHERE);
    EXPECT_EQ(sphere.getRadius(), 2.5f);
    expectStraight<ShapeCylinder>(IPhysicsShape::CYLINDER);
    expectTapered<ShapeTaperedCylinder>(IPhysicsShape::TAPERED_CYLINDER);
    expectStraight<ShapeCapsule>(IPhysicsShape::CAPSULE);
    expectTapered<ShapeTaperedCapsule>(IPhysicsShape::TAPERED_CAPSULE);
}

TEST(PhysicsShape, StartsWithoutMassAndInPlace) {
    const PhysicsShape shape;
    EXPECT_FALSE(shape.getShape());
    EXPECT_FALSE(shape.getHollow());
    EXPECT_EQ(shape.getMass(), -1.0f);
    EXPECT_EQ(shape.getDensity(), -1.0f);
    EXPECT_EQ(shape.getTranslation().vector(), Eigen::Vector3f::Zero());
    EXPECT_EQ(shape.getRotation().axis(), Eigen::Vector3f::UnitX());
    EXPECT_EQ(shape.getRotation().angle(), 0.0f);
}

TEST(PhysicsShape, OnlyTheMaterialCanBeTakenAway) {
    PhysicsShape shape;
    shape.setShape(boost::make_shared<ShapeSphere>(1.0f));
    shape.setPhysicsMaterial(boost::make_shared<PhysicsMaterial>("id", "name", 0.1f, 0.2f, 0.3f));
    shape.setShape(nullptr);
    shape.setPhysicsMaterial(nullptr);
    EXPECT_TRUE(shape.getShape());
    EXPECT_FALSE(shape.getPhysicsMaterial());
}

TEST(PhysicsRigidBody, IgnoresEmptyShapesAndMaterials) {
    PhysicsRigidBody body("id", "name", true);
    const auto material = boost::make_shared<PhysicsMaterial>("id", "name", 0.1f, 0.2f, 0.3f);
    body.setPhysicsMaterial(material);
    body.setPhysicsMaterial(nullptr);
    EXPECT_EQ(body.getPhysicsMaterial(), material);
    body.addShape(boost::make_shared<PhysicsShape>());
    body.addShape(nullptr);
    EXPECT_EQ(body.getShapeCount(), 1u);
}

TEST(PhysicsMaterial, KeepsTheOrderOfItsCoefficients) {
    const PhysicsMaterial material("id", "name", 0.1f, 0.2f, 0.3f);
    EXPECT_EQ(material.getRestitution(), 0.1f);
    EXPECT_EQ(material.getStaticFriction(), 0.2f);
    EXPECT_EQ(material.getDynamicFriction(), 0.3f);
}

TEST(PhysicsModel, FindsTheFirstMatchAndStepsOverEmptyEntries) {
    const auto first = boost::make_shared<PhysicsRigidBody>("body", "first", true);
    const auto second = boost::make_shared<PhysicsRigidBody>("body", "second", true);
    const auto hinge = boost::make_shared<PhysicsRigidConstraint>("hinge", "", true, false);
    PhysicsModel model("id", "name");
    model.setRigidBodyLibrary({nullptr, first, second});
    model.setRigidConstraintLibrary({nullptr, hinge});
    EXPECT_EQ(model.getRigidBodyById("body"), first);
    EXPECT_EQ(model.getRigidConstraintById("hinge"), hinge);
    EXPECT_FALSE(model.getRigidBodyById("Body"));
    EXPECT_FALSE(model.getRigidConstraintById(""));
}

TEST(PhysicsScene, StartsOnTheGroundOfAZUpWorld) {
    const PhysicsScene scene("id", "name");
    EXPECT_EQ(scene.getGravity(), Eigen::Vector3f(0, 0, -9.81f));
    EXPECT_EQ(scene.getTimeStep(), 0.016666668f);
    EXPECT_TRUE(scene.getInstancedModels().empty());
}

TEST(PhysicsRigidConstraint, LimitsMayBeSwappedInPlace) {
    PhysicsRigidConstraint constraint("sid", "name", true, false);
    EXPECT_TRUE(constraint.isEnabled());
    EXPECT_FALSE(constraint.allowInterpenetrate());
    const Eigen::Vector3f low(-1, -2, -3), high(1, 2, 3);
    constraint.setLinearlimits(low, high, low, high);
    constraint.setLinearlimits(
        constraint.getLinearTranslationMax(), constraint.getLinearTranslationMin(),
        constraint.getLinearRotationMax(), constraint.getLinearRotationMin());
    EXPECT_EQ(constraint.getLinearTranslationMin(), high);
    EXPECT_EQ(constraint.getLinearTranslationMax(), low);
    EXPECT_EQ(constraint.getLinearRotationMin(), high);
    EXPECT_EQ(constraint.getLinearRotationMax(), low);
}

TEST(PhysicsAttachment, StartsAtItsBody) {
    const auto body = boost::make_shared<PhysicsRigidBody>("id", "name", false);
    const PhysicsAttachment attachment(body);
    EXPECT_EQ(attachment.getAttachment(), body);
    EXPECT_EQ(attachment.getTranslate().vector(), Eigen::Vector3f::Zero());
    EXPECT_EQ(attachment.getRotation().angle(), 0.0f);
}

TEST(PhysicsInstances, ReferToWhatTheyInstance) {
    const auto body = boost::make_shared<PhysicsRigidBody>("id", "name", false);
    const auto constraint = boost::make_shared<PhysicsRigidConstraint>("c", "", true, true);
    const auto model = boost::make_shared<PhysicsModel>("id", "name");
    PhysicsInstanceModel instance(model, nullptr);
    instance.setInstancedRigidBodies({boost::make_shared<PhysicsInstanceRigidBody>(body, nullptr)});
    instance.setInstancedRigidConstraints(
        {boost::make_shared<PhysicsInstanceRigidConstraint>(constraint, "sid", "name")});

    const PhysicsInstanceModel copy = instance;
    EXPECT_EQ(copy.getPhysicsModel(), model);
    EXPECT_EQ(copy.getInstancedRigidBodies().at(0)->getBody(), body);
    const auto& used = *copy.getInstancedRigidConstraint().at(0);
    EXPECT_EQ(used.getConstraint(), constraint);
    EXPECT_EQ(used.getSid(), "sid");
    EXPECT_EQ(used.getName(), "name");
}

}  // namespace
}  // namespace vantorix::scene
