#include "scene/graph/SceneSending.h"

namespace vantorix::scene {

void dispatch(const SceneHandle& handle, const core::event::EventType& type,
              core::event::EventData data) {
    using core::event::EventManager;
    auto* const plain = peekEventManager(handle);
    if (!plain) return;
    core::event::Event event(type, std::move(data));
    if (plain->isPlain()) return plain->EventManager::triggerEvent(std::move(event));
    // A subclass may use itself and the scene behind its listeners, whatever these release.
    const auto scene = handle.lock();
    const auto manager = scene ? scene->getEventManager() : nullptr;
    if (manager) manager->triggerEvent(std::move(event));
}

}  // namespace vantorix::scene
