#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "core_api/logger/Logger.h"

#include "scene/graph/ISceneController.h"

namespace vantorix::scene {

class Animation;
class AnimationPlayback;
class CameraInstance;
class Node;
class PlaybackClock;
class SceneManager;

/// Plays one animation over the scene that it is attached to, and records key frames.
///
/// Starts paused. Attach it, set an animation, and let the scene drive it (addSceneController) or
/// call update yourself.
/// An animated node's matrix is base * translation * rotation: first its elements that no channel
/// targets, as they were when the animation was set, then what its channels give. The scale comes
/// from the channels alone.
/// Ownership: the animation and its targeted nodes are shared; the scene is weak, and once it is
/// gone the manager counts as not attached.
/// Threads: the playback controls (setTime to getLoopDuration) may be called on any thread. All
/// else must be serialised with update: while the synchronisation thread runs, lock the scene.
class VANTORIX_SCENE_EXPORT AnimationManager
    : public ISceneController,
      public boost::enable_shared_from_this<AnimationManager> {
public:
    enum InterpolationType : int {
        STEP = 0,
        LINEAR = 1,
        BEZIER = 2,
        HERMITE = 3,
        CARDINAL = 4,
        BSPLINE = 5
    };
    using TargetedTransformations = std::map<boost::shared_ptr<Node>, std::vector<std::string>>;

    AnimationManager();
    ~AnimationManager() override;
    AnimationManager(const AnimationManager&) = delete;
    AnimationManager& operator=(const AnimationManager&) = delete;

    bool isReadOnly() override { return false; }

    /// Resets the current time to zero. What is targeted was found when the animation was set.
    void attach(boost::shared_ptr<SceneManager> sceneManager) override;

    /// Moves the time by @p elapsed and writes the poses of all nodes that channels lead to, with
    /// Node::setTransformations and Node::setScale.
    /// A paused manager moves towards its time target, a playing one wraps at most once. Channels
    /// give nothing before their first key and after the last; a matrix channel turns from key to
    /// key along the shortest arc, at the pace at which it moves.
    /// @returns whether nodes were written: not without scene or animation, nor at a time target
    ///          already shown, nor at or past the end.
    bool update(boost::posix_time::time_duration elapsed) override;

    /// Sets all times to zero, then finds targeted nodes, base matrices and frame times anew. May
    /// be empty. Fills the time range of animations where it is 0, and the target node of those
    /// that name one.
    void setAnimation(boost::shared_ptr<Animation> animation);
    boost::shared_ptr<Animation> getAnimation() const { return animation_; }

    /// @name Playback controls
    /// @{
    /// Goes to @p time, at most the loop duration, and has the next update show it.
    void setTime(boost::posix_time::time_duration time);
    /// Where a paused manager moves to.
    void setTimeTarget(boost::posix_time::time_duration time);
    /// Stops at the current time.
    void pause();
    void resume();
    bool paused() const;
    /// Without it, a paused manager jumps to its time target.
    void setSmooth(bool smooth);
    boost::posix_time::time_duration getCurrentTime() const;
    boost::posix_time::time_duration getLoopDuration() const;
    /// @}

    /// Key times in seconds, each once, in the order in which they were found: children first, and
    /// of each animation only its first channel.
    std::vector<float>& getFrameTimes() { return frameTimes_; }
    const std::vector<float>& getFrameTimes() const { return frameTimes_; }

    /// @name Targeted nodes
    /// As found when the animation was set: per node the SIDs of its animated elements, each once.
    /// @{
    const TargetedTransformations& getTargetedTransformationsMap() const { return targeted_; }
    std::vector<std::string> getTargetedTransformationsForNode(boost::shared_ptr<Node> node) const;
    bool isNodeTargeted(boost::shared_ptr<Node> node) const;
    /// @}

    /// @name Key frames
    /// @p time is in seconds. Both recompute the loop duration.
    /// @{
    /// Pauses, records a key of every targeted node and, when the default camera has an instance,
    /// of that instance's node (see Animation::insertKeyFrame), and appends a frame time.
    void insertKeyframe(float time);
    /// Removes the key from @p animation and its children, and the frame time.
    /// Deliberate: once for each of these animations, of two equal frame times in a row only the
    /// first is removed.
    void removeKeyFrame(boost::shared_ptr<Animation> animation, float time);
    /// @}

    /// @name Cameras
    /// Cameras are made with SceneManager::createNewCamera: a perspective camera on a node with a
    /// generated ID below the root. The node gets the name. Empty without a scene.
    /// @{
    /// The scene's first camera instance; made with the name "DefaultCamera" when there is none.
    boost::shared_ptr<CameraInstance> getDefaultCamera();
    /// A camera "AnimationCamera" whose node takes over the translation, rotation and scale of the
    /// default camera's node, with one matrix element "transform" to animate.
    boost::shared_ptr<CameraInstance> addAnimationCamera();
    /// @}

protected:
    /// In any letter case; LINEAR for an unknown name.
    InterpolationType getInterpolationType(const std::string& name) const;

    /// 0, 1 and 2 for "x", "y" and "z", 3 for "w" and "angle", in any letter case; -1 otherwise,
    /// which means the whole value.
    int indexOfCoordinateValue(const std::string& name) const;

    /// Deliberate: the tangents @p c0 and @p c1 are ignored; the value lies on the line from
    /// (@p ta, @p a) to (@p tb, @p b), and is @p a where both times are equal.
    float interpolateBezier(float a, float b, float ta, float tb, float t,
                            const Eigen::Vector2f& c0, const Eigen::Vector2f& c1) const;

private:
    void setUpAnimation(Animation& animation);
    void targetChannels(Animation& animation, SceneManager& scene);
    void calculateBaseMatrices();
    static void calculateFrameTimes(Animation& animation, std::vector<float>& times);
    void insertFrameTime(float time);
    bool removeFrameTime(float time);
    std::vector<boost::shared_ptr<Node>> nodesToRecord() const;
    boost::shared_ptr<CameraInstance> makeCamera(const std::string& name);

    core::logger::Logger logger_;
    boost::weak_ptr<SceneManager> sceneManager_;
    TargetedTransformations targeted_;
    /// The keys of the map above in the order in which they were found: theirs is that of
    /// addresses.
    std::vector<boost::shared_ptr<Node>> targetedNodes_;
    std::vector<float> frameTimes_;
    boost::shared_ptr<Animation> animation_;
    std::unique_ptr<PlaybackClock> clock_;
    std::unique_ptr<AnimationPlayback> playback_;
};

}  // namespace vantorix::scene
