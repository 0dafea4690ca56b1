#include "scene/physics/PhysicsMaterial.h"

#include <utility>

namespace vantorix::scene {

PhysicsMaterial::PhysicsMaterial(std::string id, std::string name, float restitution,
                                 float staticFriction, float dynamicFriction)
    : id_(std::move(id)),
      name_(std::move(name)),
      restitution_(restitution),
      staticFriction_(staticFriction),
      dynamicFriction_(dynamicFriction) {}

PhysicsMaterial::~PhysicsMaterial() = default;

const std::string& PhysicsMaterial::getID() const { return id_; }

const std::string& PhysicsMaterial::getName() const { return name_; }

void PhysicsMaterial::setName(std::string name) { name_ = std::move(name); }

float PhysicsMaterial::getRestitution() const { return restitution_; }

void PhysicsMaterial::setRestitution(float restitution) { restitution_ = restitution; }

float PhysicsMaterial::getStaticFriction() const { return staticFriction_; }

void PhysicsMaterial::setStaticFriction(float staticFriction) { staticFriction_ = staticFriction; }

float PhysicsMaterial::getDynamicFriction() const { return dynamicFriction_; }

void PhysicsMaterial::setDynamicFriction(float dynamicFriction) {
    dynamicFriction_ = dynamicFriction;
}

}  // namespace vantorix::scene
