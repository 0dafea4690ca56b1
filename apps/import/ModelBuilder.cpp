#include "apps/import/ModelBuilder.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include <boost/make_shared.hpp>

#include "apps/import/ImportOptions.h"
#include "apps/import/MeshTotals.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/transform/TransformationMatrix.h"

namespace vantorix::apps::import {

using namespace scene;

namespace {

bool isIdentity(const std::array<float, 16>& matrix) {
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        if (std::abs(matrix[i] - (i % 5 == 0 ? 1.0f : 0.0f)) > 1e-6f) return false;
    }
    return true;
}

Light::LightType lightTypeOf(ModelLight::Kind kind) {
    switch (kind) {
        case ModelLight::DIRECTIONAL:
            return Light::DIRECTIONAL;
        case ModelLight::SPOT:
            return Light::SPOT;
        case ModelLight::AMBIENT:
            return Light::AMBIENT;
        default:
            return Light::POINT;
    }
}

}  // namespace

ModelBuilder::ModelBuilder(const ModelDocument& document, const std::string& modelFile,
                           boost::shared_ptr<SceneManager> scene, ImportResult& result)
    : document_(document),
      modelFile_(modelFile),
      scene_(scene),
      result_(result),
      materials_(document, modelFile, scene, result),
      animations_(document, scene, result.report),
      nodeIds_("node", result.report),
      controllers_(document.nodes, nodeIdsByNumber_, scene, result.report),
      geometryIds_("mesh", result.report),
      geometries_(document, materials_.getIds(), scene->getGeometryManager(), geometryIds_,
                  controllers_),
      cameraIds_("camera", result.report),
      lightIds_("light", result.report) {}

void ModelBuilder::build(const ImportOptions& options) {
    checkCombinations(options.limits);
    geometries_.separatePrimitives(options.separatePrimitives);
    reserveIds();
    describeScene();
    materials_.build();
    buildNodes();
    for (const auto& camera : document_.cameras) buildCamera(camera);
    for (const auto& light : document_.lights) buildLight(light);
    animations_.build(nodes_);
}

/// The document bounds what it holds, but each list of meshes that differs becomes a copy.
void ModelBuilder::checkCombinations(const ImportLimits& limits) const {
    std::set<std::vector<std::uint32_t>> combinations;
    MeshTotals totals;
    for (const auto& node : document_.nodes) {
        if (!combinations.insert(node.meshes).second) continue;
        for (const auto mesh : node.meshes) totals.add(document_.meshes[mesh]);
        totals.requireWithin(limits);
    }
}

void ModelBuilder::reserveIds() {
    for (const auto& node : scene_->getNodeArray()) nodeIds_.reserve(node->getID());
    nodeIds_.reserve(scene_->getRoot()->getID());
    for (unsigned int i = 0; i < scene_->getCameraCount(); ++i) {
        cameraIds_.reserve(scene_->getCameraAt(i)->getID());
    }
    for (const auto& light : scene_->getLightLibrary()) lightIds_.reserve(light->getID());
}

void ModelBuilder::describeScene() {
    if (scene_->getRoot()->getChildCount() > 0) return;
    const std::string stem = std::filesystem::path(modelFile_).stem().string();
    const std::string& name = document_.name.empty() ? stem : document_.name;
    scene_->setSceneName(name);
    scene_->setSceneID(IdRegistry("scene", result_.report).take(name));
    scene_->setUpAxis(static_cast<UpAxis>(document_.upAxis));
    if (document_.meterUnit > 0.0f) scene_->setMeterUnit(document_.meterUnit);
}

void ModelBuilder::buildNodes() {
    nameNodes();
    nodes_.reserve(document_.nodes.size());
    for (std::size_t number = 0; number < document_.nodes.size(); ++number) {
        const auto parent =
            number == 0 ? scene_->getRoot() : nodes_[document_.nodes[number].parent];
        nodes_.push_back(buildNode(number));
        if (number == 0) result_.root = nodes_.front();  // Before the tree shows it.
        parent->addNode(nodes_.back());
    }
}

/// Skins name nodes that are built later.
void ModelBuilder::nameNodes() {
    // The target of a channel ends the SID of an element at the first '.', also one in the node's
    // ID.
    for (std::size_t i = 0; i < document_.nodes.size(); ++i) {
        const char* const unwanted = animations_.moves(i) ? "." : "";
        nodeIdsByNumber_.push_back(nodeIds_.take(document_.nodes[i].name, unwanted));
    }
    joints_.assign(document_.nodes.size(), false);
    for (const auto& mesh : document_.meshes) {
        for (const auto& bone : mesh.skin.bones) joints_[bone.node] = true;
    }
}

boost::shared_ptr<Node> ModelBuilder::buildNode(std::size_t number) {
    const auto& source = document_.nodes[number];
    const auto node = makeNode(nodeIdsByNumber_[number], source.name);
    animations_.addElements(number, *node);
    if (joints_[number]) node->setType("JOINT");
    addInstances(source, *node);
    return node;
}

void ModelBuilder::addInstances(const ModelNode& source, Node& node) {
    for (const auto& built : geometries_.geometriesFor(source.meshes)) {
        const auto geometry =
            boost::make_shared<InstanceGeometry>(built.mesh, bindingsOf(source, *built.mesh));
        if (!built.skin.controller) {
            node.addInstanceGeometry(geometry);
            continue;
        }
        const auto instance =
            boost::make_shared<InstanceController>(geometry, built.skin.controller);
        instance->setSkeletons(built.skin.skeletons);
        node.addInstanceController(instance);
    }
}

/// The materials that the primitives of @p mesh name.
std::map<std::string, boost::shared_ptr<Material>> ModelBuilder::bindingsOf(
    const ModelNode& source, const Mesh& mesh) const {
    std::map<std::string, boost::shared_ptr<Material>> bindings;
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        bindings[primitive->getMaterialSymbol()];
    }
    for (const auto number : source.meshes) {
        const auto material = document_.meshes[number].material;
        const auto binding = bindings.find(materials_.getIds()[material]);
        if (binding != bindings.end()) binding->second = materials_.getMaterials()[material];
    }
    return bindings;
}

boost::shared_ptr<Node> ModelBuilder::makeNode(const std::string& id, const std::string& name) {
    const auto node = boost::make_shared<Node>(scene_);
    node->setID(id);
    node->setName(name);
    return node;
}

boost::shared_ptr<Node> ModelBuilder::placeFor(const std::string& name,
                                               const ModelPlacement& placement) {
    const auto& node = nodes_[placement.node];
    if (isIdentity(placement.matrix)) return node;
    const auto place = makeNode(nodeIds_.take(name), name);
    const auto element = boost::make_shared<TransformationMatrix>(placement.matrix.data());
    element->setSid("transform");
    place->addTransformation(element);
    node->addNode(place);
    return place;
}

void ModelBuilder::buildCamera(const ModelCamera& source) {
    const auto type = source.orthographic ? Camera::ORTHOGRAPHIC : Camera::PERSPECTIVE;
    const auto camera =
        boost::make_shared<Camera>(scene_, type, cameraIds_.take(source.name), source.name);
    camera->setYFov(source.yFov);
    camera->setZNear(source.zNear);
    camera->setZFar(source.zFar);
    scene_->addCamera(camera);

    const auto node = placeFor(source.name, source.placement);
    node->addInstanceCamera(camera);
    scene_->addCameraInstance(boost::make_shared<CameraInstance>(node, camera, camera->getID()));
}

void ModelBuilder::buildLight(const ModelLight& source) {
    const auto light = boost::make_shared<Light>(scene_, lightTypeOf(source.kind),
                                                 lightIds_.take(source.name), source.name);
    light->setColor(source.color[0], source.color[1], source.color[2]);
    light->setAttenuation(source.attenuation[0], source.attenuation[1], source.attenuation[2]);
    light->setFallOff(source.fallOffAngle, source.fallOffExponent);
    scene_->addLight(light);
    placeFor(source.name, source.placement)->addInstanceLight(light);
}

}  // namespace vantorix::apps::import
