#include "scene/animation/TargetedNodes.h"

#include "scene/graph/Node.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {

void TargetedNodes::clear() {
    ids_.clear();
    slots_.clear();
    nodes_.clear();
    revision_ = 0;
}

std::size_t TargetedNodes::addSlot(const std::string& id) {
    const auto [entry, isNew] = slots_.emplace(id, ids_.size());
    if (isNew) {
        ids_.push_back(id);
        nodes_.push_back(nullptr);
        revision_ = 0;
    }
    return entry->second;
}

bool TargetedNodes::refresh(SceneManager& scene) {
    auto& index = *scene.nodeIndex_;
    if (revision_ != 0 && revision_ == index.revisionOfIDs()) return false;
    if (scene.root_) {
        index.findAllByID(*scene.root_, ids_, nodes_);
        revision_ = index.revisionOfIDs();
    } else {
        nodes_.assign(ids_.size(), nullptr);
        revision_ = 0;
    }
    return true;
}

}  // namespace vantorix::scene
