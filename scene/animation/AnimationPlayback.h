#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/animation/PlaybackTracks.h"
#include "scene/transform/Lanes.h"

namespace vantorix::core::logger {
class Logger;
}

namespace vantorix::scene {

class Animation;
class Node;
class Pose;
class SceneManager;

/// Evaluates the channels of an animation at one time and writes the nodes that they lead to.
class AnimationPlayback {
public:
    using BaseMatrices = std::map<boost::shared_ptr<Node>, Eigen::Matrix4f>;

    /// @p logger hears of channels that do not fit their element, and must stay.
    explicit AnimationPlayback(core::logger::Logger& logger) : logger_(logger) {}

    /// Forgets the animation; @p baseMatrices are those of the next one.
    void reset(BaseMatrices baseMatrices);
    void forgetScene() { tracks_.forgetScene(); }

    /// @p time in seconds. All poses are computed before anybody hears of a node, and handlers
    /// that do may do what they like, except release @p scene or this object.
    void play(Animation& animation, SceneManager& scene, float time);

private:
    struct WrittenNode {
        boost::shared_ptr<Node> node;
        Eigen::Matrix4f matrix;
        Eigen::Vector3f scale;
    };

    /// What a track gives at the time that is played.
    struct Sample {
        Lanes value;
        Track::Kind kind;  ///< NOTHING where there is no value.
        bool isKnown;      ///< Otherwise its turn comes with the pose.
    };

    /// Of one slot, as it was evaluated.
    struct NodePose {
        Node* node = nullptr;  ///< Null when there is none; then the rest means nothing.
        Eigen::Matrix4f matrix;
        Eigen::Vector4f scale;  ///< And anything.
    };

    void findBaseMatrices();
    template <class Take>
    void evaluate(float time, const Take& take);
    void evaluate(std::size_t slot, std::size_t count, float time, NodePose* poses);
    void sample(std::size_t first, std::size_t end);
    void sampleRows(const KeyRows& rows, std::size_t first, std::size_t end);
    void sampleTracks(std::size_t first, std::size_t end);
    void playTrack(std::size_t number, float time, Pose& pose);
    bool areMany() const;
    void fetch(const Track& track) const;
    void fetch(const Node* node) const;
    void warnOfMisfits();
    void playUnheard(float time);
    void playHeard(float time);

    core::logger::Logger& logger_;
    PlaybackTracks tracks_;
    BaseMatrices baseMatrices_;
    std::vector<const Eigen::Matrix4f*> bases_;  ///< One per slot of nodes; null for the identity.
    std::vector<std::size_t> misfits_;           ///< Tracks that do not fit their element.
    std::vector<Sample> samples_;                ///< Of a batch; kept for its memory.
    std::vector<WrittenNode> written_;           ///< Kept for its memory.
};

}  // namespace vantorix::scene
