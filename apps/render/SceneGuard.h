#pragma once

#include "scene/graph/SceneManager.h"

namespace vantorix::apps::render {

/// Holds the scene lock while it lives.
class SceneGuard {
public:
    explicit SceneGuard(scene::SceneManager& scene) : scene_(scene) { scene_.lockScene(); }
    ~SceneGuard() { scene_.unlockScene(); }

    SceneGuard(const SceneGuard&) = delete;
    SceneGuard& operator=(const SceneGuard&) = delete;

private:
    scene::SceneManager& scene_;
};

}  // namespace vantorix::apps::render
