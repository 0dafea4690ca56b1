#include "scene/physics/PhysicsRigidConstraint.h"

#include <utility>

namespace vantorix::scene {

PhysicsRigidConstraint::PhysicsRigidConstraint(std::string sid, std::string name, bool enabled,
                                               bool interpenetrate)
    : sid_(std::move(sid)),
      name_(std::move(name)),
      enabled_(enabled),
      interpenetrate_(interpenetrate) {}

PhysicsRigidConstraint::~PhysicsRigidConstraint() = default;

const std::string& PhysicsRigidConstraint::getSid() const { return sid_; }

const std::string& PhysicsRigidConstraint::getName() const { return name_; }

boost::shared_ptr<PhysicsAttachment> PhysicsRigidConstraint::getRefAttachment() const {
    return refAttachment_;
}

void PhysicsRigidConstraint::setRefAttachment(boost::shared_ptr<PhysicsAttachment> refAttachment) {
    refAttachment_ = std::move(refAttachment);
}

boost::shared_ptr<PhysicsAttachment> PhysicsRigidConstraint::getAttachment() const {
    return attachment_;
}

void PhysicsRigidConstraint::setAttachment(boost::shared_ptr<PhysicsAttachment> attachment) {
    attachment_ = std::move(attachment);
}

bool PhysicsRigidConstraint::isEnabled() const { return enabled_; }

bool PhysicsRigidConstraint::allowInterpenetrate() const { return interpenetrate_; }

const Eigen::Vector3f& PhysicsRigidConstraint::getLinearTranslationMin() const {
    return linearTranslationMin_;
}

const Eigen::Vector3f& PhysicsRigidConstraint::getLinearTranslationMax() const {
    return linearTranslationMax_;
}

const Eigen::Vector3f& PhysicsRigidConstraint::getLinearRotationMin() const {
    return linearRotationMin_;
}

const Eigen::Vector3f& PhysicsRigidConstraint::getLinearRotationMax() const {
    return linearRotationMax_;
}

void PhysicsRigidConstraint::setLinearlimits(Eigen::Vector3f translationMin,
                                             Eigen::Vector3f translationMax,
                                             Eigen::Vector3f rotationMin,
                                             Eigen::Vector3f rotationMax) {
    linearTranslationMin_ = translationMin;
    linearTranslationMax_ = translationMax;
    linearRotationMin_ = rotationMin;
    linearRotationMax_ = rotationMax;
}

}  // namespace vantorix::scene
