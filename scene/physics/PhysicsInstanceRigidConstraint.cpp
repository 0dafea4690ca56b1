#include "scene/physics/PhysicsInstanceRigidConstraint.h"

#include <utility>

namespace vantorix::scene {

PhysicsInstanceRigidConstraint::PhysicsInstanceRigidConstraint(
    boost::shared_ptr<PhysicsRigidConstraint> constraint, std::string sid, std::string name)
    : sid_(std::move(sid)), name_(std::move(name)), constraint_(std::move(constraint)) {}

PhysicsInstanceRigidConstraint::~PhysicsInstanceRigidConstraint() = default;

const std::string& PhysicsInstanceRigidConstraint::getSid() const { return sid_; }

const std::string& PhysicsInstanceRigidConstraint::getName() const { return name_; }

boost::shared_ptr<PhysicsRigidConstraint> PhysicsInstanceRigidConstraint::getConstraint() const {
    return constraint_;
}

}  // namespace vantorix::scene
