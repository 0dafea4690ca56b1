#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/animation/PlaybackTracks.h"

namespace vantorix::core::logger {
class Logger;
}

namespace vantorix::scene {

class Animation;
class Node;
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

    /// @p time in seconds. All poses are computed before the first node is written, and handlers
    /// that hear of a node may do what they like, except release @p scene or this object.
    void play(Animation& animation, SceneManager& scene, float time);

private:
    /// What the channels of one node give together. The translation is a whole matrix, since it
    /// also takes what a matrix channel gives; until one does, only its last column counts.
    struct Pose {
        void clear();
        void move(const Eigen::Vector3f& offset);
        void place(const Eigen::Matrix4f& placement);
        void turn(const Eigen::Matrix3f& turned);
        Eigen::Matrix4f matrix() const;

        const Eigen::Matrix4f* base = nullptr;  ///< Null for the identity.
        Eigen::Matrix4f translation;
        Eigen::Matrix3f rotation;  ///< Counts once isTurned.
        Eigen::Vector3f scale;
        bool isPlaced = false;
        bool isTurned = false;
    };
    struct Interval;
    struct WrittenNode {
        boost::shared_ptr<Node> node;
        Eigen::Matrix4f matrix;
        Eigen::Vector3f scale;
    };

    void findBaseMatrices();
    void evaluate(float time);
    /// Returns the index of the key that follows @p time, for which @p likelyKey is a guess.
    std::size_t evaluateTrack(Track& track, float time, std::size_t likelyKey);
    void playVector(const Track& track, const Interval& interval, Pose& pose);
    void playRotation(const Track& track, const Interval& interval, Pose& pose);
    static void playMatrix(const Track& track, const Interval& interval, Pose& pose);
    void writeUnheard();
    void writeHeard();

    core::logger::Logger& logger_;
    PlaybackTracks tracks_;
    BaseMatrices baseMatrices_;
    std::vector<Pose> poses_;           ///< One per slot of the tracks' nodes.
    std::vector<WrittenNode> written_;  ///< Kept for its memory.
};

}  // namespace vantorix::scene
