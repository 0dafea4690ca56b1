#pragma once

namespace vantorix::scene {
class Animation;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::check {

class Report;

/// Channels and keys of an animation and all animations in it, each once.
void checkAnimation(const scene::Animation& animation, const scene::SceneManager& scene,
                    const Report& report);

}  // namespace vantorix::apps::check
