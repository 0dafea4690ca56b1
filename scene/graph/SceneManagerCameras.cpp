#include <utility>

#include <boost/make_shared.hpp>

#include "scene/animation/CameraInstance.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
namespace {

constexpr float quarterTurn = 1.57079633f;

}  // namespace

std::string SceneManager::createNewCamera(Camera::Type type, std::string nodeId,
                                          std::string parentId) {
    const auto self = shared_from_this();
    const auto camera = boost::make_shared<Camera>(self, type, generateID(), "VTCamera");
    cameraLibrary_.push_back(camera);
    const auto found = getNodeByID(nodeId);
    const auto node = found ? found : makeNode(nodeId, parentId);
    turnToUpAxis(*node);
    const auto instance = boost::make_shared<CameraInstance>(node, camera, generateID());
    addCameraInstance(instance);
    node->addInstanceCamera(camera);
    send(events::sceneNewCamera, instance->getSID());
    return camera->getID();
}

boost::shared_ptr<Node> SceneManager::makeNode(const std::string& nodeId,
                                               const std::string& parentId) {
    const auto node = boost::make_shared<Node>(shared_from_this());
    node->setID(nodeId.empty() ? generateID() : nodeId);
    const auto parent = getNodeByID(parentId);
    (parent ? parent : getRoot())->addNode(node);
    return node;
}

// A camera looks along -z with y up; in another scene its y has to point along the up axis.
void SceneManager::turnToUpAxis(Node& node) const {
    if (upAxis_ == Z_UP) {
        node.rotate(Eigen::AngleAxisf(quarterTurn, Eigen::Vector3f::UnitX()).toRotationMatrix());
    } else if (upAxis_ == X_UP) {
        node.rotate(Eigen::AngleAxisf(-quarterTurn, Eigen::Vector3f::UnitZ()).toRotationMatrix());
    }
}

bool SceneManager::addCamera(boost::shared_ptr<Camera> camera) {
    if (!camera || getCameraByID(camera->getID())) return false;
    addID(camera->getID());
    cameraLibrary_.push_back(std::move(camera));
    return true;
}

unsigned int SceneManager::getCameraCount() const { return countOf(cameraLibrary_); }

boost::shared_ptr<Camera> SceneManager::getCameraAt(unsigned int index) const {
    return itemAt(cameraLibrary_, index);
}

boost::shared_ptr<Camera> SceneManager::getCameraByID(std::string id) const {
    return findByID(cameraLibrary_, id);
}

void SceneManager::addCameraInstance(boost::shared_ptr<CameraInstance> instance) {
    if (!instance) return;
    logger_ << "Added Camera Instance" + instance->getSID();
    cameraInstances_.push_back(std::move(instance));
}

unsigned int SceneManager::getCameraInstanceCount() const { return countOf(cameraInstances_); }

boost::shared_ptr<CameraInstance> SceneManager::getCameraInstanceAt(unsigned int index) const {
    return itemAt(cameraInstances_, index);
}

boost::shared_ptr<CameraInstance> SceneManager::getCameraInstanceBySID(std::string sid) const {
    return findItem(cameraInstances_,
                    [&](const CameraInstance& instance) { return instance.getSID() == sid; });
}

void SceneManager::createNewLight(Light::LightType type, std::string lightId, std::string nodeId,
                                  std::string parentId) {
    const auto self = shared_from_this();
    const auto light = boost::make_shared<Light>(self, type, lightId, "");
    if (!addLight(light)) {
        logger_ << "[WARN] Could not add new light " + lightId;
        return;
    }
    const auto found = getNodeByID(nodeId);
    const auto node = found ? found : makeNode(nodeId, parentId);
    node->addInstanceLight(light);
    node->setName(lightId);
}

bool SceneManager::addLight(boost::shared_ptr<Light> light) {
    if (!light || getLightByID(light->getID())) return false;
    addID(light->getID());
    lightLibrary_.push_back(std::move(light));
    return true;
}

boost::shared_ptr<Light> SceneManager::getLightByID(std::string id) const {
    return findByID(lightLibrary_, id);
}

}  // namespace vantorix::scene
