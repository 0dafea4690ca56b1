#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scene/animation/KeyTimes.h"
#include "scene/animation/TargetedNodes.h"

namespace vantorix::scene {

class Animation;
struct ChannelTarget;
class ITransformation;
class Sampler;
class Stream;
class TransformationRotate;

/// A channel with all that its texts lead to.
struct Track {
    enum Kind : std::int8_t { NOTHING, TRANSLATE, ROTATE, SCALE, MATRIX };

    const Stream* input;
    const Stream* output;
    const Stream* names;
    const ChannelTarget* target;
    const TransformationRotate* rotation;  ///< Only where the element gives axis or angle.
    std::uint32_t slot;
    Kind kind;
    int component;  ///< -1: the whole value.
    KeyOrder order;
};

/// The channels of an animation and its children in the order of playing, children first.
///
/// What was found is kept until an edit can have led elsewhere: a channel, child or input was
/// added, the tree or an ID changed, a node lists other elements or an element got another SID.
/// What streams and elements hold is not kept at all.
class PlaybackTracks {
public:
    /// Forgets the animation.
    void clear();
    /// Forgets the scene.
    void forgetScene() { nodes_.forgetNodes(); }

    /// Brings everything up to date; returns whether nodes may have changed.
    bool refresh(Animation& animation, SceneManager& scene);

    std::vector<Track>& tracks() { return tracks_; }
    const TargetedNodes& nodes() const { return nodes_; }

private:
    void collect(Animation& animation);
    void addTrack(const Sampler* sampler, const ChannelTarget& target);
    void bind();
    void bindTo(Track& track, ITransformation& element);

    TargetedNodes nodes_;
    std::vector<Track> tracks_;
    std::uint64_t animationCount_ = 0;
    std::uint64_t elementCount_ = 0;
    bool bindsEachTime_ = false;  ///< A foreign element may change its SID unnoticed.
};

}  // namespace vantorix::scene
