#include "scene/animation/AnimationPlayback.h"

#include <algorithm>
#include <array>

#include "core_api/logger/Logger.h"

#include "core/utils/Fetch.h"
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

bool fitsElement(const Track& track) { return *track.stride == track.width; }

/// The floats of the earlier key; null where the output lacks the first @p keys.
const float* startOf(const Track& track, const KeyInterval& interval, std::size_t keys) {
    return keys > track.keyCount ? nullptr : track.values + (interval.endKey - 1) * track.width;
}

/// On the line to the later key: four floats, or three and anything.
Lanes wholeBetween(const Track& track, const KeyInterval& interval, const float* start) {
    const Lanes earlier = loadLanes(start);
    const float* const end = start + track.width;
    if (track.kind == Track::ROTATE) return interval.between(earlier, loadLanes(end));
    // Reads one float too many in front of the later key instead of behind it.
    return interval.between(earlier, pick<1, 2, 3, 0>(loadLanes(end - 1)));
}

/// A track at the time that is played.
struct Moment {
    const float* start() const {
        return startOf(track, interval, holds ? interval.endKey : interval.endKey + 1);
    }
    float value(const float* start) const {
        return holds ? start[0] : interval.between(start[0], start[track.width]);
    }
    Lanes whole(const float* start) const {
        if (!holds) return wholeBetween(track, interval, start);
        return track.kind == Track::ROTATE ? loadLanes(start) : loadThreeLanes(start);
    }

    const Track& track;
    const KeyInterval& interval;
    const TrackSource& source;
    bool holds;  ///< Up to the later key the earlier one's value stays.
};

/// The vector starts afresh on purpose: a component alone leaves the element's others aside.
Lanes vectorAt(const Moment& moment, const float* start) {
    if (moment.track.isWhole()) return moment.whole(start);
    Lanes vector = allLanes(moment.track.kind == Track::SCALE ? 1.0f : 0.0f);
    vector[moment.track.component] = moment.value(start);
    return vector;
}

Lanes rotationAt(const Moment& moment, const float* start) {
    if (moment.track.isWhole()) return moment.whole(start);
    const auto& element = *moment.source.rotation;
    const Eigen::Vector3f axis = toEigen(element.getRotationAxis());
    Lanes axisAndDegrees = {axis.x(), axis.y(), axis.z(), element.getAngle()};
    axisAndDegrees[moment.track.component] = moment.value(start);
    return axisAndDegrees;
}

// Takes the place of what channels before it gave, where the others multiply.
void playMatrix(const Moment& moment, Pose& pose) {
    constexpr float almostThere = 0.99f;
    const float* const floats = fitsElement(moment.track) ? moment.start() : nullptr;
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

/// Hands a translation, a scale, or an axis and degrees to the pose.
inline void give(Track::Kind kind, Lanes value, Pose& pose) {
    if (kind == Track::ROTATE) {
        pose.turn(axesTurnedAbout(value));
    } else if (kind == Track::SCALE) {
        pose.scale(value);
    } else {
        pose.move(withoutLast(value));
    }
}

/// Returns whether the output fits the element.
bool playMoment(const Moment& moment, Pose& pose) {
    const Track& track = moment.track;
    if (track.kind == Track::MATRIX) {
        playMatrix(moment, pose);
        return true;
    }
    const bool isRotation = track.kind == Track::ROTATE;
    if (!fitsElement(track) || (!isRotation && track.component == angleComponent)) return false;
    const float* const start = moment.start();
    if (!start) return true;
    give(track.kind, isRotation ? rotationAt(moment, start) : vectorAt(moment, start), pose);
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

// A batch at a time, and of this all keys, then all poses, then all nodes: the processor works
// ahead further in short loops than in a long one, where each pose would wait for its keys.
template <class Take>
void AnimationPlayback::evaluate(float time, const Take& take) {
    const auto slotCount = tracks_.nodes().slotCount();
    std::array<NodePose, 16> batch;
    misfits_.clear();
    misfits_.reserve(tracks_.tracks().size());
    samples_.resize(tracks_.mostTracksOf(batch.size()));
    for (std::size_t first = 0; first < slotCount; first += batch.size()) {
        const auto count = std::min(batch.size(), slotCount - first);
        sample(tracks_.firstTrack(first), tracks_.firstTrack(first + count));
        evaluate(first, count, time, batch.data());
        for (std::size_t i = 0; i < count; ++i) {
            if (batch[i].node) take(batch[i]);
        }
    }
}

void AnimationPlayback::sample(std::size_t first, std::size_t end) {
    const auto* const rows = tracks_.rowsOf(first, end);
    rows ? sampleRows(*rows, first, end) : sampleTracks(first, end);
}

// Of each track itself, the stride is all that is left to be looked at.
void AnimationPlayback::sampleRows(const KeyRows& rows, std::size_t first, std::size_t end) {
    constexpr std::size_t tracksAhead = 24;
    const KeyInterval interval = tracks_.interval(rows);
    const float* const start = rows.earlier(first);
    const float* const later = start + rows.rowLength();
    const Track* const tracks = tracks_.tracks().data() + first;
    const auto ahead = std::min(tracksAhead, tracks_.tracks().size() - end);
    Sample* const samples = samples_.data();
    const auto count = end - first;
    for (std::size_t i = 0; i < count; ++i) {
        __builtin_prefetch(tracks[i + ahead].stride);
        const auto place = i * KeyRows::lineWidth;
        samples[i].value = interval.between(loadLanes(start + place), loadLanes(later + place));
        samples[i].kind = tracks[i].kind;
        samples[i].isKnown = true;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (fitsElement(tracks[i])) continue;
        samples[i].kind = Track::NOTHING;
        misfits_.push_back(first + i);
    }
}

// Most of the time of a large scene goes into waiting for memory, so it is asked for early.
void AnimationPlayback::sampleTracks(std::size_t first, std::size_t end) {
    constexpr std::size_t tracksAhead = 16;
    const auto& tracks = tracks_.tracks();
    const bool fetches = areMany();
    Sample* sample = samples_.data();
    for (std::size_t i = first; i < end; ++i, ++sample) {
        if (fetches && i + tracksAhead < tracks.size()) fetch(tracks[i + tracksAhead]);
        const Track& track = tracks[i];
        sample->kind = Track::NOTHING;
        sample->isKnown = track.state == Track::LINE;
        const KeyInterval& interval = tracks_.interval(track);
        if (!sample->isKnown || interval.endKey == 0) continue;
        if (!fitsElement(track)) {
            misfits_.push_back(i);
            continue;
        }
        const float* const start = startOf(track, interval, interval.endKey + 1);
        if (!start) continue;
        sample->kind = track.kind;
        sample->value = wholeBetween(track, interval, start);
    }
}

// Few tracks and their nodes stay in the caches.
inline bool AnimationPlayback::areMany() const {
    constexpr std::size_t fewTracks = 1000;
    return tracks_.tracks().size() >= fewTracks;
}

inline void AnimationPlayback::fetch(const Track& track) const {
    if (track.state == Track::OPEN) return;
    const auto endKey = tracks_.interval(track).endKey;
    if (endKey == 0 || endKey >= track.keyCount) return;
    const std::size_t width = track.width;
    __builtin_prefetch(track.stride);
    __builtin_prefetch(track.values + (endKey - 1) * width);
    __builtin_prefetch(track.values + (endKey + 1) * width - 1);
}

// Calls nobody, so that everything stays as it is meanwhile.
void AnimationPlayback::evaluate(std::size_t slot, std::size_t count, float time, NodePose* poses) {
    constexpr std::size_t slotsAhead = 4;
    const auto& nodes = tracks_.nodes();
    const auto ahead = std::min(slotsAhead, nodes.slotCount() - slot - count);
    const bool fetches = areMany();
    const Sample* sample = samples_.data();
    auto track = tracks_.firstTrack(slot);
    for (const auto end = slot + count; slot < end; ++slot, ++poses) {
        if (fetches) fetch(nodes.node(slot + ahead));
        poses->node = nodes.node(slot);
        Pose pose;
        for (const auto next = tracks_.firstTrack(slot + 1); track < next; ++track, ++sample) {
            if (!sample->isKnown) {
                playTrack(track, time, pose);
            } else if (sample->kind != Track::NOTHING) {
                give(sample->kind, sample->value, pose);
            }
        }
        if (!poses->node) continue;
        pose.getMatrix(poses->matrix.data());
        if (bases_[slot]) poses->matrix = (*bases_[slot] * poses->matrix).eval();
        pose.getScale(poses->scale.data());
    }
}

// What a pose is written to.
inline void AnimationPlayback::fetch(const Node* node) const {
    if (node) core::utils::fetchLines<true>(&node->localMatrix_, &node->rotation_ + 1);
}

void AnimationPlayback::playTrack(std::size_t number, float time, Pose& pose) {
    Track track = tracks_.tracks()[number];
    if (track.kind == Track::NOTHING) return;
    const auto interval = track.state == Track::OPEN ? tracks_.readOpen(number, time, track)
                                                     : tracks_.interval(track);
    if (interval.endKey == 0) return;
    const bool holds = track.state == Track::SOME_HOLD && tracks_.holds(number, interval.endKey);
    if (!playMoment({track, interval, tracks_.source(number), holds}, pose)) {
        misfits_.push_back(number);
    }
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
