#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "scene/graph/SceneManager.h"

namespace vantorix::scene {

/// Lets events reach a scene only while it lives: an event may arrive on one thread while another
/// thread releases the scene.
struct SceneManager::HandlerGate {
    explicit HandlerGate(SceneManager* owner) : scene(owner) {}

    /// The scene's last reference is gone; nothing passes from here on.
    void close() {
        const boost::lock_guard<boost::mutex> guard(mutex);
        scene = nullptr;
    }

    /// Calls @p handler with the scene kept alive, or not at all.
    void pass(LocalHandler handler, const core::event::Event& event) {
        boost::shared_ptr<SceneManager> keptAlive;
        SceneManager* target = nullptr;
        {
            const boost::lock_guard<boost::mutex> guard(mutex);
            if (!scene) return;
            const auto reference = scene->weak_from_this();
            keptAlive = reference.lock();
            // A scene under construction has no reference yet, and its constructor waits for us.
            if (!keptAlive && !reference.empty()) return;
            target = scene;
        }
        (target->*handler)(event);
    }

    boost::mutex mutex;
    SceneManager* scene;
};

}  // namespace vantorix::scene
