#include <boost/make_shared.hpp>

#include "core_api/utils/Matrix.h"

#include "scene/animation/AnimationManager.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationMatrix.h"

namespace vantorix::scene {
namespace {

/// The newest instance of the camera @p cameraID.
boost::shared_ptr<CameraInstance> instanceOf(const SceneManager& scene,
                                             const std::string& cameraID) {
    for (unsigned int index = scene.getCameraInstanceCount(); index > 0; --index) {
        const auto instance = scene.getCameraInstanceAt(index - 1);
        const auto camera = instance ? instance->getCamera() : nullptr;
        if (camera && camera->getID() == cameraID) return instance;
    }
    return {};
}

void copyPose(const Node& from, Node& to) {
    to.setTransformations(from.getTranslation(), from.getRotation());
    to.setScale(from.getScale());
}

void listPoseAsMatrix(Node& node) {
    const auto element = boost::make_shared<TransformationMatrix>(node.getTransformations().data());
    element->setSid("transform");
    node.setOriginalTransformations({element});
}

}  // namespace

boost::shared_ptr<CameraInstance> AnimationManager::getDefaultCamera() {
    const auto scene = sceneManager_.lock();
    const auto first = scene ? scene->getCameraInstanceAt(0) : nullptr;
    return first ? first : makeCamera("DefaultCamera");
}

boost::shared_ptr<CameraInstance> AnimationManager::addAnimationCamera() {
    const auto self = weak_from_this().lock();
    const auto standard = getDefaultCamera();
    const auto model = standard ? standard->getParentNode() : nullptr;
    auto added = makeCamera("AnimationCamera");
    const auto node = added ? added->getParentNode() : nullptr;
    if (!node) return added;
    if (model) copyPose(*model, *node);
    listPoseAsMatrix(*node);
    return added;
}

boost::shared_ptr<CameraInstance> AnimationManager::makeCamera(const std::string& name) {
    const auto scene = sceneManager_.lock();
    if (!scene) return {};
    const auto made = instanceOf(*scene, scene->createNewCamera(Camera::PERSPECTIVE, "", ""));
    const auto node = made ? made->getParentNode() : nullptr;
    if (node) node->setName(name);
    return made;
}

}  // namespace vantorix::scene
