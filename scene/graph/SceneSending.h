#pragma once

#include <utility>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"

#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneHandle.h"
#include "scene/graph/SceneManager.h"

/// How nodes send events to the scene that they were made for. All of it does nothing once that is
/// gone or has no event manager.
namespace vantorix::scene {

inline core::event::EventManager* peekEventManager(const SceneHandle& handle) {
    const auto* const scene = handle.get();
    return scene ? scene->peekEventManager() : nullptr;
}

/// Whether somebody hears what a node sends when it moves.
inline bool hearsMoves(const core::event::EventManager& manager) {
    return manager.isHeard(events::nodeTransformationUpdate) ||
           manager.isHeard(events::sceneUpdate);
}

inline bool isHeard(const SceneHandle& handle, const core::event::EventType& type) {
    const auto* const manager = peekEventManager(handle);
    return manager && manager->isHeard(type);
}

/// Nothing of the sender may be touched afterwards unless it is kept alive: @p handle is to be a
/// copy where it is used again.
void dispatch(const SceneHandle& handle, const core::event::EventType& type,
              core::event::EventData data);

inline void sendEmpty(const SceneHandle& handle, const core::event::EventType& type) {
    if (isHeard(handle, type)) dispatch(handle, type, core::event::EventData(std::string()));
}

}  // namespace vantorix::scene
