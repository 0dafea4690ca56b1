#include <utility>

#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneManager.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsScene.h"

namespace vantorix::scene {

boost::shared_ptr<PhysicsMaterial> SceneManager::getPhysicsMaterialById(std::string id) const {
    return findByID(physicsMaterialLibrary_, id);
}

void SceneManager::setPhysicsMaterialLibrary(
    std::vector<boost::shared_ptr<PhysicsMaterial>> materials) {
    physicsMaterialLibrary_ = std::move(materials);
    recordIDs(*this, physicsMaterialLibrary_);
}

boost::shared_ptr<PhysicsModel> SceneManager::getPhysicsModelById(std::string id) const {
    return findByID(physicsModelLibrary_, id);
}

void SceneManager::setPhysicsModelLibrary(std::vector<boost::shared_ptr<PhysicsModel>> models) {
    physicsModelLibrary_ = std::move(models);
    recordIDs(*this, physicsModelLibrary_);
}

boost::shared_ptr<PhysicsScene> SceneManager::getPhysicsSceneById(std::string id) const {
    return findByID(physicsSceneLibrary_, id);
}

void SceneManager::setPhysicsSceneLibrary(std::vector<boost::shared_ptr<PhysicsScene>> scenes) {
    physicsSceneLibrary_ = std::move(scenes);
    recordIDs(*this, physicsSceneLibrary_);
}

void SceneManager::setInstancedPhysicsScenes(std::vector<boost::shared_ptr<PhysicsScene>> scenes) {
    instancedPhysicsScenes_ = std::move(scenes);
    recordIDs(*this, instancedPhysicsScenes_);
}

}  // namespace vantorix::scene
