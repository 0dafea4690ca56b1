#include "apps/vantorix/ClipPlayer.h"

#include <boost/make_shared.hpp>

#include "apps/render/SceneGuard.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {

ClipPlayer::ClipPlayer(scene::SceneManager& scene, boost::shared_ptr<scene::Animation> animation)
    : scene_(scene), manager_(boost::make_shared<scene::AnimationManager>()) {
    scene_.setAnimationManager(manager_);
    scene_.addSceneController(manager_);
    const render::SceneGuard guard(scene_);
    manager_->setAnimation(animation);
}

ClipPlayer::~ClipPlayer() { scene_.removeSceneController(manager_); }

boost::posix_time::time_duration ClipPlayer::getDuration() const {
    return manager_->getLoopDuration();
}

void ClipPlayer::show(boost::posix_time::time_duration time) {
    manager_->setTime(time);
    const render::SceneGuard guard(scene_);
    manager_->update(boost::posix_time::milliseconds(0));
}

}  // namespace vantorix::apps::cli
