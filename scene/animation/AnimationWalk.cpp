#include "scene/animation/AnimationWalk.h"

#include <utility>

#include "scene/animation/Animation.h"

namespace vantorix::scene {

AnimationWalk::AnimationWalk(Animation& top, Order order, Repeats repeats)
    : order_(order), repeatsLeft_(repeats), top_(&top) {}

Animation* AnimationWalk::next() {
    if (auto* const top = std::exchange(top_, nullptr)) {
        enter(*top);
        if (order_ == PARENTS_FIRST) return top;
    }
    while (!path_.empty()) {
        auto& level = path_.back();
        if (level.nextChild == level.animation->children_.size()) {
            auto* const finished = leave();
            if (order_ == CHILDREN_FIRST) return finished;
            continue;
        }
        auto* const child = level.animation->children_[level.nextChild++].get();
        if (enter(*child) && order_ == PARENTS_FIRST) return child;
    }
    return nullptr;
}

bool AnimationWalk::enter(Animation& animation) {
    const auto [entry, isNew] = isOnPath_.emplace(&animation, true);
    if (!isNew) {
        if (repeatsLeft_ == 0) return false;
        --repeatsLeft_;
        if (std::exchange(entry->second, true)) return false;
    }
    path_.push_back(Level{&animation, 0});
    return true;
}

Animation* AnimationWalk::leave() {
    auto* const finished = path_.back().animation;
    isOnPath_[finished] = false;
    path_.pop_back();
    return finished;
}

}  // namespace vantorix::scene
