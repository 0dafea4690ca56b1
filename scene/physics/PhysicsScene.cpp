#include "scene/physics/PhysicsScene.h"

#include <utility>

namespace vantorix::scene {

PhysicsScene::PhysicsScene(std::string id, std::string name)
    : id_(std::move(id)), name_(std::move(name)) {}

PhysicsScene::~PhysicsScene() = default;

const std::string& PhysicsScene::getID() const { return id_; }

void PhysicsScene::setId(std::string id) { id_ = std::move(id); }

const std::string& PhysicsScene::getName() const { return name_; }

void PhysicsScene::setName(std::string name) { name_ = std::move(name); }

const Eigen::Vector3f& PhysicsScene::getGravity() const { return gravity_; }

void PhysicsScene::setGravity(const Eigen::Vector3f& gravity) { gravity_ = gravity; }

float PhysicsScene::getTimeStep() const { return timeStep_; }

void PhysicsScene::setTimeStep(float timeStep) { timeStep_ = timeStep; }

const std::vector<boost::shared_ptr<PhysicsInstanceModel>>& PhysicsScene::getInstancedModels()
    const {
    return instancedModels_;
}

void PhysicsScene::setInstancedModels(
    std::vector<boost::shared_ptr<PhysicsInstanceModel>> instancedModels) {
    instancedModels_ = std::move(instancedModels);
}

}  // namespace vantorix::scene
