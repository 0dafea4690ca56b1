#include "scene/physics/PhysicsInstanceRigidBody.h"

#include <utility>

namespace vantorix::scene {

PhysicsInstanceRigidBody::PhysicsInstanceRigidBody(boost::shared_ptr<PhysicsRigidBody> body,
                                                   boost::shared_ptr<Node> target)
    : body_(std::move(body)), target_(std::move(target)) {}

PhysicsInstanceRigidBody::~PhysicsInstanceRigidBody() = default;

boost::shared_ptr<PhysicsRigidBody> PhysicsInstanceRigidBody::getBody() const { return body_; }

boost::shared_ptr<Node> PhysicsInstanceRigidBody::getTarget() const { return target_; }

}  // namespace vantorix::scene
