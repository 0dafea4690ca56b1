#include "scene/animation/AnimationPlayback.h"

#include <algorithm>

#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "scene/animation/Animation.h"
#include "scene/animation/MatrixKeys.h"
#include "scene/animation/Pose.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/AxisAngle.h"
#include "scene/transform/TransformationRotate.h"

namespace vantorix::scene {

/// A track at the time that is played.
struct AnimationPlayback::Moment {
    bool fitsElement() const { return *track.stride == track.width; }
    /// The floats of the earlier key; null where the output lacks what is needed of the interval.
    const float* start() const {
        const std::size_t width = track.width;
        const auto keys = holds ? interval.endKey : interval.endKey + 1;
        if (keys * width > track.valueCount) return nullptr;
        return track.values + (interval.endKey - 1) * width;
    }

    const Track& track;
    const KeyInterval& interval;
    std::size_t number;  ///< Of the track.
    bool holds;          ///< Up to the later key the earlier one's value stays.
};

namespace {

constexpr int angleComponent = 3;
const char* const noTarget = "[WARN] No valid target...";
// Names translation although it is said of rotations: the text is defined so.
const char* const noRotationTarget = "[WARN] Animating Translation with no valid target...";

bool isHeard(const SceneManager& scene) {
    const auto events = scene.getEventManager();
    return events && (events->isHeard(events::nodeTransformationUpdate) ||
                      events->isHeard(events::sceneUpdate));
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
    if (tracks_.nodes().belongToScene() && !isHeard(scene)) return playUnheard(time);
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

// Calls nobody, so that everything stays as it is meanwhile.
template <class Take>
void AnimationPlayback::evaluate(float time, const Take& take) {
    // Most of the time of a large scene goes into waiting for memory, so it is asked for early.
    constexpr std::size_t tracksAhead = 12;
    constexpr std::size_t nodesAhead = 3;
    const auto& nodes = tracks_.nodes();
    const auto& tracks = tracks_.tracks();
    misfits_.clear();
    misfits_.reserve(tracks.size());
    for (std::size_t slot = 0; slot < nodes.slotCount(); ++slot) {
        if (slot + nodesAhead < nodes.slotCount()) fetchNode(slot + nodesAhead);
        Pose pose;
        for (auto i = tracks_.firstTrack(slot); i < tracks_.firstTrack(slot + 1); ++i) {
            if (i + tracksAhead < tracks.size()) fetch(i + tracksAhead);
            if (tracks[i].kind != Track::NOTHING) evaluateTrack(i, time, pose);
        }
        Node* const node = nodes.node(slot);
        if (!node) continue;
        if (bases_[slot]) {
            take(*node, *bases_[slot] * pose.matrix(), pose.getScale());
        } else {
            take(*node, pose.matrix(), pose.getScale());
        }
    }
}

void AnimationPlayback::fetch(std::size_t number) const {
    const Track& track = tracks_.tracks()[number];
    if (track.isOpen) return;
    const std::size_t width = track.width;
    const std::size_t end = tracks_.interval(track).endKey * width;
    if (end == 0 || end + width > track.valueCount) return;
    __builtin_prefetch(track.stride);
    __builtin_prefetch(track.values + end - width);
    __builtin_prefetch(track.values + end + width - 1);
}

void AnimationPlayback::fetchNode(std::size_t slot) const {
    constexpr std::size_t lineSize = 64;
    const auto* const bytes = reinterpret_cast<const char*>(tracks_.nodes().node(slot));
    if (!bytes) return;
    for (std::size_t i = 0; i < sizeof(Node); i += lineSize) __builtin_prefetch(bytes + i, 1);
}

void AnimationPlayback::evaluateTrack(std::size_t number, float time, Pose& pose) {
    const Track& track = tracks_.tracks()[number];
    if (track.isOpen) {
        Track copy;
        const auto interval = tracks_.readOpen(number, time, copy);
        if (interval.endKey == 0) return;
        return playTrack({copy, interval, number, tracks_.holds(number, interval.endKey)}, pose);
    }
    const auto& interval = tracks_.interval(track);
    if (interval.endKey == 0) return;
    const bool holds = track.names == Track::SOME_HOLD && tracks_.holds(number, interval.endKey);
    playTrack({track, interval, number, holds}, pose);
}

void AnimationPlayback::playTrack(const Moment& moment, Pose& pose) {
    if (moment.track.kind == Track::MATRIX) {
        playMatrix(moment, pose);
    } else if (moment.track.kind == Track::ROTATE) {
        playRotation(moment, pose);
    } else {
        playVector(moment, pose);
    }
}

// The vector starts afresh on purpose: a component alone leaves the element's others aside.
void AnimationPlayback::playVector(const Moment& moment, Pose& pose) {
    const Track& track = moment.track;
    if (track.component == angleComponent || !moment.fitsElement()) {
        misfits_.push_back(moment.number);
        return;
    }
    const float* const start = moment.start();
    if (!start) return;
    Lanes vector = allLanes(track.kind == Track::SCALE ? 1.0f : 0.0f);
    if (track.isWhole()) {
        vector = loadThreeLanes(start);
        if (!moment.holds) vector = moment.interval.between(vector, loadThreeLanes(start + 3));
    } else {
        vector[track.component] =
            moment.holds ? start[0] : moment.interval.between(start[0], start[1]);
    }
    if (track.kind == Track::SCALE) {
        pose.scale(vector);
    } else {
        pose.move(withoutLast(vector));
    }
}

void AnimationPlayback::playRotation(const Moment& moment, Pose& pose) {
    const Track& track = moment.track;
    if (!moment.fitsElement()) {
        misfits_.push_back(moment.number);
        return;
    }
    const float* const start = moment.start();
    if (!start) return;
    Lanes axisAndDegrees;
    if (track.isWhole()) {
        axisAndDegrees = loadLanes(start);
        if (!moment.holds) {
            axisAndDegrees = moment.interval.between(axisAndDegrees, loadLanes(start + 4));
        }
    } else {
        const auto& element = *tracks_.source(moment.number).rotation;
        const Eigen::Vector3f axis = toEigen(element.getRotationAxis());
        axisAndDegrees = Lanes{axis.x(), axis.y(), axis.z(), element.getAngle()};
        axisAndDegrees[track.component] =
            moment.holds ? start[0] : moment.interval.between(start[0], start[1]);
    }
    pose.turn(axesTurnedAbout(axisAndDegrees));
}

// Takes the place of what channels before it gave, where the others multiply.
void AnimationPlayback::playMatrix(const Moment& moment, Pose& pose) {
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
    evaluate(time, [](Node& node, const Eigen::Matrix4f& matrix, const Eigen::Vector3f& scale) {
        node.poseUnheard(matrix, scale);
    });
    warnOfMisfits();
}

// Handlers may release nodes, replace the animation and update the manager again.
void AnimationPlayback::playHeard(float time) {
    std::vector<WrittenNode> written;
    written.swap(written_);
    evaluate(time, [&](Node& node, const Eigen::Matrix4f& matrix, const Eigen::Vector3f& scale) {
        written.push_back({node.shared_from_this(), matrix, scale});
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
