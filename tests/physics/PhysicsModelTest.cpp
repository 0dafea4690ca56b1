#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/physics/PhysicsAttachment.h"
#include "scene/physics/PhysicsInstanceModel.h"
#include "scene/physics/PhysicsInstanceRigidBody.h"
#include "scene/physics/PhysicsInstanceRigidConstraint.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"
#include "scene/physics/PhysicsScene.h"

namespace vantorix::scene {
namespace {

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
