#include <algorithm>
#include <stdexcept>
#include <utility>

#include "core_api/event/EventData.h"

#include "scene/animation/Light.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeExtras.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneManager.h"
#include "scene/graph/SceneSending.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

template <class T>
const T& elementAt(const std::vector<T>& list, unsigned int index) {
    if (index >= list.size()) throw std::out_of_range("invalid vector<T> subscript");
    return list[index];
}

template <class T>
unsigned int countOf(const std::vector<T>& list) {
    return static_cast<unsigned int>(list.size());
}

}  // namespace

// One empty block answers for all nodes that have none.
const Node::Extras& Node::readExtras() const {
    static const Extras none;
    return extras_ ? *extras_ : none;
}

Node::Extras& Node::extras() {
    if (!extras_) extras_ = std::make_unique<Extras>();
    return *extras_;
}

std::string Node::getSID() const { return readExtras().sid; }

void Node::setSID(std::string sid) {
    extras().sid = std::move(sid);
    if (auto* const scene = liveScene()) scene->addID(extras_->sid);
}

std::string Node::getType() const { return readExtras().type; }

void Node::setType(std::string type) { extras().type = std::move(type); }

void Node::addInstanceLight(boost::shared_ptr<Light> light) {
    if (!light) return;
    extras().lights.push_back(light);
    if (isHeard(scene_, events::nodeAddedLight)) {
        dispatch(scene_, events::nodeAddedLight,
                 core::event::EventData::joined(id_, light->getID()));
    }
}

boost::shared_ptr<Light> Node::getInstanceLight(unsigned int index) const {
    return elementAt(readExtras().lights, index);
}

unsigned int Node::getInstanceLightCount() const { return countOf(readExtras().lights); }

void Node::addInstanceCamera(boost::shared_ptr<Camera> camera) {
    if (camera) extras().cameras.push_back(std::move(camera));
}

boost::shared_ptr<Camera> Node::getInstanceCamera(unsigned int index) const {
    return elementAt(readExtras().cameras, index);
}

unsigned int Node::getInstanceCameraCount() const { return countOf(readExtras().cameras); }

void Node::addInstanceGeometry(boost::shared_ptr<InstanceGeometry> instance) {
    if (instance) extras().geometries.push_back(std::move(instance));
}

void Node::removeInstanceGeometry(boost::shared_ptr<InstanceGeometry> instance) {
    if (!extras_) return;
    auto& list = extras_->geometries;
    const auto found = std::find(list.begin(), list.end(), instance);
    if (found != list.end()) list.erase(found);
}

boost::shared_ptr<InstanceGeometry> Node::getInstanceGeometry(unsigned int index) const {
    return elementAt(readExtras().geometries, index);
}

unsigned int Node::getInstanceGeometryCount() const { return countOf(readExtras().geometries); }

std::vector<boost::shared_ptr<InstanceGeometry>> Node::getInstancedGeometries() const {
    return readExtras().geometries;
}

void Node::addInstanceController(boost::shared_ptr<InstanceController> instance) {
    if (instance) extras().controllers.push_back(std::move(instance));
}

boost::shared_ptr<InstanceController> Node::getInstanceController(unsigned int index) const {
    return elementAt(readExtras().controllers, index);
}

unsigned int Node::getInstanceControllerCount() const { return countOf(readExtras().controllers); }

std::vector<boost::shared_ptr<InstanceController>> Node::getInstancedControllers() const {
    return readExtras().controllers;
}

void Node::setMaterial(boost::shared_ptr<Material> material, unsigned int instance,
                       unsigned int primitive) {
    if (!material || instance >= getInstanceGeometryCount()) return;
    const auto shown = getInstanceGeometry(instance);
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(shown->getGeometry());
    const auto part = mesh ? mesh->getPrimitive(primitive) : nullptr;
    if (!part) return;
    shown->setMaterial(part->getMaterialSymbol(), material);
    if (isHeard(scene_, events::nodeMaterialChanged)) {
        dispatch(
            scene_, events::nodeMaterialChanged,
            core::event::EventData(id_ + "," + std::to_string(instance) + "," +
                                   std::to_string(primitive) + "," + material->getMaterialID()));
    }
}

void Node::addToLayer(int layer) {
    extras().layers.insert(layer);
    sendLayerEvent(events::nodeAddedLayer, layer);
}

void Node::addToLayer(std::string name) {
    if (auto* const scene = liveScene()) addToLayer(scene->getLayerManager()->getLayerID(name));
}

void Node::removeFromLayer(int layer) {
    if (extras_) extras_->layers.erase(layer);
    sendLayerEvent(events::nodeRemovedLayer, layer);
}

void Node::removeFromLayer(std::string name) {
    if (auto* const scene = liveScene()) {
        removeFromLayer(scene->getLayerManager()->getLayerID(name));
    }
}

bool Node::inLayer(int layer) const { return readExtras().layers.count(layer) > 0; }

bool Node::inLayer(std::string name) const {
    auto* const scene = liveScene();
    return scene && inLayer(scene->getLayerManager()->getLayerID(name));
}

std::set<int> Node::getLayers() const { return readExtras().layers; }

std::set<std::string> Node::getLayersNames() const {
    std::set<std::string> names;
    if (!liveScene()) return names;
    for (const int layer : readExtras().layers) names.insert(getLayerName(layer));
    return names;
}

std::string Node::getLayerName(int layer) const {
    auto* const scene = liveScene();
    return scene ? scene->getLayerManager()->getLayerName(layer) : std::string();
}

void Node::setVisible(bool visible) {
    if (visible) {
        removeFromLayer(0);
    } else {
        addToLayer(0);
    }
}

void Node::sendLayerEvent(const core::event::EventType& type, int layer) const {
    if (!isHeard(scene_, type)) return;
    dispatch(scene_, type, core::event::EventData::joined(id_, getLayerName(layer)));
}

}  // namespace vantorix::scene
