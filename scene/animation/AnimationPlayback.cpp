#include "scene/animation/AnimationPlayback.h"

#include <array>

#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "scene/animation/Animation.h"
#include "scene/animation/ChannelTarget.h"
#include "scene/animation/KeyTimes.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/AxisAngle.h"
#include "scene/transform/TransformationRotate.h"

namespace vantorix::scene {

/// The keys around the time that is played.
struct AnimationPlayback::Interval {
    float blended(const float* start, const float* end, std::size_t component) const {
        if (holds) return start[component];
        return interpolateKeys(start[component], end[component], startTime, endTime, time);
    }

    std::size_t endKey;  ///< Index of the later key; at least 1.
    float startTime;
    float endTime;
    float time;
    bool holds;  ///< Up to the later key the earlier one's value stays.
};

namespace {

constexpr int angleComponent = 3;
const char* const noTarget = "[WARN] No valid target...";
// Names translation although it is said of rotations: the text is defined so.
const char* const noRotationTarget = "[WARN] Animating Translation with no valid target...";

bool holdsKeyTimes(const Stream& input) {
    return input.params.size() == 1 && input.params.front().first == "TIME";
}

/// An unknown name and a missing one play linearly, as all others but "step" do.
bool holdsKey(const Stream& names, std::size_t key) {
    return key < names.stringValues.size() && equalsInLowerCase(names.stringValues[key], "step");
}

/// The floats of both keys of an interval; null where the stream does not have them.
struct KeyValues {
    KeyValues(const FloatArray& values, std::size_t stride, std::size_t endKey, bool needsEnd) {
        if (values.size() / stride < (needsEnd ? endKey + 1 : endKey)) return;
        start = values.data() + (endKey - 1) * stride;
        end = start + stride;
    }

    const float* start = nullptr;
    const float* end = nullptr;
};

bool isHeard(const SceneManager& scene) {
    const auto events = scene.getEventManager();
    return events && (events->isHeard(events::nodeTransformationUpdate) ||
                      events->isHeard(events::sceneUpdate));
}

}  // namespace

void AnimationPlayback::reset(BaseMatrices baseMatrices) {
    tracks_.clear();
    poses_.clear();
    baseMatrices_ = std::move(baseMatrices);
}

void AnimationPlayback::play(Animation& animation, SceneManager& scene, float time) {
    if (tracks_.refresh(animation, scene)) findBaseMatrices();
    evaluate(time);
    if (tracks_.nodes().belongToScene() && !isHeard(scene)) return writeUnheard();
    writeHeard();
}

void AnimationPlayback::findBaseMatrices() {
    const auto& nodes = tracks_.nodes();
    poses_.assign(nodes.slotCount(), Pose());
    for (std::size_t slot = 0; slot < poses_.size(); ++slot) {
        if (!nodes.node(slot)) continue;
        const auto found = baseMatrices_.find(nodes.node(slot)->shared_from_this());
        if (found != baseMatrices_.end()) poses_[slot].base = &found->second;
    }
}

void AnimationPlayback::evaluate(float time) {
    for (auto& pose : poses_) {
        pose.translation.setIdentity();
        pose.rotation.setIdentity();
        pose.scale.setOnes();
    }
    for (const auto& track : tracks_.tracks()) {
        if (track.kind != Track::NOTHING) evaluateTrack(track, time);
    }
}

void AnimationPlayback::evaluateTrack(const Track& track, float time) {
    if (!holdsKeyTimes(*track.input)) return;
    const FloatArray& times = track.input->values;
    const auto end = firstKeyFrom(times.data(), times.size(), time);
    if (end == 0 || end == times.size()) return;
    const Interval interval{end, times[end - 1], times[end], time, holdsKey(*track.names, end - 1)};
    auto& pose = poses_[track.slot];
    if (track.kind == Track::MATRIX) return playMatrix(track, interval, pose);
    if (track.kind == Track::ROTATE) return playRotation(track, interval, pose);
    playVector(track, interval, pose);
}

// The vector starts afresh on purpose: a component alone leaves the element's others aside.
void AnimationPlayback::playVector(const Track& track, const Interval& interval, Pose& pose) {
    const bool isWhole = track.component < 0;
    if (track.component == angleComponent || track.output->stride != (isWhole ? 3 : 1)) {
        logger_ << noTarget;
        return;
    }
    const KeyValues keys(track.output->values, isWhole ? 3 : 1, interval.endKey, !interval.holds);
    if (!keys.start) return;
    Eigen::Vector3f vector = Eigen::Vector3f::Constant(track.kind == Track::SCALE ? 1.0f : 0.0f);
    if (isWhole) {
        for (std::size_t i = 0; i < 3; ++i) {
            vector[static_cast<Eigen::Index>(i)] = interval.blended(keys.start, keys.end, i);
        }
    } else {
        vector[track.component] = interval.blended(keys.start, keys.end, 0);
    }
    if (track.kind == Track::SCALE) {
        pose.scale = pose.scale.cwiseProduct(vector);
    } else {
        pose.translation.col(3) += pose.translation.leftCols<3>() * vector;
    }
}

void AnimationPlayback::playRotation(const Track& track, const Interval& interval, Pose& pose) {
    const bool isWhole = track.component < 0;
    if (track.output->stride != (isWhole ? 4 : 1)) {
        logger_ << noRotationTarget;
        return;
    }
    const KeyValues keys(track.output->values, isWhole ? 4 : 1, interval.endKey, !interval.holds);
    if (!keys.start) return;
    std::array<float, 4> value{};  // Axis and degrees.
    if (isWhole) {
        for (std::size_t i = 0; i < 4; ++i) value[i] = interval.blended(keys.start, keys.end, i);
    } else {
        const Eigen::Vector3f axis = toEigen(track.rotation->getRotationAxis());
        value = {axis.x(), axis.y(), axis.z(), track.rotation->getAngle()};
        value[static_cast<std::size_t>(track.component)] =
            interval.blended(keys.start, keys.end, 0);
    }
    const Eigen::Vector3f axis(value[0], value[1], value[2]);
    pose.rotation = (pose.rotation * rotationAbout(axis, value[3])).eval();
}

// Takes the place of what channels before it gave, where the others multiply.
void AnimationPlayback::playMatrix(const Track& track, const Interval& interval, Pose& pose) {
    constexpr std::size_t size = 16;
    constexpr float almostThere = 0.99f;
    if (track.output->stride != static_cast<int>(size)) return;
    const KeyValues keys(track.output->values, size, interval.endKey, !interval.holds);
    if (!keys.start) return;
    const MatrixKey start(keys.start);
    if (interval.holds) {
        pose.translation = start.isSingular ? start.placement() : start.matrix;
        pose.scale = start.scale;
        return;
    }
    const float fraction =
        (interval.time - interval.startTime) / (interval.endTime - interval.startTime);
    // The last hundredth shows the later key, on purpose.
    const auto blended =
        blend(start, MatrixKey(keys.end), fraction > almostThere ? 1.0f : fraction);
    pose.translation = blended.placement();
    pose.scale = blended.scale;
}

Eigen::Matrix4f AnimationPlayback::matrixOf(const Pose& pose) {
    Eigen::Matrix4f matrix;
    matrix.leftCols<3>() = pose.translation.leftCols<3>() * pose.rotation;
    matrix.col(3) = pose.translation.col(3);
    return pose.base ? Eigen::Matrix4f(*pose.base * matrix) : matrix;
}

// Nobody is called, so that the nodes stay.
void AnimationPlayback::writeUnheard() {
    for (std::size_t slot = 0; slot < poses_.size(); ++slot) {
        Node* const node = tracks_.nodes().node(slot);
        if (!node) continue;
        node->setTransformations(matrixOf(poses_[slot]));
        node->setScale(poses_[slot].scale);
    }
}

// Handlers may release nodes, replace the animation and update the manager again.
void AnimationPlayback::writeHeard() {
    std::vector<WrittenNode> written;
    written.swap(written_);
    for (std::size_t slot = 0; slot < poses_.size(); ++slot) {
        Node* const node = tracks_.nodes().node(slot);
        if (!node) continue;
        written.push_back({node->shared_from_this(), matrixOf(poses_[slot]), poses_[slot].scale});
    }
    for (const auto& pose : written) {
        pose.node->setTransformations(pose.matrix);
        pose.node->setScale(pose.scale);
    }
    written.clear();
    written_.swap(written);
}

}  // namespace vantorix::scene
