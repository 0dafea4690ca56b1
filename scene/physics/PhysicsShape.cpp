#include "scene/physics/PhysicsShape.h"

#include <utility>

namespace vantorix::scene {

PhysicsShape::PhysicsShape() = default;

PhysicsShape::~PhysicsShape() = default;

boost::shared_ptr<IPhysicsShape> PhysicsShape::getShape() const { return shape_; }

void PhysicsShape::setShape(boost::shared_ptr<IPhysicsShape> shape) {
    if (shape) shape_ = std::move(shape);
}

boost::shared_ptr<InstanceGeometry> PhysicsShape::getInstanceGeometry() const {
    return instanceGeometry_;
}

void PhysicsShape::setInstanceGeometry(boost::shared_ptr<InstanceGeometry> instanceGeometry) {
    if (instanceGeometry) instanceGeometry_ = std::move(instanceGeometry);
}

boost::shared_ptr<PhysicsMaterial> PhysicsShape::getPhysicsMaterial() const {
    return physicsMaterial_;
}

void PhysicsShape::setPhysicsMaterial(boost::shared_ptr<PhysicsMaterial> physicsMaterial) {
    physicsMaterial_ = std::move(physicsMaterial);
}

bool PhysicsShape::getHollow() const { return hollow_; }

void PhysicsShape::setHollow(bool hollow) { hollow_ = hollow; }

float PhysicsShape::getMass() const { return mass_; }

void PhysicsShape::setMass(float mass) { mass_ = mass; }

float PhysicsShape::getDensity() const { return density_; }

void PhysicsShape::setDensity(float density) { density_ = density; }

const Eigen::Translation3f& PhysicsShape::getTranslation() const { return translation_; }

void PhysicsShape::setTranslation(const Eigen::Translation3f& translation) {
    translation_ = translation;
}

const Eigen::AngleAxisf& PhysicsShape::getRotation() const { return rotation_; }

void PhysicsShape::setRotation(const Eigen::AngleAxisf& rotation) { rotation_ = rotation; }

}  // namespace vantorix::scene
