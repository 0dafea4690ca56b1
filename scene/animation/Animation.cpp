#include "scene/animation/Animation.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <boost/unordered/unordered_set.hpp>

#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationEdits.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/transform/ITransformation.h"

namespace vantorix::scene {
namespace {

using Children = std::vector<boost::shared_ptr<Animation>>;

constexpr double longestMilliseconds = 1e15;

/// The last key time in whole milliseconds, 0 when there is none.
std::int64_t lastKeyTime(const Sampler* sampler) {
    const auto input = sampler ? sampler->getStreamBySemantic(Sampler::INPUT) : nullptr;
    if (!input || input->params.size() != 1 || input->count <= 0) return 0;
    const auto last = static_cast<std::size_t>(input->count) - 1;
    const FloatArray& times = input->values;
    if (last >= times.size() || std::isnan(times[last])) return 0;
    const double milliseconds = static_cast<double>(times[last]) * 1000.0;
    return static_cast<std::int64_t>(std::clamp(milliseconds, 0.0, longestMilliseconds));
}

/// Animations nested deeply are taken down in the outermost call's loop, not in nested calls.
void releaseAnimations(Children& released) {
    static thread_local Children* waiting = nullptr;
    if (waiting) {
        std::move(released.begin(), released.end(), std::back_inserter(*waiting));
        released.clear();
        return;
    }
    waiting = &released;
    while (!released.empty()) {
        const auto last = std::move(released.back());
        released.pop_back();
    }
    waiting = nullptr;
}

}  // namespace

Animation::Animation(std::string id, std::string name)
    : id_(std::move(id)), name_(std::move(name)) {}

Animation::Animation(const Animation& other) = default;

Animation& Animation::operator=(const Animation& other) {
    if (this == &other) return *this;
    const auto self = weak_from_this().lock();  // The old children may hold the last reference.
    id_ = other.id_;
    name_ = other.name_;
    streams_ = other.streams_;
    samplers_ = other.samplers_;
    channels_ = other.channels_;
    timeRange_ = other.timeRange_;
    targetNodeID_ = other.targetNodeID_;
    targetSid_ = other.targetSid_;
    targetNode_ = other.targetNode_;
    Children released(other.children_);
    released.swap(children_);
    animationEdits.note();
    animationAssignments.note();
    releaseAnimations(released);
    return *this;
}

Animation::~Animation() {
    if (!children_.empty()) releaseAnimations(children_);
}

void Animation::setStreams(std::vector<boost::shared_ptr<Stream>> streams) {
    streams_ = std::move(streams);
}

boost::shared_ptr<Stream> Animation::getStreamById(std::string id) const {
    for (const auto& stream : streams_) {
        if (stream && stream->name == id) return stream;
    }
    return {};
}

void Animation::setSamplers(std::vector<boost::shared_ptr<Sampler>> samplers) {
    samplers_ = std::move(samplers);
}

boost::shared_ptr<Sampler> Animation::getSamplerById(std::string id) const {
    for (const auto& sampler : samplers_) {
        if (sampler && sampler->getId() == id) return sampler;
    }
    return {};
}

void Animation::addChannel(boost::shared_ptr<Sampler> sampler, std::string target) {
    channels_.emplace_back(std::move(sampler), std::move(target));
    animationEdits.note();
}

std::vector<Animation::Channel> Animation::getChannelArray() const {
    std::vector<Channel> channels;
    channels.reserve(channels_.size());
    for (const auto& channel : channels_) channels.emplace_back(channel.sampler, channel.text);
    return channels;
}

void Animation::addAnimation(boost::shared_ptr<Animation> child) {
    if (!child) return;
    children_.push_back(std::move(child));
    animationEdits.note();
}

boost::posix_time::time_duration Animation::getDuration() const {
    std::int64_t longest = 0;
    AnimationWalk walk(const_cast<Animation&>(*this), AnimationWalk::PARENTS_FIRST,
                       AnimationWalk::SKIP_REPEATS);
    while (const auto* const animation = walk.next()) {
        for (const auto& channel : animation->channels_) {
            longest = std::max(longest, lastKeyTime(channel.sampler.get()));
        }
    }
    return boost::posix_time::milliseconds(longest);
}

// Each child overwrites the answer of the one before, on purpose: what counts is the chain of last
// children, down to one that has none or that the chain has met before.
bool Animation::isValid() const {
    std::vector<const Animation*> chain;
    boost::unordered_set<const Animation*> met;
    const Animation* animation = this;
    while (animation && met.insert(animation).second) {
        chain.push_back(animation);
        animation = animation->children_.empty() ? nullptr : animation->children_.back().get();
    }
    bool valid = true;
    for (; !chain.empty(); chain.pop_back()) valid = chain.back()->isDrivable(valid);
    return valid;
}

bool Animation::isDrivable(bool valid) const {
    if (!targetNode_) return valid;
    int rotations = 0;
    bool hasMatrix = false;
    for (const auto& element : targetNode_->getOriginalTransformations()) {
        if (!element) continue;
        const auto type = element->getType();
        if (type == ITransformation::ROTATE) ++rotations;
        if (type == ITransformation::TRANSLATE || type == ITransformation::SCALE) valid = false;
        if (type == ITransformation::MATRIX) hasMatrix = true;
    }
    return hasMatrix || (valid && rotations < 2);
}

}  // namespace vantorix::scene
