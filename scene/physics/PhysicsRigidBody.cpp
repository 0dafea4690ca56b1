#include "scene/physics/PhysicsRigidBody.h"

#include <utility>

namespace vantorix::scene {

PhysicsRigidBody::PhysicsRigidBody(std::string id, std::string name, bool dynamic)
    : id_(std::move(id)), name_(std::move(name)), dynamic_(dynamic) {}

PhysicsRigidBody::~PhysicsRigidBody() = default;

const std::string& PhysicsRigidBody::getID() const { return id_; }

const std::string& PhysicsRigidBody::getName() const { return name_; }

void PhysicsRigidBody::setName(std::string name) { name_ = std::move(name); }

float PhysicsRigidBody::getMass() const { return mass_; }

void PhysicsRigidBody::setMass(float mass) { mass_ = mass; }

bool PhysicsRigidBody::isDynamic() const { return dynamic_; }

void PhysicsRigidBody::setDynamic(bool dynamic) { dynamic_ = dynamic; }

const std::vector<boost::shared_ptr<PhysicsShape>>& PhysicsRigidBody::getShapesLibrary() const {
    return shapes_;
}

void PhysicsRigidBody::setShapesLibrary(std::vector<boost::shared_ptr<PhysicsShape>> shapes) {
    shapes_ = std::move(shapes);
}

boost::shared_ptr<PhysicsMaterial> PhysicsRigidBody::getPhysicsMaterial() const {
    return physicsMaterial_;
}

void PhysicsRigidBody::setPhysicsMaterial(boost::shared_ptr<PhysicsMaterial> physicsMaterial) {
    if (physicsMaterial) physicsMaterial_ = std::move(physicsMaterial);
}

void PhysicsRigidBody::addShape(boost::shared_ptr<PhysicsShape> shape) {
    if (shape) shapes_.push_back(std::move(shape));
}

unsigned int PhysicsRigidBody::getShapeCount() const {
    return static_cast<unsigned int>(shapes_.size());
}

}  // namespace vantorix::scene
