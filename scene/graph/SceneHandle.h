#pragma once

#include <atomic>
#include <cstdint>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class SceneManager;

/// A weak reference to a scene that costs nothing to copy and to drop: no count, but the number of
/// the scene's life, beside the place where the scene and the number of its life stand.
/// Places are used again, never freed; numbers are not used again.
/// Threads: lock() is safe on any; otherwise as a plain pointer to the scene.
class SceneHandle {
public:
    /// Leads to no scene.
    SceneHandle() = default;

    /// Null once the scene's destructor has begun.
    SceneManager* get() const {
        return place_->life.load(std::memory_order_acquire) == life_ ? place_->scene : nullptr;
    }

    /// Empty once nobody owns the scene.
    VANTORIX_SCENE_EXPORT boost::shared_ptr<SceneManager> lock() const;

private:
    friend class SceneLife;

    struct Place {
        std::atomic<std::uint64_t> life{0};
        SceneManager* scene = nullptr;  ///< Written before the life begins.
    };
    VANTORIX_SCENE_EXPORT static const Place nowhere;

    const Place* place_ = &nowhere;
    std::uint64_t life_ = 0;
};

}  // namespace vantorix::scene
