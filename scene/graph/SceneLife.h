#pragma once

#include "scene/graph/SceneHandle.h"

namespace vantorix::scene {

/// The one life of a scene, to which its handles refer. Owned by the scene.
class SceneLife {
public:
    explicit SceneLife(SceneManager& scene);
    ~SceneLife();
    SceneLife(const SceneLife&) = delete;
    SceneLife& operator=(const SceneLife&) = delete;

    /// From here on the handles lead nowhere. Waits for those that are being locked.
    void end();

    const SceneHandle& handle() const { return handle_; }

private:
    friend class SceneHandle;
    struct Place;
    class Places;

    SceneHandle handle_;
    Place& place_;
};

}  // namespace vantorix::scene
