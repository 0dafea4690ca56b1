#include "scene/graph/SceneMerge.h"

#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeExtras.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneLife.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t nodesAhead = 8;
constexpr std::size_t entriesAhead = 5;
constexpr std::size_t namesakesAhead = 2;

/// Children that are still to be merged, and the node to merge them under.
struct MergeLevel {
    boost::shared_ptr<Node> parent;
    TreeSnapshot::Range rest;
};

}  // namespace

SceneMerge::SceneMerge(boost::shared_ptr<SceneManager> target,
                       boost::shared_ptr<SceneManager> source, int options)
    : target_(std::move(target)),
      source_(std::move(source)),
      options_(options),
      children_(*target_),
      materials_(*target_) {}

void SceneMerge::run(const std::string& parentNodeID) {
    mergeLibraries();
    const auto named = target_->getNodeByID(parentNodeID);
    const auto parent = named ? named : target_->getRoot();
    mergeSceneGraph(parent, source_->getRoot());
    announce();
}

void SceneMerge::mergeLibraries() {
    geometryMap_ = target_->getGeometryManager()->mergeGeometries(source_->getGeometryManager(),
                                                                  has(DISCARD_GEOMETRIES));
    const auto images = target_->mergeImageLibrary(source_->getImageLibrary(), has(DISCARD_IMAGES));
    const auto effects = target_->mergeEffectLibrary(source_->getEffectLibrary());
    // After effects and images: materials name both.
    materialMap_ = target_->mergeMaterialLibrary(source_->getMaterialList(), effects, images,
                                                 has(COMPARE_EFFECTS));
    layerMap_ =
        target_->getLayerManager()->mergeLayers(source_->getLayerManager(), has(DISCARD_LAYERS));
}

// Depth first, with a stack of its own: trees may be deeper than the program's.
void SceneMerge::mergeSceneGraph(const boost::shared_ptr<Node>& parent,
                                 const boost::shared_ptr<Node>& top) {
    const TreeSnapshot tree(top,
                            isUndisturbed(*parent) ? TreeSnapshot::BORROW : TreeSnapshot::KEEP);
    if (copiesEveryNode()) target_->nodeIndex_->reserve(tree.size());
    std::vector<MergeLevel> levels{{parent, TreeSnapshot::top()}};
    while (!levels.empty()) {
        auto& level = levels.back();
        if (level.rest.first == level.rest.last) {
            levels.pop_back();
            continue;
        }
        const auto next = level.rest.first++;
        fetchAhead(tree, next);
        const auto below = tree.children(next);
        const bool isLeaf = below.first == below.last;
        auto placed = place(tree.node(next), level.parent, isLeaf);
        if (!placed || isLeaf) continue;
        if (copiesEveryNode()) placed->expectChildren(below.last - below.first);
        levels.push_back({std::move(placed), below});
    }
}

// Whether no handler and no log writer can run while nodes are copied. The copies are of this
// scene; a node that they are put under may be of another one, which others hear.
bool SceneMerge::isUndisturbed(const Node& parent) const {
    if (!copiesEveryNode() || isLogging() || parent.liveScene() != target_.get()) return false;
    const auto events = target_->getEventManager();
    return !events || (events->isPlain() && events->getListenedTypes().empty());
}

// Most of the time would pass waiting for memory: of the node to copy, of the index entry of its ID
// and of the node that carries that ID here. Each is asked for a few nodes before its turn: those
// in the places behind are brothers and sisters, cousins or, in a chain, the nodes below.
void SceneMerge::fetchAhead(const TreeSnapshot& tree, std::size_t place) const {
    const auto& index = *target_->nodeIndex_;
    const auto left = tree.size() - place;
    if (left > nodesAhead) tree.fetch(place + nodesAhead);
    if (left > entriesAhead) index.fetchEntry(tree.idOf(place + entriesAhead));
    if (left > namesakesAhead) index.fetchNode(tree.idOf(place + namesakesAhead));
}

// The node under which the children of `node` belong; empty when they are discarded with it, or
// when it has none: then the copy is handed on without being counted.
boost::shared_ptr<Node> SceneMerge::place(const Node& node, const boost::shared_ptr<Node>& parent,
                                          bool isLeaf) {
    if (!isTaken(node.id_)) return addCopy(node, std::string(node.id_), parent, isLeaf);
    if (has(DISCARD_NODES)) {
        logNode("[INFO] Found repeated Node with ID: ", node.id_, ". Discarded.");
        return {};
    }
    if (has(MERGE_INTO_CHILD)) {
        if (const auto child = children_.find(parent, node.id_)) return child;
    }
    auto id = target_->renamedID(node.id_);
    logNode("[INFO] Renamed repeated Node to: ", id, "");
    return addCopy(node, std::move(id), parent, isLeaf);
}

boost::shared_ptr<Node> SceneMerge::addCopy(const Node& node, std::string&& id,
                                            const boost::shared_ptr<Node>& parent, bool isLeaf) {
    auto copy = copyNode(node, std::move(id));
    const auto below = isLeaf ? nullptr : copy;
    parent->addNode(std::move(copy));
    return below;
}

// Composes a line only where it will be written: every node has one.
void SceneMerge::logNode(const char* before, const std::string& id, const char* after) const {
    if (isLogging()) target_->logger_ << before + id + after;
}

bool SceneMerge::isLogging() const {
    return core::logger::Logger::active && target_->logger_.isEnabled();
}

bool SceneMerge::isTaken(const std::string& id) const {
    auto* const root = target_->root_.get();
    return root && target_->nodeIndex_->isCarried(*root, id);
}

boost::shared_ptr<Node> SceneMerge::copyNode(const Node& node, std::string&& id) {
    auto copy = boost::make_shared<Node>(Node::Key(), target_->life_->handle(), std::move(id));
    copy->name_ = node.name_;
    copy->copyPlacement(node);
    if (!node.extras_) return copy;
    copyLayers(node, *copy);
    copyInstances(node, *copy);
    return copy;
}

void SceneMerge::copyLayers(const Node& node, Node& copy) const {
    for (const int layer : node.getLayers()) copy.addToLayer(translatedID(layerMap_, layer));
}

void SceneMerge::copyInstances(const Node& node, Node& copy) {
    for (const auto& instance : node.getInstancedGeometries()) {
        const auto geometry = geometryFor(*instance);
        if (!geometry) continue;
        auto materials = instance->getMaterialMap();
        for (auto& [symbol, material] : materials) material = materialFor(material);
        copy.addInstanceGeometry(
            boost::make_shared<InstanceGeometry>(geometry, std::move(materials)));
    }
}

boost::shared_ptr<IGeometry> SceneMerge::geometryFor(InstanceGeometry& instance) const {
    const auto shown = instance.getGeometry();
    const auto id = shown ? translatedID(geometryMap_, shown->getID()) : std::string();
    const auto geometry = shown ? target_->getGeometryManager()->getGeometry(id) : nullptr;
    if (!geometry) {
        target_->logger_ << "[ERROR] Trying to instantiate a non existent Geometry: " + id;
    }
    return geometry;
}

boost::shared_ptr<Material> SceneMerge::materialFor(const boost::shared_ptr<Material>& material) {
    if (!material) return {};
    const auto renamed = materialMap_.find(material->getMaterialID());
    return renamed == materialMap_.end() ? material : materials_.find(renamed->second);
}

void SceneMerge::announce() const {
    target_->triggerEvent("SceneUpdate", "");
    target_->triggerEvent("SceneUpdate", "MaterialList");
    target_->triggerEvent("SyncScene", "");
}

}  // namespace vantorix::scene
