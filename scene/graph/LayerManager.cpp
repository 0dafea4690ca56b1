#include "scene/graph/LayerManager.h"

#include "scene/geometry/LogWriters.h"

namespace vantorix::scene {

LayerManager::LayerManager() {
    addFileWriter(logger_, "SceneManager.log");
    for (const auto* name :
         {"hidden", "visible", "selected", "cast_shadow", "transparent", "post_render"}) {
        addLayer(name);
    }
}

LayerManager::~LayerManager() = default;

int LayerManager::addLayer(std::string name) {
    const auto added = layers_.emplace(std::move(name), nextLayerID_);
    if (!added.second) return added.first->second;
    try {
        names_.emplace(nextLayerID_, added.first->first);
    } catch (...) {
        layers_.erase(added.first);
        throw;
    }
    return nextLayerID_++;
}

int LayerManager::getLayerID(std::string name) { return addLayer(std::move(name)); }

std::string LayerManager::getLayerName(int id) {
    const auto found = names_.find(id);
    return found == names_.end() ? std::string() : found->second;
}

std::map<int, int> LayerManager::mergeLayers(boost::shared_ptr<LayerManager> other,
                                             bool discardRepeated) {
    std::map<int, int> translation;
    if (!other) return translation;
    const auto incoming = other->layers_;  // A copy: the other table may be this one.
    for (const auto& [name, otherID] : incoming) {
        const auto existing = layers_.find(name);
        if (existing == layers_.end()) {
            const int added = addLayer(name);
            logger_ << "[INFO] Added new layer " + name + " with ID: " + std::to_string(added);
        } else if (discardRepeated) {
            logger_ << "[INFO] Found repeated Layer ID: " + name + " and discarded it.";
            if (otherID != existing->second) translation.emplace(otherID, existing->second);
        } else {
            const auto newName = name + "__renamed__";
            const int newID = nextLayerID_;
            if (addLayer(newName) != newID) ++nextLayerID_;  // The name is taken: used up.
            translation.emplace(otherID, newID);
            logger_ << "[INFO] Found repeated Layer ID. Renamed " + name + " to " + newName;
        }
    }
    return translation;
}

}  // namespace vantorix::scene
