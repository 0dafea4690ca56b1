#include "scene/graph/NodeWalk.h"

#include "scene/graph/Node.h"

namespace vantorix::scene {

Node* NodeWalk::next() {
    if (top_) {
        Node* const node = top_;
        top_ = nullptr;
        descend(*node);
        return node;
    }
    while (!levels_.empty()) {
        auto& level = levels_.back();
        level.slot = level.row->nextSlot(level.slot);
        if (level.slot == ChildRow::npos) {
            levels_.pop_back();
            continue;
        }
        Node* const node = level.row->inSlot(level.slot++).get();
        if (isRepeat(*node)) continue;
        descend(*node);
        return node;
    }
    return nullptr;
}

bool NodeWalk::isRepeat(const Node& node) {
    return repeats_ == SKIP_REPEATS && node.attachments_ > 1 && !seen_.insert(&node).second;
}

void NodeWalk::descend(const Node& node) {
    if (node.children_ && node.children_->size() > 0) {
        levels_.push_back(Level{node.children_.get(), 0});
    }
}

}  // namespace vantorix::scene
