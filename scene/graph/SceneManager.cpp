#include "scene/graph/SceneManager.h"

#include <utility>

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include "core_api/event/EventManager.h"
#include "core_api/system/MillisecClock.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/geometry/LogWriters.h"
#include "scene/graph/ISceneController.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/NodeWalk.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneHandlerGate.h"
#include "scene/graph/SceneIdentifiers.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneLife.h"
#include "scene/graph/SceneSync.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

namespace vantorix::scene {

SceneManager::SceneManager(boost::shared_ptr<core::event::EventManager> eventManager)
    : EventBase(eventManager),
      life_(std::make_unique<SceneLife>(*this)),
      identifiers_(std::make_unique<SceneIdentifiers>()),
      nodeIndex_(std::make_unique<NodeIndex>(this)),
      sync_(boost::make_shared<SceneSync>(eventManager,
                                          boost::make_shared<core::system::MillisecClock>(true))),
      handlerGate_(boost::make_shared<HandlerGate>(this)) {
    addFileWriter(logger_, "SceneManager.log");
    layerManager_ = boost::make_shared<LayerManager>();
    registerEventHandlers();
    geometryManager_ = boost::make_shared<GeometryManager>(eventManager);
    layerManager_ = boost::make_shared<LayerManager>();  // A second one replaces the first.
    makeDefaults();
    sync_->start(boost::thread(&SceneManager::threadMain, sync_));
}

SceneManager::~SceneManager() {
    life_->end();
    endDeliveries();
    handlerGate_->close();
    sync_->abandon();
}

void SceneManager::makeDefaults() {
    effectLibrary_.push_back(boost::make_shared<Effect>("defaultEffect", "default.cgfx", ""));
    addMaterial(boost::make_shared<Material>("defaultMaterial", "defaultEffect"));
}

void SceneManager::threadMain(boost::shared_ptr<SceneSync> sync) { sync->run(); }

void SceneManager::stop() {
    const auto self = weak_from_this().lock();
    sync_->stop();
    setEventManager(boost::shared_ptr<core::event::EventManager>());
}

void SceneManager::lockScene() { sync_->lockScene(); }

void SceneManager::unlockScene() { sync_->unlockScene(); }

void SceneManager::setEventManager(boost::shared_ptr<core::event::EventManager> eventManager) {
    boost::shared_ptr<core::event::EventManager> replaced;  // Released after the lock.
    {
        const auto lock = sync_->lockManagers();
        EventBase::setEventManager(eventManager);
        if (geometryManager_) {
            replaced = geometryManager_->getEventManager();
            geometryManager_->setEventManager(eventManager);
        }
        sync_->setEventManager(std::move(eventManager));
    }
    sync_->releaseRetired();
}

boost::shared_ptr<core::system::IClock> SceneManager::getClock() const { return sync_->clock(); }

void SceneManager::setClock(boost::shared_ptr<core::system::IClock> clock) {
    if (clock) sync_->setClock(std::move(clock));
}

void SceneManager::addSceneController(boost::shared_ptr<ISceneController> controller) {
    if (controller) sync_->addController(controller, shared_from_this());
}

void SceneManager::removeSceneController(boost::shared_ptr<ISceneController> controller) {
    sync_->removeController(controller);
}

std::string SceneManager::generateID() { return identifiers_->generate(); }

void SceneManager::addID(std::string id) { identifiers_->record(id); }

void SceneManager::setSceneID(std::string id) {
    sceneID_ = std::move(id);
    addID(sceneID_);
}

void SceneManager::setSurrounding(boost::shared_ptr<Image> image) {
    const auto self = weak_from_this().lock();
    if (image && !contains(imageLibrary_, image)) addImage(image);
    surrounding_ = std::move(image);
    send(events::sceneSurroundingUpdate, "");
}

void SceneManager::setGeometryManager(boost::shared_ptr<GeometryManager> manager) {
    if (!manager) return;
    const auto replaced = manager->getEventManager();  // Released after the lock.
    {
        const auto lock = sync_->lockManagers();
        manager->setEventManager(getEventManager());
        geometryManager_.swap(manager);
    }
    std::vector<boost::shared_ptr<IGeometry>> geometries;
    geometryManager_->getGeometries(geometries);
    recordIDs(*this, geometries);
}

void SceneManager::setAnimationManager(boost::shared_ptr<AnimationManager> manager) {
    animationManager_ = std::move(manager);
}

boost::shared_ptr<Node> SceneManager::getRoot() {
    if (!root_) root_ = boost::make_shared<Node>(shared_from_this());
    return root_;
}

void SceneManager::setRoot(boost::shared_ptr<Node> root) {
    if (!root) return;
    nodeIndex_->drop();
    root_.swap(root);
}

boost::shared_ptr<Node> SceneManager::getNodeByID(std::string id) const {
    Node* const node = root_ ? nodeIndex_->findByID(*root_, id) : nullptr;
    return node ? node->shared_from_this() : nullptr;
}

boost::shared_ptr<Node> SceneManager::getNodeByName(std::string name) const {
    Node* const node = root_ ? nodeIndex_->findByName(*root_, name) : nullptr;
    return node ? node->shared_from_this() : nullptr;
}

std::vector<boost::shared_ptr<Node>> SceneManager::getNodeArray() const {
    std::vector<boost::shared_ptr<Node>> nodes;
    if (!root_) return nodes;
    NodeWalk walk(*root_, NodeWalk::VISIT_REPEATS);
    while (Node* const node = walk.next()) nodes.push_back(node->shared_from_this());
    return nodes;
}

void SceneManager::removeNode(boost::shared_ptr<Node> node) {
    const auto parent = node ? node->getParent() : nullptr;
    if (parent) parent->removeChild(node);
}

void SceneManager::removeNodeByID(std::string id) {
    removeNode(getNodeByName(std::move(id)));  // By name, not by ID: defined so.
}

void SceneManager::send(const core::event::EventType& type, const std::string& payload) {
    // A handler may release the scene's last reference.
    const auto self = weak_from_this().lock();
    triggerEvent(core::event::Event(type, core::event::EventData(payload)));
}

}  // namespace vantorix::scene
