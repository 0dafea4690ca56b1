#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scene/animation/KeyRows.h"
#include "scene/animation/KeyTables.h"
#include "scene/animation/TargetedNodes.h"

namespace vantorix::scene {

class Animation;
struct ChannelTarget;
class ITransformation;
class Sampler;
class Stream;
class TransformationRotate;

/// What playing a channel looks at as long as nobody edits its streams: half a cache line, the
/// stride of the output and the floats of two keys.
struct Track {
    enum Kind : std::int8_t { NOTHING, TRANSLATE, ROTATE, SCALE, MATRIX };
    enum State : std::int8_t {
        OPEN,       ///< Somebody may be writing to a stream: values, keys and times are not valid.
        SOME_HOLD,  ///< By their interpolation names.
        NONE_HOLDS,
        LINE,  ///< That, and it gives whole vectors or rotations.
    };

    bool isWhole() const { return component < 0; }

    const float* values;     ///< Of the first key.
    const int* stride;       ///< Of the output: a plain number that anybody may write.
    std::uint32_t keyCount;  ///< That the values are enough for; beyond the highest number of
                             ///< floats they do not count.
    std::uint32_t table;     ///< Of the key times.
    Kind kind;
    std::int8_t component;  ///< -1: the whole value.
    std::uint8_t width;     ///< Floats per key, which the stride has to be.
    State state;
};

/// All that the texts of a channel lead to.
struct TrackSource {
    const Stream* input = nullptr;
    const Stream* output = nullptr;
    const Stream* names = nullptr;
    const ChannelTarget* target = nullptr;
    const TransformationRotate* rotation = nullptr;  ///< Where the element gives axis or angle.
    std::uint32_t slot = 0;
    std::uint32_t number = 0;  ///< Counts from the first channel that is played.
    KeyOrder order;            ///< Of an open track.
    bool someHold = false;     ///< Of the interpolation names.
    /// @name What the track knows of the streams; 0 for nothing.
    /// @{
    std::uint64_t inputRevision = 0;
    std::uint64_t outputRevision = 0;
    std::uint64_t namesRevision = 0;
    /// @}
};

/// The channels of an animation and its children, children first, those of one node together.
///
/// What was found is kept until an edit can have led elsewhere: a channel, child or input was
/// added, the tree or an ID changed, a node lists other elements or an element got another SID.
/// What streams hold is kept until one of them changes, what elements hold not at all. Where many
/// channels share their key times and were played for some time without such an edit, their values
/// are read from rows.
class PlaybackTracks {
public:
    /// Forgets the animation.
    void clear();
    /// Forgets the scene.
    void forgetScene() { nodes_.forgetNodes(); }

    /// Brings everything up to date; returns whether nodes may have changed.
    bool refresh(Animation& animation, SceneManager& scene);
    /// Finds the keys around @p time.
    void seek(float time);

    const std::vector<Track>& tracks() const { return tracks_; }
    const TrackSource& source(std::size_t track) const { return sources_[track]; }
    /// The tracks of node slot s are those from firstTrack(s) to before firstTrack(s + 1).
    std::size_t firstTrack(std::size_t slot) const { return firstTracks_[slot]; }
    /// How many tracks @p slotCount slots have, beginning at a multiple of that, at most.
    std::size_t mostTracksOf(std::size_t slotCount) const;
    const TargetedNodes& nodes() const { return nodes_; }

    /// The keys of a track that is not open, as of the last seek.
    const KeyInterval& interval(const Track& track) const { return tables_.interval(track.table); }
    /// The rows that hold all these tracks at that time; null if there are none.
    const KeyRows* rowsOf(std::size_t first, std::size_t end) const;
    const KeyInterval& interval(const KeyRows& rows) const {
        return tables_.interval(rows.table());
    }
    /// Reads an open track as it is now.
    KeyInterval readOpen(std::size_t track, float time, Track& copy);
    /// Whether the earlier key of an interval keeps its value.
    bool holds(std::size_t track, std::size_t endKey) const;

private:
    void collect(Animation& animation);
    void addTrack(const Sampler* sampler, const ChannelTarget& target);
    void groupBySlot();
    void bind();
    void bindTo(std::size_t track, ITransformation& element);
    void readStreams();
    void readOpenStreams();
    void read(std::size_t track);
    void countKeys(std::size_t track);
    void classify(std::size_t track);
    void tryToMakeRows();
    void makeRows();
    std::size_t endOfLines(std::size_t first) const;
    void forgetRows();

    TargetedNodes nodes_;
    std::vector<Track> tracks_;
    std::vector<TrackSource> sources_;  ///< One per track.
    std::vector<std::size_t> firstTracks_;
    std::vector<std::size_t> openTracks_;
    KeyTables tables_;
    std::vector<KeyRows> rows_;   ///< Copies of what streams hold, empty once one may have changed.
    std::size_t quietPlays_ = 0;  ///< Since anything that the rows rest on may have changed.
    std::uint64_t animationCount_ = 0;
    std::uint64_t elementCount_ = 0;
    std::uint64_t streamCount_ = 0;
    bool bindsEachTime_ = false;  ///< A foreign element may change its SID unnoticed.
};

}  // namespace vantorix::scene
