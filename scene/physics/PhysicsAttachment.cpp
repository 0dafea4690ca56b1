#include "scene/physics/PhysicsAttachment.h"

#include <utility>

namespace vantorix::scene {

PhysicsAttachment::PhysicsAttachment(boost::shared_ptr<PhysicsRigidBody> attachment)
    : attachment_(std::move(attachment)) {}

PhysicsAttachment::~PhysicsAttachment() = default;

boost::shared_ptr<PhysicsRigidBody> PhysicsAttachment::getAttachment() const { return attachment_; }

void PhysicsAttachment::setAttachment(boost::shared_ptr<PhysicsRigidBody> attachment) {
    attachment_ = std::move(attachment);
}

const Eigen::Translation3f& PhysicsAttachment::getTranslate() const { return translate_; }

void PhysicsAttachment::setTranslate(const Eigen::Translation3f& translate) {
    translate_ = translate;
}

const Eigen::AngleAxisf& PhysicsAttachment::getRotation() const { return rotation_; }

void PhysicsAttachment::setRotation(const Eigen::AngleAxisf& rotation) { rotation_ = rotation; }

}  // namespace vantorix::scene
