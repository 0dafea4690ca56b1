#include "apps/check/SceneCheck.h"

#include <cmath>
#include <set>

#include "apps/check/AnimationCheck.h"
#include "apps/check/GeometryCheck.h"
#include "apps/check/IdentifierCheck.h"
#include "apps/check/InstanceCheck.h"
#include "apps/check/Report.h"
#include "apps/check/SkinCheck.h"
#include "scene/animation/Animation.h"
#include "scene/animation/CameraInstance.h"
#include "scene/controller/Controller.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::check {
namespace {

using scene::SceneManager;
using Geometries = std::vector<boost::shared_ptr<scene::IGeometry>>;
using Ids = std::vector<std::string>;

/// A node that is attached several times counts once.
std::vector<boost::shared_ptr<scene::Node>> nodesOf(const SceneManager& scene) {
    std::vector<boost::shared_ptr<scene::Node>> nodes;
    std::set<const scene::Node*> known;
    for (const auto& node : scene.getNodeArray()) {
        if (known.insert(node.get()).second) nodes.push_back(node);
    }
    return nodes;
}

Geometries geometriesOf(const SceneManager& scene) {
    Geometries geometries;
    if (const auto library = scene.getGeometryManager()) library->getGeometries(geometries);
    return geometries;
}

template <class List, class Getter>
Ids idsOf(const List& list, Getter getter) {
    Ids ids;
    for (const auto& item : list) ids.push_back(((*item).*getter)());
    return ids;
}

std::vector<boost::shared_ptr<scene::Camera>> camerasOf(const SceneManager& scene) {
    std::vector<boost::shared_ptr<scene::Camera>> cameras;
    for (unsigned int i = 0; i < scene.getCameraCount(); ++i) {
        cameras.push_back(scene.getCameraAt(i));
    }
    return cameras;
}

}  // namespace

Findings SceneCheck::run() {
    Findings findings;
    const Report report(findings, "");
    checkIds(report);
    checkMaterials(report);
    checkGeometries(report);
    checkControllers(report);
    checkNodes(report);
    checkCameras(report);
    checkAnimations(report);
    return findings;
}

void SceneCheck::checkIds(const Report& report) {
    using namespace scene;
    checkIdentifiers("node", idsOf(nodesOf(scene_), &Node::getID), report);
    checkIdentifiers("geometry", idsOf(geometriesOf(scene_), &IGeometry::getID), report);
    checkIdentifiers("material", idsOf(scene_.getMaterialList(), &Material::getMaterialID), report);
    checkIdentifiers("effect", idsOf(scene_.getEffectLibrary(), &Effect::getID), report);
    checkIdentifiers("image", idsOf(scene_.getImageLibrary(), &Image::getID), report);
    checkIdentifiers("camera", idsOf(camerasOf(scene_), &Camera::getID), report);
    checkIdentifiers("light", idsOf(scene_.getLightLibrary(), &Light::getID), report);
    checkIdentifiers("controller", idsOf(scene_.getControllersLibrary(), &Controller::getID),
                     report);
    checkIdentifiers("animation", idsOf(scene_.getAnimationsLibrary(), &Animation::getID), report);
}

void SceneCheck::checkMaterials(const Report& report) {
    for (const auto& material : scene_.getMaterialList()) {
        const auto here = report.in("material " + material->getMaterialID());
        here.require(scene_.getEffectByID(material->getEffectID()) != nullptr, Finding::ORPHAN,
                     "no effect " + material->getEffectID());
        for (const auto& parameter : material->getMaterialParameters()) {
            if (!parameter || parameter->getType() != "texture") continue;
            here.require(scene_.getImageByID(parameter->getValue()) != nullptr, Finding::ORPHAN,
                         "no image " + parameter->getValue() + " for " + parameter->getName());
        }
    }
}

void SceneCheck::checkGeometries(const Report& report) {
    for (const auto& geometry : geometriesOf(scene_)) {
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
        if (mesh) checkMesh(*mesh, report.in("geometry " + geometry->getID()));
    }
}

void SceneCheck::checkControllers(const Report& report) {
    for (const auto& controller : scene_.getControllersLibrary()) {
        const auto here = report.in("controller " + controller->getID());
        if (const auto skin = controller->getSkin()) {
            checkSkin(*skin, scene_, here);
        } else {
            here.require(controller->getMorph() != nullptr, Finding::ORPHAN,
                         "neither skin nor morph");
        }
    }
}

void SceneCheck::checkNodes(const Report& report) {
    for (const auto& node : nodesOf(scene_)) checkNode(*node, report.in("node " + node->getID()));
}

void SceneCheck::checkNode(const scene::Node& node, const Report& report) {
    report.require(node.getTransformations().allFinite(), Finding::NOT_FINITE, "local matrix");
    checkInstances(node, report);
    for (unsigned int i = 0; i < node.getInstanceLightCount(); ++i) {
        const auto id = node.getInstanceLight(i)->getID();
        report.require(scene_.getLightByID(id) == node.getInstanceLight(i), Finding::ORPHAN,
                       "light " + id + " is not in the library");
    }
    for (unsigned int i = 0; i < node.getInstanceCameraCount(); ++i) {
        const auto id = node.getInstanceCamera(i)->getID();
        report.require(scene_.getCameraByID(id) == node.getInstanceCamera(i), Finding::ORPHAN,
                       "camera " + id + " is not in the library");
    }
}

void SceneCheck::checkInstances(const scene::Node& node, const Report& report) {
    std::size_t number = 0;
    for (const auto& instance : node.getInstancedGeometries()) {
        checkInstance(*instance, scene_,
                      report.in("geometry instance " + std::to_string(number++)));
    }
    number = 0;
    for (const auto& instance : node.getInstancedControllers()) {
        checkInstance(*instance, scene_,
                      report.in("controller instance " + std::to_string(number++)));
    }
}

void SceneCheck::checkCameras(const Report& report) {
    for (const auto& camera : camerasOf(scene_)) {
        const auto here = report.in("camera " + camera->getID());
        here.require(std::isfinite(camera->getYFov()) && std::isfinite(camera->getZNear()) &&
                         std::isfinite(camera->getZFar()),
                     Finding::NOT_FINITE, "field of view or clipping planes");
    }
    for (unsigned int i = 0; i < scene_.getCameraInstanceCount(); ++i) {
        const auto instance = scene_.getCameraInstanceAt(i);
        const auto here = report.in("camera instance " + instance->getSID());
        here.require(instance->getCamera() != nullptr, Finding::ORPHAN, "no camera");
        here.require(instance->getParentNode() != nullptr, Finding::ORPHAN, "no node");
    }
}

void SceneCheck::checkAnimations(const Report& report) {
    for (const auto& animation : scene_.getAnimationsLibrary()) {
        checkAnimation(*animation, scene_, report.in("animation " + animation->getID()));
    }
}

}  // namespace vantorix::apps::check
