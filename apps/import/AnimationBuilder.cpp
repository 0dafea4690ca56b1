#include "apps/import/AnimationBuilder.h"

#include <boost/make_shared.hpp>

#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::apps::import {

using namespace scene;

namespace {

using core::utils::Vector;

void addElement(boost::shared_ptr<ITransformation> element, const std::string& sid, Node& node) {
    element->setSid(sid);
    node.addTransformation(element);
}

void addMatrix(const float* elements, Node& node) {
    addElement(boost::make_shared<TransformationMatrix>(elements), "transform", node);
}

const char* sidOf(TransformTrack::Kind kind) {
    if (kind == TransformTrack::TRANSLATE) return "translate";
    return kind == TransformTrack::SCALE ? "scale" : "transform";
}

boost::shared_ptr<ITransformation> elementOf(const Node& node, const std::string& sid) {
    for (const auto& element : node.getOriginalTransformations()) {
        if (element->getSid() == sid) return element;
    }
    return {};
}

void fill(Stream& stream, const std::vector<float>& values, int count) {
    stream.values = values;
    stream.count = count;
}

}  // namespace

AnimationBuilder::AnimationBuilder(const ModelDocument& document,
                                   boost::shared_ptr<SceneManager> scene, ImportReport& report)
    : document_(document), scene_(scene), ids_("animation", report) {
    for (const auto& animation : scene->getAnimationsLibrary()) ids_.reserve(animation->getID());
    for (const auto& clip : document.clips) {
        for (const auto& channel : clip.channels) {
            const auto kind = kindOf(channel, RestPose(document.nodes[channel.node].matrix));
            const auto [known, added] = kinds_.try_emplace(channel.node, kind);
            if (known->second != kind) known->second = TransformTrack::MATRIX;
        }
    }
}

void AnimationBuilder::addElements(std::size_t number, Node& node) const {
    const auto& matrix = document_.nodes[number].matrix;
    const auto kind = kinds_.find(static_cast<std::uint32_t>(number));
    if (kind == kinds_.end() || kind->second == TransformTrack::MATRIX) {
        addMatrix(matrix.data(), node);
        return;
    }
    const RestPose rest(matrix);
    if (kind->second == TransformTrack::TRANSLATE) {
        const Vector<float, 3> translation(rest.translation.data());
        addElement(boost::make_shared<TransformationTranslate>(translation), "translate", node);
        return;
    }
    Eigen::Matrix4f placement = Eigen::Matrix4f::Identity();
    placement.topLeftCorner<3, 3>() = rest.rotation.toRotationMatrix();
    placement.topRightCorner<3, 1>() = rest.translation;
    addMatrix(placement.data(), node);
    const Vector<float, 3> scale(rest.scale.data());
    addElement(boost::make_shared<TransformationScale>(scale), "scale", node);
}

void AnimationBuilder::build(const std::vector<boost::shared_ptr<Node>>& nodes) {
    for (const auto& clip : document_.clips) {
        const auto animation = boost::make_shared<Animation>(ids_.take(clip.name), clip.name);
        for (const auto& channel : clip.channels) {
            addChannel(channel, clip.duration, *nodes[channel.node], *animation);
        }
        scene_->addAnimation(animation);
    }
}

void AnimationBuilder::addChannel(const ModelChannel& channel, float duration, Node& node,
                                  Animation& animation) const {
    const auto kind = kinds_.at(channel.node);
    const auto track =
        makeTrack(channel, RestPose(document_.nodes[channel.node].matrix), kind, duration);
    const std::string sid = sidOf(kind);
    const auto sampler =
        animation.getChannel(node.getID(), node.getID() + "/" + sid, elementOf(node, sid));
    const int count = static_cast<int>(track.times.size());
    fill(*sampler->getStreamBySemantic(Sampler::INPUT), track.times, count);
    auto& output = *sampler->getStreamBySemantic(Sampler::OUTPUT);
    if (kind != TransformTrack::MATRIX) {
        output.stride = 3;
        output.params = {{"X", "float"}, {"Y", "float"}, {"Z", "float"}};
    }
    fill(output, track.values, count);
    auto& names = *sampler->getStreamBySemantic(Sampler::INTERPOLATION);
    names.stringValues.assign(track.times.size(), "LINEAR");
    names.count = count;
}

}  // namespace vantorix::apps::import
