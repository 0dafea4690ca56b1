#include "scene/animation/AnimationPlayback.h"

#include <algorithm>
#include <array>

#include "core_api/logger/Logger.h"

#include "scene/animation/Animation.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/animation/Pose.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/graph/SceneSending.h"
#include "scene/transform/AxisAngle.h"
#include "scene/transform/TransformationRotate.h"

namespace vantorix::scene {
namespace {

constexpr int angleComponent = 3;
const char* const noTarget = "[WARN] No valid target...";
// Names translation although it is said of rotations: the text is defined so.
const char* const noRotationTarget = "[WARN] Animating Translation with no valid target...";

/// A track at the time that is played.
struct Moment {
    bool fitsElement() const { return *track.stride == track.width; }
    /// The floats of the earlier key; null where the output lacks what is needed of the interval.
    const float* start() const {
        const std::size_t width = track.width;
        const auto keys = holds ? interval.endKey : interval.endKey + 1;
        if (keys * width > track.valueCount) return nullptr;
        return track.values + (interval.endKey - 1) * width;
    }
    float value(const float* start) const {
        return holds ? start[0] : interval.between(start[0], start[1]);
    }

    const Track& track;
    const KeyInterval& interval;
    const TrackSource& source;
    bool holds;  ///< Up to the later key the earlier one's value stays.
};

/// Three floats and anything.
Lanes vectorAt(const Moment& moment, const float* start) {
    if (moment.holds) return loadThreeLanes(start);
    // Reads one float too many in front of the later key instead of behind it.
    return moment.interval.between(loadLanes(start), pick<1, 2, 3, 0>(loadLanes(start + 2)));
}

// The vector starts afresh on purpose: a component alone leaves the element's others aside.
bool playVector(const Moment& moment, Pose& pose) {
    const Track& track = moment.track;
    if (track.component == angleComponent || !moment.fitsElement()) return false;
    const float* const start = moment.start();
    if (!start) return true;
    Lanes vector = allLanes(track.kind == Track::SCALE ? 1.0f : 0.0f);
    if (track.isWhole()) {
        vector = vectorAt(moment, start);
    } else {
        vector[track.component] = moment.value(start);
    }
    if (track.kind == Track::SCALE) {
        pose.scale(vector);
    } else {
        pose.move(withoutLast(vector));
    }
    return true;
}

bool playRotation(const Moment& moment, Pose& pose) {
    if (!moment.fitsElement()) return false;
    const float* const start = moment.start();
    if (!start) return true;
    Lanes axisAndDegrees;
    if (moment.track.isWhole()) {
        axisAndDegrees = loadLanes(start);
        if (!moment.holds) {
            axisAndDegrees = moment.interval.between(axisAndDegrees, loadLanes(start + 4));
        }
    } else {
        const auto& element = *moment.source.rotation;
        const Eigen::Vector3f axis = toEigen(element.getRotationAxis());
        axisAndDegrees = Lanes{axis.x(), axis.y(), axis.z(), element.getAngle()};
        axisAndDegrees[moment.track.component] = moment.value(start);
    }
    pose.turn(axesTurnedAbout(axisAndDegrees));
    return true;
}

// Takes the place of what channels before it gave, where the others multiply.
void playMatrix(const Moment& moment, Pose& pose) {
    constexpr float almostThere = 0.99f;
    const float* const floats = moment.fitsElement() ? moment.start() : nullptr;
    if (!floats) return;
    const MatrixKey start(floats);
    if (moment.holds) {
        pose.place(start.isSingular ? start.placement() : start.matrix);
        pose.setScale(start.scale);
        return;
    }
    const float fraction = moment.interval.elapsed / moment.interval.length;
    // The last hundredth shows the later key, on purpose.
    const auto blended = blend(start, MatrixKey(floats + moment.track.width),
                               fraction > almostThere ? 1.0f : fraction);
    pose.place(blended.placement());
    pose.setScale(blended.scale);
}

/// Returns whether the output fits the element.
bool playMoment(const Moment& moment, Pose& pose) {
    if (moment.track.kind == Track::ROTATE) return playRotation(moment, pose);
    if (moment.track.kind != Track::MATRIX) return playVector(moment, pose);
    playMatrix(moment, pose);
    return true;
}

bool areMovesHeard(const SceneManager& scene) {
    const auto events = scene.getEventManager();
    return events && hearsMoves(*events);
}

}  // namespace

void AnimationPlayback::reset(BaseMatrices baseMatrices) {
    tracks_.clear();
    bases_.clear();
    baseMatrices_ = std::move(baseMatrices);
}

void AnimationPlayback::play(Animation& animation, SceneManager& scene, float time) {
    if (tracks_.refresh(animation, scene)) findBaseMatrices();
    tracks_.seek(time);
    if (tracks_.nodes().belongToScene() && !areMovesHeard(scene)) return playUnheard(time);
    playHeard(time);
}

void AnimationPlayback::findBaseMatrices() {
    const auto& nodes = tracks_.nodes();
    bases_.assign(nodes.slotCount(), nullptr);
    for (std::size_t slot = 0; slot < bases_.size(); ++slot) {
        if (!nodes.node(slot)) continue;
        const auto found = baseMatrices_.find(nodes.node(slot)->shared_from_this());
        if (found == baseMatrices_.end() || found->second == Eigen::Matrix4f::Identity()) continue;
        bases_[slot] = &found->second;
    }
}

// A batch at a time: the processor works ahead further in two short loops than in a long one.
template <class Take>
void AnimationPlayback::evaluate(float time, const Take& take) {
    const auto slotCount = tracks_.nodes().slotCount();
    std::array<NodePose, 16> batch;
    misfits_.clear();
    misfits_.reserve(tracks_.tracks().size());
    for (std::size_t first = 0; first < slotCount; first += batch.size()) {
        const auto count = std::min(batch.size(), slotCount - first);
        evaluate(first, count, time, batch.data());
        for (std::size_t i = 0; i < count; ++i) {
            if (batch[i].node) take(batch[i]);
        }
    }
}

// Calls nobody, so that everything stays as it is meanwhile.
void AnimationPlayback::evaluate(std::size_t slot, std::size_t count, float time, NodePose* poses) {
    constexpr std::size_t slotsAhead = 4;
    const auto& nodes = tracks_.nodes();
    for (const auto end = slot + count; slot < end; ++slot, ++poses) {
        if (slot + slotsAhead < nodes.slotCount()) fetch(slot + slotsAhead);
        poses->node = nodes.node(slot);
        if (!poses->node) continue;
        Pose pose;
        for (auto i = tracks_.firstTrack(slot); i < tracks_.firstTrack(slot + 1); ++i) {
            evaluateTrack(i, time, pose);
        }
        pose.getMatrix(poses->matrix.data());
        if (bases_[slot]) poses->matrix = (*bases_[slot] * poses->matrix).eval();
        pose.getScale(poses->scale.data());
    }
}

// Most of the time of a large scene goes into waiting for memory, so it is asked for early.
void AnimationPlayback::fetch(std::size_t slot) const {
    constexpr std::size_t fewTracks = 1000;
    constexpr std::size_t lineSize = 64;
    if (tracks_.tracks().size() < fewTracks) return;
    for (auto i = tracks_.firstTrack(slot); i < tracks_.firstTrack(slot + 1); ++i) fetchTrack(i);
    const auto* const node = reinterpret_cast<const char*>(tracks_.nodes().node(slot));
    if (!node) return;
    for (std::size_t i = 0; i < sizeof(Node); i += lineSize) __builtin_prefetch(node + i, 1);
}

inline void AnimationPlayback::fetchTrack(std::size_t number) const {
    const Track& track = tracks_.tracks()[number];
    if (track.isOpen) return;
    const std::size_t width = track.width;
    const std::size_t end = tracks_.interval(track).endKey * width;
    if (end == 0 || end + width > track.valueCount) return;
    __builtin_prefetch(track.stride);
    __builtin_prefetch(track.values + end - width);
    __builtin_prefetch(track.values + end + width - 1);
}

inline void AnimationPlayback::evaluateTrack(std::size_t number, float time, Pose& pose) {
    const Track& track = tracks_.tracks()[number];
    if (track.kind == Track::NOTHING) return;
    if (!track.isOpen) return playTrack(number, track, tracks_.interval(track), pose);
    Track copy = track;
    const auto interval = tracks_.readOpen(number, time, copy);
    playTrack(number, copy, interval, pose);
}

inline void AnimationPlayback::playTrack(std::size_t number, const Track& track,
                                         const KeyInterval& interval, Pose& pose) {
    if (interval.endKey == 0) return;
    const bool holds = track.names == Track::SOME_HOLD && tracks_.holds(number, interval.endKey);
    const Moment moment{track, interval, tracks_.source(number), holds};
    if (!playMoment(moment, pose)) misfits_.push_back(number);
}

// In the order of the channels, whichever node they belong to.
void AnimationPlayback::warnOfMisfits() {
    if (misfits_.empty()) return;
    std::sort(misfits_.begin(), misfits_.end(), [this](std::size_t left, std::size_t right) {
        return tracks_.source(left).number < tracks_.source(right).number;
    });
    std::vector<const char*> warnings;  // Whoever reads them may play again.
    for (const auto track : misfits_) {
        const bool isRotation = tracks_.tracks()[track].kind == Track::ROTATE;
        warnings.push_back(isRotation ? noRotationTarget : noTarget);
    }
    for (const auto* const warning : warnings) logger_ << warning;
}

// Nobody is called, so that the nodes stay.
void AnimationPlayback::playUnheard(float time) {
    evaluate(time, [](const NodePose& pose) { pose.node->poseUnheard(pose.matrix, pose.scale); });
    warnOfMisfits();
}

// Handlers may release nodes, replace the animation and update the manager again.
void AnimationPlayback::playHeard(float time) {
    std::vector<WrittenNode> written;
    written.swap(written_);
    evaluate(time, [&](const NodePose& pose) {
        written.push_back({pose.node->shared_from_this(), pose.matrix, pose.scale.head<3>()});
    });
    warnOfMisfits();
    for (const auto& pose : written) {
        pose.node->setTransformations(pose.matrix);
        pose.node->setScale(pose.scale);
    }
    written.clear();
    written_.swap(written);
}

}  // namespace vantorix::scene
