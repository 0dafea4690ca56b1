#include "scene/animation/PlaybackTracks.h"

#include <array>
#include <typeinfo>

#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationEdits.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationSkew.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::scene {
namespace {

/// Whether the SID of @p element changes only where elementEdits counts it.
bool isCounted(const ITransformation& element) {
    static const std::array<const std::type_info*, 6> counted = {
        &typeid(TransformationLookAt), &typeid(TransformationMatrix),
        &typeid(TransformationRotate), &typeid(TransformationScale),
        &typeid(TransformationSkew),   &typeid(TransformationTranslate)};
    for (const auto* type : counted) {
        if (*type == typeid(element)) return true;
    }
    return false;
}

Track::Kind kindOf(const ITransformation& element) {
    switch (element.getType()) {
        case ITransformation::TRANSLATE:
            return Track::TRANSLATE;
        case ITransformation::ROTATE:
            return Track::ROTATE;
        case ITransformation::SCALE:
            return Track::SCALE;
        case ITransformation::MATRIX:
            return Track::MATRIX;
        default:
            return Track::NOTHING;
    }
}

}  // namespace

void PlaybackTracks::clear() {
    nodes_.clear();
    tracks_.clear();
    animationCount_ = 0;
}

bool PlaybackTracks::refresh(Animation& animation, SceneManager& scene) {
    const bool isCollected = animationCount_ == animationEdits.count();
    if (!isCollected) {
        animationCount_ = animationEdits.count();
        collect(animation);
    }
    const bool isFound = nodes_.refresh(scene);
    if (isFound || !isCollected || bindsEachTime_ || elementCount_ != elementEdits.count()) {
        elementCount_ = elementEdits.count();
        bind();
    }
    return isFound;
}

void PlaybackTracks::collect(Animation& animation) {
    nodes_.clear();
    tracks_.clear();
    AnimationWalk walk(animation, AnimationWalk::CHILDREN_FIRST, AnimationWalk::VISIT_REPEATS);
    while (const auto* const current = walk.next()) {
        for (const auto& channel : current->channels_) {
            addTrack(channel.sampler.get(), channel.target);
        }
    }
}

// A node is written for any channel that names it, also for one that cannot be played.
void PlaybackTracks::addTrack(const Sampler* sampler, const ChannelTarget& target) {
    const auto slot = static_cast<std::uint32_t>(nodes_.addSlot(target.nodeID));
    if (!sampler) return;
    const auto input = sampler->getStreamBySemantic(Sampler::INPUT);
    const auto output = sampler->getStreamBySemantic(Sampler::OUTPUT);
    const auto names = sampler->getStreamBySemantic(Sampler::INTERPOLATION);
    if (!input || !output || !names) return;
    tracks_.push_back(Track{input.get(), output.get(), names.get(), &target, nullptr, slot,
                            Track::NOTHING, target.componentIndex, KeyOrder()});
}

void PlaybackTracks::bind() {
    bindsEachTime_ = false;
    const Node* listed = nullptr;  // Channels of one node mostly follow each other.
    std::vector<boost::shared_ptr<ITransformation>> elements;
    for (auto& track : tracks_) {
        track.kind = Track::NOTHING;
        const Node* const node = nodes_.node(track.slot);
        if (!node) continue;
        if (node != listed) elements = node->getOriginalTransformations();
        listed = node;
        for (const auto& element : elements) {
            if (!element) continue;
            bindsEachTime_ = bindsEachTime_ || !isCounted(*element);
            if (element->getSid() != track.target->sid) continue;
            bindTo(track, *element);
            break;
        }
    }
}

void PlaybackTracks::bindTo(Track& track, ITransformation& element) {
    track.kind = kindOf(element);
    if (track.kind != Track::ROTATE) return;
    track.rotation = dynamic_cast<const TransformationRotate*>(&element);
    if (!track.rotation && track.component >= 0) track.kind = Track::NOTHING;
}

}  // namespace vantorix::scene
