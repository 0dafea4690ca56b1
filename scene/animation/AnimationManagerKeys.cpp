#include <algorithm>
#include <cmath>

#include <boost/unordered/unordered_set.hpp>

#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/PlaybackClock.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
namespace {

/// The key times of the first channel; the others are not asked, as defined.
boost::shared_ptr<Stream> firstKeyTimes(const boost::shared_ptr<Sampler>& sampler) {
    return sampler ? sampler->getStreamBySemantic(Sampler::INPUT) : nullptr;
}

}  // namespace

void AnimationManager::calculateFrameTimes(Animation& animation, std::vector<float>& times) {
    boost::unordered_set<float> known(times.begin(), times.end());
    AnimationWalk walk(animation, AnimationWalk::CHILDREN_FIRST, AnimationWalk::SKIP_REPEATS);
    while (const auto* const current = walk.next()) {
        if (current->channels_.empty()) continue;
        const auto input = firstKeyTimes(current->channels_.front().sampler);
        if (!input) continue;
        for (const float time : std::as_const(input->values)) {
            // A NaN equals nothing, and would fill one bucket of the set.
            if (std::isnan(time) || known.insert(time).second) times.push_back(time);
        }
    }
}

void AnimationManager::insertFrameTime(float time) { frameTimes_.push_back(time); }

// What follows a removed entry is not looked at, on purpose: of two equal ones the second stays.
bool AnimationManager::removeFrameTime(float time) {
    bool isPassedOver = false;
    const auto isRemoved = [&](float entry) {
        isPassedOver = !isPassedOver && entry == time;
        return isPassedOver;
    };
    std::vector<float> kept;
    for (const float entry : frameTimes_) {
        if (!isRemoved(entry)) kept.push_back(entry);
    }
    frameTimes_.swap(kept);
    return frameTimes_.size() < kept.size();
}

void AnimationManager::insertKeyframe(float time) {
    const auto self = weak_from_this().lock();
    const auto animation = animation_;
    pause();
    if (animation) {
        for (const auto& node : nodesToRecord()) animation->insertKeyFrame(node, time);
    }
    insertFrameTime(time);
    if (animation && animation == animation_) clock_->setLoopDuration(animation->getDuration());
}

std::vector<boost::shared_ptr<Node>> AnimationManager::nodesToRecord() const {
    auto nodes = targetedNodes_;
    const auto scene = sceneManager_.lock();
    const auto camera = scene ? scene->getCameraInstanceAt(0) : nullptr;
    const auto cameraNode = camera ? camera->getParentNode() : nullptr;
    if (cameraNode && !isNodeTargeted(cameraNode)) nodes.push_back(cameraNode);
    return nodes;
}

void AnimationManager::removeKeyFrame(boost::shared_ptr<Animation> animation, float time) {
    if (!animation) return;
    AnimationWalk walk(*animation, AnimationWalk::PARENTS_FIRST, AnimationWalk::VISIT_REPEATS);
    while (walk.next() && removeFrameTime(time)) {
        // Once for each animation; where one finds nothing, the others would not either.
    }
    animation->removeKeyFrame(time);
    if (animation_) clock_->setLoopDuration(animation_->getDuration());
}

}  // namespace vantorix::scene
