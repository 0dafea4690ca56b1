#include "scene/animation/AnimationPlayback.h"

#include <algorithm>
#include <array>
#include <cstring>

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

void AnimationPlayback::Pose::clear() {
    translation.col(3) = Eigen::Vector4f::UnitW();
    scale.setOnes();
    isPlaced = false;
    isTurned = false;
}

void AnimationPlayback::Pose::move(const Eigen::Vector3f& offset) {
    if (isPlaced) {
        translation.col(3) += translation.leftCols<3>() * offset;
    } else {
        translation.topRightCorner<3, 1>() += offset;
    }
}

void AnimationPlayback::Pose::place(const Eigen::Matrix4f& placement) {
    translation = placement;
    isPlaced = true;
}

void AnimationPlayback::Pose::turn(const Eigen::Matrix3f& turned) {
    rotation = isTurned ? Eigen::Matrix3f(rotation * turned) : turned;
    isTurned = true;
}

Eigen::Matrix4f AnimationPlayback::Pose::matrix() const {
    Eigen::Matrix4f product = Eigen::Matrix4f::Identity();
    if (isPlaced) product.leftCols<3>() = translation.leftCols<3>();
    if (isTurned && isPlaced) product.leftCols<3>() *= rotation;
    if (isTurned && !isPlaced) product.topLeftCorner<3, 3>() = rotation;
    product.col(3) = translation.col(3);
    return base ? Eigen::Matrix4f(*base * product) : product;
}

namespace {

constexpr int angleComponent = 3;
const char* const noTarget = "[WARN] No valid target...";
// Names translation although it is said of rotations: the text is defined so.
const char* const noRotationTarget = "[WARN] Animating Translation with no valid target...";

/// A comparison without a call.
template <std::size_t Length>
bool isText(const std::string& text, const char* wanted) {
    return text.size() == Length && std::memcmp(text.data(), wanted, Length) == 0;
}

bool holdsKeyTimes(const Stream& input) {
    return input.params.size() == 1 && isText<4>(input.params.front().first, "TIME");
}

/// An unknown name and a missing one play linearly, as all others but "step" do.
bool holdsKey(const Stream& names, std::size_t key) {
    if (key >= names.stringValues.size()) return false;
    const auto& name = names.stringValues[key];
    return name.size() == 4 && equalsInLowerCase(name, "step");
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

// Most of the time of a large scene goes into waiting for memory, so it is asked for early: first
// the streams, then what they point to, around the key that the channels before were at.
constexpr std::size_t tracksAhead = 6;

void fetch(const void* address) { __builtin_prefetch(address); }

void fetchStreams(const Track& track) {
    fetch(&track.input->params);
    fetch(&track.input->values);
    fetch(&track.output->stride);
    fetch(&track.output->values);
    fetch(&track.names->stringValues);
}

void fetchKeys(const Track& track, std::size_t key) {
    const FloatArray& times = track.input->values;
    const FloatArray& values = track.output->values;
    const auto& names = track.names->stringValues;
    fetch(track.input->params.data());
    if (key > 0 && key < times.size()) {
        fetch(times.data() + key - 1);
        fetch(times.data() + key);
    }
    const auto stride = static_cast<std::size_t>(std::max(track.output->stride, 0));
    if ((key + 1) * stride <= values.size() && key > 0) {
        fetch(values.data() + (key - 1) * stride);
        fetch(values.data() + key * stride);
    }
    if (key > 0 && key <= names.size()) fetch(&names[key - 1]);
}

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
        if (found == baseMatrices_.end() || found->second == Eigen::Matrix4f::Identity()) continue;
        poses_[slot].base = &found->second;
    }
}

void AnimationPlayback::evaluate(float time) {
    for (auto& pose : poses_) pose.clear();
    auto& tracks = tracks_.tracks();
    std::size_t likelyKey = 0;  // Channels that were made together have keys at the same times.
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (i + 2 * tracksAhead < tracks.size()) fetchStreams(tracks[i + 2 * tracksAhead]);
        if (i + tracksAhead < tracks.size()) fetchKeys(tracks[i + tracksAhead], likelyKey);
        if (tracks[i].kind == Track::NOTHING) continue;
        likelyKey = evaluateTrack(tracks[i], time, likelyKey);
    }
}

std::size_t AnimationPlayback::evaluateTrack(Track& track, float time, std::size_t likelyKey) {
    if (!holdsKeyTimes(*track.input)) return 0;
    const FloatArray& times = track.input->values;
    const auto end = firstKeyFrom(times, track.order, time, likelyKey);
    if (end == 0 || end == times.size()) return end;
    const Interval interval{end, times[end - 1], times[end], time, holdsKey(*track.names, end - 1)};
    auto& pose = poses_[track.slot];
    if (track.kind == Track::MATRIX) {
        playMatrix(track, interval, pose);
    } else if (track.kind == Track::ROTATE) {
        playRotation(track, interval, pose);
    } else {
        playVector(track, interval, pose);
    }
    return end;
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
        pose.move(vector);
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
    pose.turn(rotationAbout(axis, value[3]));
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
        pose.place(start.isSingular ? start.placement() : start.matrix);
        pose.scale = start.scale;
        return;
    }
    const float fraction =
        (interval.time - interval.startTime) / (interval.endTime - interval.startTime);
    // The last hundredth shows the later key, on purpose.
    const auto blended =
        blend(start, MatrixKey(keys.end), fraction > almostThere ? 1.0f : fraction);
    pose.place(blended.placement());
    pose.scale = blended.scale;
}

// Nobody is called, so that the nodes stay.
void AnimationPlayback::writeUnheard() {
    for (std::size_t slot = 0; slot < poses_.size(); ++slot) {
        Node* const node = tracks_.nodes().node(slot);
        if (!node) continue;
        node->poseUnheard(poses_[slot].matrix(), poses_[slot].scale);
    }
}

// Handlers may release nodes, replace the animation and update the manager again.
void AnimationPlayback::writeHeard() {
    std::vector<WrittenNode> written;
    written.swap(written_);
    for (std::size_t slot = 0; slot < poses_.size(); ++slot) {
        Node* const node = tracks_.nodes().node(slot);
        if (!node) continue;
        written.push_back({node->shared_from_this(), poses_[slot].matrix(), poses_[slot].scale});
    }
    for (const auto& pose : written) {
        pose.node->setTransformations(pose.matrix);
        pose.node->setScale(pose.scale);
    }
    written.clear();
    written_.swap(written);
}

}  // namespace vantorix::scene
