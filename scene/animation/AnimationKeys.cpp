#include <algorithm>
#include <array>
#include <cmath>

#include <Eigen/Core>
#include <boost/make_shared.hpp>

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationEdits.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/transform/TransformationMatrix.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t matrixSize = 16;
constexpr std::size_t noKey = static_cast<std::size_t>(-1);
/// No layout of a key is this long; it keeps a stride out of garbage from eating all memory.
constexpr int mostFloatsPerKey = 1 << 16;

boost::shared_ptr<Stream> makeKeyStream(const std::string& name, int stride,
                                        const std::string& parameter, const std::string& type) {
    const auto stream = boost::make_shared<Stream>(name, stride, true);
    stream->params.emplace_back(parameter, type);
    return stream;
}

// Unsigned: a counter that a caller has set to an extreme number wraps around.
void addToCount(Stream& stream, unsigned int change) {
    stream.count = static_cast<int>(static_cast<unsigned int>(stream.count) + change);
}

void countInsertion(Stream& stream) { addToCount(stream, 1u); }
void countRemoval(Stream& stream) { addToCount(stream, -1u); }

/// The end stands for every position behind it.
template <class Values>
typename Values::const_iterator placeIn(const Values& values, std::size_t position) {
    using Distance = typename Values::difference_type;
    return values.cbegin() + static_cast<Distance>(std::min(position, values.size()));
}

std::size_t insertionIndex(const FloatArray& times, float time) {
    std::size_t index = times.size();
    while (index > 0 && !(times[index - 1] < time)) --index;
    return index;
}

void insertPose(Stream& output, const Eigen::Matrix4f& pose, std::size_t key) {
    const Eigen::Matrix4f rows = pose.transpose();
    output.values.insert(placeIn(output.values, key * matrixSize), rows.data(),
                         rows.data() + matrixSize);
    countInsertion(output);
}

void insertFlatTangent(Stream& tangent) {
    if (tangent.stride > 0 && tangent.stride <= mostFloatsPerKey) {
        const auto size = static_cast<std::size_t>(tangent.stride);
        // Always behind the first key, whatever the new key's index: defined so.
        tangent.values.insert(placeIn(tangent.values, size), size, 0.0f);
    }
    countInsertion(tangent);
}

/// The last key that is close enough. The difference is taken in floats and compared in doubles.
std::size_t keyToRemove(const FloatArray& times, float time) {
    for (std::size_t index = times.size(); index > 0; --index) {
        const float distance = std::abs(time - times[index - 1]);
        if (static_cast<double>(distance) < 0.005) return index - 1;
    }
    return noKey;
}

void eraseTuple(Stream* stream, std::size_t key) {
    if (!stream) return;
    if (stream->stride > 0) {
        const auto size = static_cast<std::size_t>(stream->stride);
        stream->values.erase(placeIn(stream->values, key * size),
                             placeIn(stream->values, key * size + size));
    }
    countRemoval(*stream);
}

void eraseTime(Stream& input, std::size_t key) {
    input.values.erase(placeIn(input.values, key));
    countRemoval(input);
}

void eraseName(Stream* names, std::size_t key) {
    if (!names) return;
    names->stringValues.erase(placeIn(names->stringValues, key),
                              placeIn(names->stringValues, key + 1));
    countRemoval(*names);
}

}  // namespace

boost::shared_ptr<Sampler> Animation::getChannel(
    std::string nodeId, std::string target, boost::shared_ptr<ITransformation> transformation) {
    const ChannelTarget parsed(target);
    const auto existing = findChannelChild(nodeId, parsed.sid);
    if (existing) return existing->channels_.front().sampler;

    const bool isMatrix = transformation && transformation->getType() == ITransformation::MATRIX;
    // "-node-" in the animation's ID and "-node_" in the streams', on purpose.
    const auto prefix = nodeId + "-node_" + parsed.sid;
    const auto input = makeKeyStream(prefix + "-input", 1, "TIME", "float");
    const auto output = isMatrix ? makeKeyStream(prefix + "-output", 16, "TRANSFORM", "float4x4")
                                 : makeKeyStream(prefix + "-output", 1, parsed.component, "float");
    const auto names = makeKeyStream(prefix + "-interpolations", 1, "INTERPOLATION", "Name");
    const auto sampler = boost::make_shared<Sampler>(nodeId + "-sampler");  // Without SID: the same
    sampler->addInput("INPUT", input);                                      // for all elements.
    sampler->addInput("OUTPUT", output);
    sampler->addInput("INTERPOLATION", names);

    const auto child = boost::make_shared<Animation>(nodeId + "-node-" + parsed.sid, "");
    child->samplers_ = {sampler};
    child->streams_ = {input, output, names};
    child->targetNodeID_ = std::move(nodeId);
    child->targetSid_ = parsed.sid;
    child->addChannel(sampler, std::move(target));
    addAnimation(child);
    return sampler;
}

boost::shared_ptr<Animation> Animation::findChannelChild(const std::string& nodeId,
                                                         const std::string& sid) const {
    if (nodeId.empty()) {  // Any child may be meant, even one that gets its first channel later.
        const auto found = std::find_if(children_.begin(), children_.end(), [&](const auto& child) {
            return !child->channels_.empty() && child->targetNodeID_.empty() &&
                   child->targetSid_ == sid;
        });
        return found == children_.end() ? nullptr : *found;
    }
    indexChildren();
    const auto found = childIndex_.find(ChildNames(nodeId, sid));
    return found == childIndex_.end() ? nullptr : children_[found->second];
}

void Animation::indexChildren() const {
    if (indexedAssignments_ != animationAssignments.count()) {
        indexedAssignments_ = animationAssignments.count();
        childIndex_.clear();
        indexedChildren_ = 0;
    }
    for (; indexedChildren_ < children_.size(); ++indexedChildren_) {
        const auto& child = *children_[indexedChildren_];
        if (child.channels_.empty() || child.targetNodeID_.empty()) continue;
        childIndex_.emplace(ChildNames(child.targetNodeID_, child.targetSid_), indexedChildren_);
    }
}

void Animation::insertKeyFrame(boost::shared_ptr<Node> node, float time) {
    if (!node) return;
    const auto self = weak_from_this().lock();  // Handlers hear of the new element.
    if (node->getOriginalTransformations().empty()) {
        const auto element = boost::make_shared<TransformationMatrix>();
        element->setSid("transform");
        node->addTransformation(element);
    }
    for (const auto& element : node->getOriginalTransformations()) {
        if (element && element->getType() == ITransformation::MATRIX) {
            insertTransformations(node, element, time);
        }
    }
}

void Animation::insertTransformations(boost::shared_ptr<Node> node,
                                      boost::shared_ptr<ITransformation> transformation,
                                      float time) {
    if (!node || !transformation) return;
    const auto target = node->getID() + "/" + transformation->getSid();
    const auto sampler = getChannel(node->getID(), target, transformation);
    const auto input = sampler ? sampler->getStreamBySemantic(Sampler::INPUT) : nullptr;
    if (!input || input->params.size() != 1 || input->params.front().first != "TIME") return;

    const auto key = insertionIndex(input->values, time);
    if (const auto output = sampler->getStreamBySemantic(Sampler::OUTPUT)) {
        insertPose(*output, node->getTransformations(), key);
    }
    input->values.insert(placeIn(input->values, key), time);
    countInsertion(*input);
    if (const auto names = sampler->getStreamBySemantic(Sampler::INTERPOLATION)) {
        names->stringValues.insert(placeIn(names->stringValues, key), "LINEAR");
        countInsertion(*names);
    }
    for (const auto semantic : {Sampler::IN_TANGENT, Sampler::OUT_TANGENT}) {
        if (const auto tangent = sampler->getStreamBySemantic(semantic))
            insertFlatTangent(*tangent);
    }
}

void Animation::removeKeyFrame(float time) {
    AnimationWalk walk(*this, AnimationWalk::CHILDREN_FIRST, AnimationWalk::VISIT_REPEATS);
    while (auto* const animation = walk.next()) animation->removeOwnKeys(time);
}

void Animation::removeOwnKeys(float time) {
    for (const auto& channel : channels_) {
        const auto* const sampler = channel.sampler.get();
        const auto input = sampler ? sampler->getStreamBySemantic(Sampler::INPUT) : nullptr;
        const auto key = input ? keyToRemove(input->values, time) : noKey;
        if (key == noKey) continue;
        eraseTime(*input, key);
        eraseName(sampler->getStreamBySemantic(Sampler::INTERPOLATION).get(), key);
        for (const auto semantic : {Sampler::IN_TANGENT, Sampler::OUT_TANGENT, Sampler::OUTPUT}) {
            eraseTuple(sampler->getStreamBySemantic(semantic).get(), key);
        }
    }
}

}  // namespace vantorix::scene
