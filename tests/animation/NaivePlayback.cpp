#include "tests/animation/NaivePlayback.h"

#include <algorithm>
#include <cctype>

#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"

namespace vantorix::test {
namespace {

using namespace scene;
using NodePointer = NaivePlayback::NodePointer;
using RowMatrix = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

std::string lowerCase(std::string text) {
    for (auto& letter : text) letter = static_cast<char>(std::tolower(letter));
    return text;
}

struct Target {
    explicit Target(const std::string& text) {
        const auto slash = text.find('/');
        const auto dot = text.find('.');
        id = text.substr(0, slash);
        if (dot != std::string::npos) component = lowerCase(text.substr(dot + 1));
        if (slash == std::string::npos) return;
        sid = text.substr(slash + 1);
        if (dot != std::string::npos && dot > slash) sid = text.substr(slash + 1, dot - slash - 1);
    }

    int index() const {
        if (component == "x") return 0;
        if (component == "y") return 1;
        if (component == "z") return 2;
        return component == "w" || component == "angle" ? 3 : -1;
    }

    std::string id, sid, component;
};

NodePointer findNode(const NodePointer& node, const std::string& id) {
    if (node->getID() == id) return node;
    for (unsigned int i = 0; i < node->getChildCount(); ++i) {
        if (const auto found = findNode(node->getChildNode(i), id)) return found;
    }
    return {};
}

Eigen::Matrix4f turn(const Eigen::Vector3f& axis, float degrees) {
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    if (!(axis.norm() > 0)) return matrix;
    matrix.topLeftCorner<3, 3>() =
        Eigen::AngleAxisf(degrees * 0.017453292f, axis.normalized()).toRotationMatrix();
    return matrix;
}

Eigen::Vector3f vectorOf(const core::utils::Vector<float, 3>& vector) {
    return vector.size() < 3 ? Eigen::Vector3f(0, 0, 0)
                             : Eigen::Vector3f(vector[0], vector[1], vector[2]);
}

Eigen::Matrix4f scaledBy(const Eigen::Vector3f& factors) {
    return Eigen::Affine3f(Eigen::Scaling(factors)).matrix();
}

Eigen::Matrix4f matrixOf(const boost::shared_ptr<ITransformation>& element) {
    if (const auto matrix = boost::dynamic_pointer_cast<TransformationMatrix>(element)) {
        return Eigen::Map<const Eigen::Matrix4f>(matrix->getMatrix().getMatrix());
    }
    if (const auto rotate = boost::dynamic_pointer_cast<TransformationRotate>(element)) {
        return turn(vectorOf(rotate->getRotationAxis()), rotate->getAngle());
    }
    if (const auto scaling = boost::dynamic_pointer_cast<TransformationScale>(element)) {
        return scaledBy(vectorOf(scaling->getScale()));
    }
    if (const auto move = boost::dynamic_pointer_cast<TransformationTranslate>(element)) {
        const auto offset = vectorOf(move->getTranslation());
        return movedBy(offset.x(), offset.y(), offset.z());
    }
    return Eigen::Matrix4f::Identity();
}

/// One channel at one time. Only reads: a reference for writing would be noticed.
struct Channel {
    using StreamPointer = boost::shared_ptr<const Stream>;

    Channel(const Sampler& sampler, float t) : time(t) {
        const StreamPointer input = sampler.getStreamBySemantic(Sampler::INPUT);
        const StreamPointer names = sampler.getStreamBySemantic(Sampler::INTERPOLATION);
        output = sampler.getStreamBySemantic(Sampler::OUTPUT);
        if (!input || !output || !names) return;
        if (input->params.size() != 1 || input->params[0].first != "TIME") return;
        const Floats times = input->values;
        while (end < times.size() && !(t <= times[end])) ++end;
        if (end == 0 || end == times.size()) return;
        ta = times[end - 1];
        tb = times[end];
        step = end - 1 < names->stringValues.size() &&
               lowerCase(names->stringValues[end - 1]) == "step";
        const auto lastKey = step ? end : end + 1;
        inside = true;
        readable = output->stride > 0 &&
                   lastKey * static_cast<std::size_t>(output->stride) <= output->values.size();
    }

    const float* key(std::size_t index) const {
        return output->values.data() + index * static_cast<std::size_t>(output->stride);
    }

    float value(int component) const {
        const float a = key(end - 1)[component];
        if (step) return a;
        return a + (key(end)[component] - a) * (time - ta) / (tb - ta);
    }

    StreamPointer output;
    std::size_t end = 0;
    float time;
    float ta = 0, tb = 0;
    bool step = false, inside = false, readable = false;
};

void playVector(const Channel& channel, int component, bool isScale, NaivePlayback::Pose& pose) {
    if (channel.output->stride != (component < 0 ? 3 : 1) || component == 3) return;
    Eigen::Vector3f vector = isScale ? Eigen::Vector3f(1, 1, 1) : Eigen::Vector3f(0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        if (component < 0) vector[i] = channel.value(i);
    }
    if (component >= 0) vector[component] = channel.value(0);
    if (isScale) {
        pose.scale = (pose.scale * scaledBy(vector)).eval();
    } else {
        pose.translation = (pose.translation * movedBy(vector.x(), vector.y(), vector.z())).eval();
    }
}

void playRotation(const Channel& channel, int component, TransformationRotate& element,
                  NaivePlayback::Pose& pose) {
    if (channel.output->stride != (component < 0 ? 4 : 1)) return;
    auto axis = vectorOf(element.getRotationAxis());
    float angle = element.getAngle();
    if (component < 0) {
        axis = Eigen::Vector3f(channel.value(0), channel.value(1), channel.value(2));
        angle = channel.value(3);
    } else if (component == 3) {
        angle = channel.value(0);
    } else {
        axis[component] = channel.value(0);
    }
    pose.rotation = (pose.rotation * turn(axis, angle)).eval();
}

/// Turns from one rotation to the other about the axis between them.
Eigen::Matrix3f turnedBetween(const Eigen::Matrix3f& from, const Eigen::Matrix3f& to, float f) {
    const Eigen::AngleAxisf between(Eigen::Matrix3f(from.transpose() * to));
    return from * Eigen::AngleAxisf(between.angle() * f, between.axis()).toRotationMatrix();
}

void playMatrix(const Channel& channel, NaivePlayback::Pose& pose) {
    if (channel.output->stride != 16) return;
    const Eigen::Matrix4f a = Eigen::Map<const RowMatrix>(channel.key(channel.end - 1));
    const Eigen::Vector3f aScale = a.topLeftCorner<3, 3>().colwise().norm();
    if (channel.step) {
        pose.translation = a;
        pose.scale = scaledBy(aScale);
        return;
    }
    float f = (channel.time - channel.ta) / (channel.tb - channel.ta);
    if (f > 0.99f) f = 1;
    const Eigen::Matrix4f b = Eigen::Map<const RowMatrix>(channel.key(channel.end));
    const Eigen::Vector3f bScale = b.topLeftCorner<3, 3>().colwise().norm();
    pose.scale = scaledBy(aScale + (bScale - aScale) * f);
    pose.translation.setIdentity();
    pose.translation.topLeftCorner<3, 3>() =
        turnedBetween(a.topLeftCorner<3, 3>().colwise().normalized(),
                      b.topLeftCorner<3, 3>().colwise().normalized(), f);
    pose.translation.topRightCorner<3, 1>() =
        a.topRightCorner<3, 1>() * (1 - f) + b.topRightCorner<3, 1>() * f;
}

void playElement(const Channel& channel, int component,
                 const boost::shared_ptr<ITransformation>& element, NaivePlayback::Pose& pose) {
    switch (element->getType()) {
        case ITransformation::TRANSLATE:
            return playVector(channel, component, false, pose);
        case ITransformation::SCALE:
            return playVector(channel, component, true, pose);
        case ITransformation::MATRIX:
            return playMatrix(channel, pose);
        case ITransformation::ROTATE:
            return playRotation(channel, component, dynamic_cast<TransformationRotate&>(*element),
                                pose);
        default:
            return;
    }
}

}  // namespace

void NaivePlayback::setAnimation(boost::shared_ptr<Animation> animation) {
    animation_ = animation;
    std::map<NodePointer, std::vector<std::string>> targets;
    findTargets(*animation, targets);
    bases_.clear();
    for (const auto& [node, sids] : targets) {
        bases_[node].setIdentity();
        for (const auto& element : node->getOriginalTransformations()) {
            if (std::count(sids.begin(), sids.end(), element->getSid()) > 0) continue;
            bases_[node] = (bases_[node] * matrixOf(element)).eval();
        }
    }
}

void NaivePlayback::findTargets(const Animation& animation,
                                std::map<NodePointer, std::vector<std::string>>& targets) const {
    for (const auto& [sampler, text] : animation.getChannelArray()) {
        const auto node = findNode(scene_.getRoot(), Target(text).id);
        if (node) targets[node].push_back(Target(text).sid);
    }
    for (const auto& child : animation.getChildAnimations()) findTargets(*child, targets);
}

std::map<NodePointer, Eigen::Matrix4f> NaivePlayback::localMatrices(float time) const {
    Poses poses;
    play(*animation_, time, poses);
    std::map<NodePointer, Eigen::Matrix4f> matrices;
    for (const auto& [node, pose] : poses) matrices[node] = localMatrix(node, pose);
    return matrices;
}

void NaivePlayback::play(const Animation& animation, float time, Poses& poses) const {
    for (const auto& child : animation.getChildAnimations()) play(*child, time, poses);
    for (const auto& [sampler, text] : animation.getChannelArray()) {
        const Target target(text);
        const auto node = findNode(scene_.getRoot(), target.id);
        if (!node) continue;
        auto& pose = poses[node];
        if (!sampler) continue;
        const Channel channel(*sampler, time);
        if (!channel.inside || !channel.readable) continue;
        for (const auto& element : node->getOriginalTransformations()) {
            if (element->getSid() != target.sid) continue;
            playElement(channel, target.index(), element, pose);
            break;
        }
    }
}

Eigen::Matrix4f NaivePlayback::localMatrix(const NodePointer& node, const Pose& pose) const {
    const auto base = bases_.find(node);
    Eigen::Matrix4f matrix = pose.translation * pose.rotation;
    if (base != bases_.end()) matrix = (base->second * matrix).eval();
    Eigen::Matrix4f turned = Eigen::Matrix4f::Identity();
    for (int column = 0; column < 3; ++column) {
        const Eigen::Vector3f axis = matrix.block<3, 1>(0, column);
        turned.block<3, 1>(0, column) = axis / axis.norm();
    }
    return movedBy(matrix(0, 3), matrix(1, 3), matrix(2, 3)) * turned * pose.scale;
}

}  // namespace vantorix::test
