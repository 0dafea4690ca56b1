#include "scene/physics/PhysicsModel.h"

#include <utility>

#include "scene/physics/PhysicsRigidBody.h"
#include "scene/physics/PhysicsRigidConstraint.h"

namespace vantorix::scene {

namespace {

template <class Item>
boost::shared_ptr<Item> findFirst(const std::vector<boost::shared_ptr<Item>>& items,
                                  const std::string& (Item::*key)() const,
                                  const std::string& wanted) {
    for (const auto& item : items) {
        if (item && ((*item).*key)() == wanted) return item;
    }
    return nullptr;
}

}  // namespace

PhysicsModel::PhysicsModel(std::string id, std::string name)
    : id_(std::move(id)), name_(std::move(name)) {}

PhysicsModel::~PhysicsModel() = default;

const std::string& PhysicsModel::getID() const { return id_; }

const std::string& PhysicsModel::getName() const { return name_; }

void PhysicsModel::setName(std::string name) { name_ = std::move(name); }

const std::vector<boost::shared_ptr<PhysicsRigidBody>>& PhysicsModel::getRigidBodyLibrary() const {
    return rigidBodies_;
}

void PhysicsModel::setRigidBodyLibrary(
    std::vector<boost::shared_ptr<PhysicsRigidBody>> rigidBodies) {
    rigidBodies_ = std::move(rigidBodies);
}

const std::vector<boost::shared_ptr<PhysicsRigidConstraint>>&
PhysicsModel::getRigidConstraintLibrary() const {
    return rigidConstraints_;
}

void PhysicsModel::setRigidConstraintLibrary(
    std::vector<boost::shared_ptr<PhysicsRigidConstraint>> rigidConstraints) {
    rigidConstraints_ = std::move(rigidConstraints);
}

boost::shared_ptr<PhysicsRigidBody> PhysicsModel::getRigidBodyById(const std::string& id) const {
    return findFirst(rigidBodies_, &PhysicsRigidBody::getID, id);
}

boost::shared_ptr<PhysicsRigidConstraint> PhysicsModel::getRigidConstraintById(
    const std::string& sid) const {
    return findFirst(rigidConstraints_, &PhysicsRigidConstraint::getSid, sid);
}

}  // namespace vantorix::scene
