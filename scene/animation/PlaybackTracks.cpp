#include "scene/animation/PlaybackTracks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <typeinfo>

#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationEdits.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/ChannelTarget.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/WatchedEdits.h"
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

std::uint8_t widthOf(const Track& track) {
    if (track.kind == Track::MATRIX) return 16;
    if (!track.isWhole()) return 1;
    return track.kind == Track::ROTATE ? 4 : 3;
}

/// A comparison without a call.
bool isTime(const std::string& text) {
    return text.size() == 4 && std::memcmp(text.data(), "TIME", 4) == 0;
}

bool holdsKeyTimes(const Stream& input) {
    return input.params.size() == 1 && isTime(input.params.front().first);
}

/// An unknown name and a missing one play linearly, as all others but "step" do.
bool isHold(const std::string& name) { return name.size() == 4 && equalsInLowerCase(name, "step"); }

std::uint32_t keyCountOf(const Stream& output, std::uint8_t width) {
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(output.values.size(), most)) / width;
}

void fetchStreams(const TrackSource& source) {
    __builtin_prefetch(&source.input->params);
    __builtin_prefetch(&source.input->values);
    __builtin_prefetch(&source.output->values);
    __builtin_prefetch(&source.names->stringValues);
}

}  // namespace

void PlaybackTracks::clear() {
    nodes_.clear();
    tracks_.clear();
    sources_.clear();
    firstTracks_.clear();
    openTracks_.clear();
    rows_.clear();
    tables_.clear();
    animationCount_ = 0;
}

bool PlaybackTracks::refresh(Animation& animation, SceneManager& scene) {
    const bool isCollected = animationCount_ == animationEdits.count();
    if (!isCollected) {
        clear();
        const auto count = animationEdits.count();
        collect(animation);
        animationCount_ = count;
    }
    const bool isFound = nodes_.refresh(scene);
    if (isFound || !isCollected || bindsEachTime_ || elementCount_ != elementEdits.count()) {
        elementCount_ = 0;
        const auto count = elementEdits.count();
        bind();
        elementCount_ = count;
    }
    if (!isCollected || streamCount_ != watchedEdits.count()) {
        streamCount_ = 0;
        const auto count = watchedEdits.count();
        readStreams();
        streamCount_ = count;
    } else if (!openTracks_.empty()) {
        readOpenStreams();
    }
    return isFound;
}

void PlaybackTracks::collect(Animation& animation) {
    AnimationWalk walk(animation, AnimationWalk::CHILDREN_FIRST, AnimationWalk::VISIT_REPEATS);
    while (const auto* const current = walk.next()) {
        for (const auto& channel : current->channels_) {
            addTrack(channel.sampler.get(), channel.target);
        }
    }
    groupBySlot();
}

// A node is written for any channel that names it, also for one that cannot be played.
void PlaybackTracks::addTrack(const Sampler* sampler, const ChannelTarget& target) {
    const auto slot = static_cast<std::uint32_t>(nodes_.addSlot(target.nodeID));
    if (!sampler) return;
    const auto input = sampler->getStreamBySemantic(Sampler::INPUT);
    const auto output = sampler->getStreamBySemantic(Sampler::OUTPUT);
    const auto names = sampler->getStreamBySemantic(Sampler::INTERPOLATION);
    if (!input || !output || !names) return;
    const auto number = static_cast<std::uint32_t>(sources_.size());
    sources_.push_back(TrackSource{input.get(), output.get(), names.get(), &target, nullptr, slot,
                                   number, KeyOrder()});
}

void PlaybackTracks::groupBySlot() {
    std::stable_sort(sources_.begin(), sources_.end(),
                     [](const auto& left, const auto& right) { return left.slot < right.slot; });
    firstTracks_.assign(nodes_.slotCount() + 1, sources_.size());
    for (std::size_t i = sources_.size(); i-- > 0;) {
        firstTracks_[sources_[i].slot] = i;
    }
    for (std::size_t slot = nodes_.slotCount(); slot-- > 0;) {
        firstTracks_[slot] = std::min(firstTracks_[slot], firstTracks_[slot + 1]);
    }
    for (const auto& source : sources_) {
        tracks_.push_back(Track{nullptr, &source.output->stride, 0, KeyTables::none, Track::NOTHING,
                                static_cast<std::int8_t>(source.target->componentIndex), 0,
                                Track::OPEN});
    }
    openTracks_.reserve(tracks_.size());
}

std::size_t PlaybackTracks::mostTracksOf(std::size_t slotCount) const {
    std::size_t most = 0;
    for (std::size_t slot = 0; slot < nodes_.slotCount(); slot += slotCount) {
        const auto end = std::min(slot + slotCount, nodes_.slotCount());
        most = std::max(most, firstTracks_[end] - firstTracks_[slot]);
    }
    return most;
}

void PlaybackTracks::bind() {
    forgetRows();
    bindsEachTime_ = false;
    const Node* listed = nullptr;
    std::vector<boost::shared_ptr<ITransformation>> elements;
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
        tracks_[i].kind = Track::NOTHING;
        const Node* const node = nodes_.node(sources_[i].slot);
        if (!node) continue;
        if (node != listed) elements = node->getOriginalTransformations();
        listed = node;
        for (const auto& element : elements) {
            if (!element) continue;
            bindsEachTime_ = bindsEachTime_ || !isCounted(*element);
            if (element->getSid() != sources_[i].target->sid) continue;
            bindTo(i, *element);
            break;
        }
    }
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
        if (tracks_[i].state != Track::OPEN) classify(i);
    }
}

void PlaybackTracks::bindTo(std::size_t track, ITransformation& element) {
    auto& bound = tracks_[track];
    auto& rotation = sources_[track].rotation;
    bound.kind = kindOf(element);
    bound.width = widthOf(bound);
    countKeys(track);
    if (bound.kind != Track::ROTATE) return;
    rotation = dynamic_cast<const TransformationRotate*>(&element);
    if (!rotation && !bound.isWhole()) bound.kind = Track::NOTHING;
}

void PlaybackTracks::readStreams() {
    constexpr std::size_t tracksAhead = 8;
    forgetRows();
    openTracks_.clear();
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
        if (i + tracksAhead < tracks_.size()) fetchStreams(sources_[i + tracksAhead]);
        read(i);
        if (tracks_[i].state == Track::OPEN) openTracks_.push_back(i);
    }
}

void PlaybackTracks::readOpenStreams() {
    const auto isClosed = [this](std::size_t i) {
        read(i);
        return tracks_[i].state != Track::OPEN;
    };
    const auto stillOpen = std::remove_if(openTracks_.begin(), openTracks_.end(), isClosed);
    if (stillOpen == openTracks_.end()) return;
    openTracks_.erase(stillOpen, openTracks_.end());
    forgetRows();
}

// Streams are watched from here on, so that none of them need be looked at again until one of all
// that are watched has changed. Revisions only grow, and so does their sum.
void PlaybackTracks::read(std::size_t number) {
    auto& track = tracks_[number];
    auto& source = sources_[number];
    const auto parameters = source.input->params.watch();
    const auto times = source.input->values.watch();
    const auto values = source.output->values.watch();
    const auto names = source.names->stringValues.watch();
    if (parameters == 0 || times == 0 || values == 0 || names == 0) {
        track.state = Track::OPEN;
        return;
    }
    if (source.inputRevision != parameters + times) {
        const auto table =
            holdsKeyTimes(*source.input) ? tables_.take(source.input->values) : KeyTables::none;
        tables_.release(track.table);
        track.table = table;
        source.inputRevision = parameters + times;
    }
    if (source.outputRevision != values) {
        track.values = source.output->values.data();
        countKeys(number);
        source.outputRevision = values;
    }
    if (source.namesRevision != names) {
        const auto& all = source.names->stringValues;
        source.someHold = std::any_of(all.begin(), all.end(), isHold);
        source.namesRevision = names;
    }
    classify(number);
}

// Of a track that is not open.
void PlaybackTracks::classify(std::size_t number) {
    auto& track = tracks_[number];
    const bool isVector = track.kind != Track::NOTHING && track.kind != Track::MATRIX;
    track.state = sources_[number].someHold     ? Track::SOME_HOLD
                  : isVector && track.isWhole() ? Track::LINE
                                                : Track::NONE_HOLDS;
}

// A track that leads to no element yet has no width.
void PlaybackTracks::countKeys(std::size_t number) {
    auto& track = tracks_[number];
    track.keyCount = track.width > 0 ? keyCountOf(*sources_[number].output, track.width) : 0;
}

// Rows are worth their while where nobody edits what is played.
void PlaybackTracks::seek(float time) {
    constexpr std::size_t playsBeforeRows = 3;
    tables_.seek(time);
    if (++quietPlays_ == playsBeforeRows) tryToMakeRows();
    for (auto& rows : rows_) rows.seek(tables_.interval(rows.table()), tracks_);
}

void PlaybackTracks::tryToMakeRows() {
    try {
        makeRows();
    } catch (const std::bad_alloc&) {
        // They only spare time.
    }
}

// What all of them take together is limited.
void PlaybackTracks::makeRows() {
    constexpr std::size_t fewTracks = 16;
    constexpr std::size_t mostFloats = std::size_t{1} << 26;
    std::vector<KeyRows> all;
    std::size_t floats = 0;
    for (std::size_t first = 0; first < tracks_.size();) {
        const auto end = endOfLines(first);
        if (end >= first + fewTracks) {
            const auto table = tracks_[first].table;
            all.emplace_back(first, end, table);
            floats += all.back().rowLength() * tables_.keyCount(table);
            if (floats > mostFloats || !all.back().makeRoom(tables_.keyCount(table))) return;
        }
        first = std::max(end, first + 1);
    }
    rows_.swap(all);
}

// Up to where all tracks from the first are lines with every key of the same table.
std::size_t PlaybackTracks::endOfLines(std::size_t first) const {
    const auto table = tracks_[first].table;
    const auto isOther = [&](const Track& track) {
        return track.state != Track::LINE || track.table != table ||
               track.keyCount < tables_.keyCount(table);
    };
    const auto start = tracks_.begin() + static_cast<std::ptrdiff_t>(first);
    return static_cast<std::size_t>(std::find_if(start, tracks_.end(), isOther) - tracks_.begin());
}

const KeyRows* PlaybackTracks::rowsOf(std::size_t first, std::size_t end) const {
    const auto endBefore = [first](const KeyRows& rows) { return rows.end() <= first; };
    const auto rows = std::partition_point(rows_.begin(), rows_.end(), endBefore);
    const bool hasAll = rows != rows_.end() && rows->first() <= first && end <= rows->end();
    return hasAll && rows->isReady() ? &*rows : nullptr;
}

void PlaybackTracks::forgetRows() {
    rows_.clear();
    quietPlays_ = 0;
}

KeyInterval PlaybackTracks::readOpen(std::size_t track, float time, Track& copy) {
    auto& source = sources_[track];
    if (!holdsKeyTimes(*source.input)) return {};
    copy.values = source.output->values.data();
    copy.keyCount = keyCountOf(*source.output, copy.width);
    copy.state = Track::SOME_HOLD;
    const FloatArray& times = source.input->values;
    const auto end = source.order.isAscending(times)
                         ? firstAscendingKeyFrom(times.data(), times.size(), time, 0)
                         : firstKeyFrom(times.data(), times.size(), time);
    return {times.data(), times.size(), end, time};
}

bool PlaybackTracks::holds(std::size_t track, std::size_t endKey) const {
    const auto& names = sources_[track].names->stringValues;
    return endKey <= names.size() && isHold(names[endKey - 1]);
}

}  // namespace vantorix::scene
