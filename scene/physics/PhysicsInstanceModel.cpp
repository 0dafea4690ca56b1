#include "scene/physics/PhysicsInstanceModel.h"

#include <utility>

namespace vantorix::scene {

PhysicsInstanceModel::PhysicsInstanceModel(boost::shared_ptr<PhysicsModel> physicsModel,
                                           boost::shared_ptr<Node> parentNode)
    : physicsModel_(std::move(physicsModel)), parentNode_(std::move(parentNode)) {}

PhysicsInstanceModel::~PhysicsInstanceModel() = default;

boost::shared_ptr<PhysicsModel> PhysicsInstanceModel::getPhysicsModel() const {
    return physicsModel_;
}

boost::shared_ptr<Node> PhysicsInstanceModel::getParentNode() const { return parentNode_; }

const std::vector<boost::shared_ptr<PhysicsInstanceRigidBody>>&
PhysicsInstanceModel::getInstancedRigidBodies() const {
    return instancedRigidBodies_;
}

void PhysicsInstanceModel::setInstancedRigidBodies(
    std::vector<boost::shared_ptr<PhysicsInstanceRigidBody>> instancedRigidBodies) {
    instancedRigidBodies_ = std::move(instancedRigidBodies);
}

const std::vector<boost::shared_ptr<PhysicsInstanceRigidConstraint>>&
PhysicsInstanceModel::getInstancedRigidConstraint() const {
    return instancedRigidConstraints_;
}

void PhysicsInstanceModel::setInstancedRigidConstraints(
    std::vector<boost::shared_ptr<PhysicsInstanceRigidConstraint>> instancedRigidConstraints) {
    instancedRigidConstraints_ = std::move(instancedRigidConstraints);
}

}  // namespace vantorix::scene
