#pragma once

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Animation;
class AnimationManager;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::cli {

/// Shows a scene at any time of one animation. The scene's own thread drives the paused animation
/// manager as well, which makes no difference: both show the same time.
class ClipPlayer {
public:
    /// Gives @p scene, which must outlive this object, an animation manager.
    ClipPlayer(scene::SceneManager& scene, boost::shared_ptr<scene::Animation> animation);
    ~ClipPlayer();

    ClipPlayer(const ClipPlayer&) = delete;
    ClipPlayer& operator=(const ClipPlayer&) = delete;

    boost::posix_time::time_duration getDuration() const;

    /// Poses the nodes as they are at @p time, which is below the duration.
    void show(boost::posix_time::time_duration time);

private:
    scene::SceneManager& scene_;
    boost::shared_ptr<scene::AnimationManager> manager_;
};

}  // namespace vantorix::apps::cli
