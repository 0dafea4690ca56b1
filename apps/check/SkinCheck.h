#pragma once

namespace vantorix::scene {
class SceneManager;
class Skin;
}  // namespace vantorix::scene

namespace vantorix::apps::check {

class Report;

/// Inputs, influences and joints of one skin, against its geometry and the nodes of the scene.
void checkSkin(const scene::Skin& skin, const scene::SceneManager& scene, const Report& report);

}  // namespace vantorix::apps::check
