#include "scene/graph/SceneMerge.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t nodesAhead = 8;
constexpr std::size_t entriesAhead = 5;
constexpr std::size_t namesakesAhead = 2;

/// Asks for the memory behind a node: an allocator mostly hands it out next.
void fetchBehind(const Node& node) {
    constexpr std::size_t cacheLine = 64;
    constexpr int forWriting = 1;
    const auto* const first = reinterpret_cast<const char*>(&node) + 2 * sizeof(Node);
    for (std::size_t i = 0; i < sizeof(Node) + cacheLine; i += cacheLine) {
        __builtin_prefetch(first + i, forWriting);
    }
}

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
    const TreeSnapshot tree(top);
    if (!has(DISCARD_NODES) && !has(MERGE_INTO_CHILD)) target_->nodeIndex_->reserve(tree.size());
    std::vector<MergeLevel> levels{{parent, TreeSnapshot::top()}};
    fetchFirst(tree, TreeSnapshot::top());
    while (!levels.empty()) {
        auto& level = levels.back();
        if (level.rest.first == level.rest.last) {
            levels.pop_back();
            continue;
        }
        fetchAhead(tree, level.rest);
        const auto next = level.rest.first++;
        auto placed = place(tree.node(next), level.parent);
        const auto below = tree.children(next);
        if (!placed || below.first == below.last) continue;
        fetchFirst(tree, below);
        levels.push_back({std::move(placed), below});
    }
}

// Most of the time would pass waiting for memory: of the node to copy, of the index entry of its ID
// and of the node that carries that ID here. Each is asked for a few nodes before its turn.
void SceneMerge::fetchAhead(const TreeSnapshot& tree, TreeSnapshot::Range rest) const {
    const auto& index = *target_->nodeIndex_;
    const auto left = rest.last - rest.first;
    if (left > nodesAhead) tree.fetch(rest.first + nodesAhead);
    if (left > entriesAhead) index.fetchEntry(tree.idOf(rest.first + entriesAhead));
    if (left > namesakesAhead) index.fetchNode(tree.idOf(rest.first + namesakesAhead));
}

void SceneMerge::fetchFirst(const TreeSnapshot& tree, TreeSnapshot::Range range) const {
    const auto& index = *target_->nodeIndex_;
    const auto end = [range](std::size_t count) {
        return std::min(range.last, range.first + count);
    };
    for (auto place = range.first; place < end(nodesAhead); ++place) tree.fetch(place);
    for (auto place = range.first; place < end(entriesAhead); ++place) {
        index.fetchEntry(tree.idOf(place));
    }
    for (auto place = range.first; place < end(namesakesAhead); ++place) {
        index.fetchNode(tree.idOf(place));
    }
}

// The node under which the children of `node` belong; empty when they are discarded with it.
boost::shared_ptr<Node> SceneMerge::place(const Node& node, const boost::shared_ptr<Node>& parent) {
    auto id = node.getID();
    if (isTaken(id)) {
        if (has(DISCARD_NODES)) {
            logNode("[INFO] Found repeated Node with ID: ", id, ". Discarded.");
            return {};
        }
        if (has(MERGE_INTO_CHILD)) {
            if (const auto child = children_.find(parent, id)) return child;
        }
        id = target_->renamedID(id);
        target_->nodeIndex_->fetchEntry(id);
        logNode("[INFO] Renamed repeated Node to: ", id, "");
    }
    const auto copy = copyNode(node, id);
    parent->addNode(copy);
    return copy;
}

// Composes a line only where it will be written: every node has one.
void SceneMerge::logNode(const char* before, const std::string& id, const char* after) const {
    auto& logger = target_->logger_;
    if (core::logger::Logger::active && logger.isEnabled()) logger << before + id + after;
}

bool SceneMerge::isTaken(const std::string& id) const {
    auto* const root = target_->root_.get();
    return root && target_->nodeIndex_->findByID(*root, id);
}

boost::shared_ptr<Node> SceneMerge::copyNode(const Node& node, const std::string& id) {
    const auto copy = boost::make_shared<Node>(target_);
    fetchBehind(*copy);
    copy->setID(id);
    copy->setName(node.getName());
    copy->copyPlacement(node);
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
