#include "scene/animation/UpdateEvent.h"

#include <typeinfo>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"

#include "scene/graph/SceneManager.h"

namespace vantorix::scene {

using core::event::Event;
using core::event::EventData;
using core::event::EventType;

namespace {

/// A subclass may override the dispatch and sees every event.
bool isNoticed(const SceneManager& scene, const EventType& type) {
    if (typeid(scene) != typeid(SceneManager)) return true;
    const auto events = scene.getEventManager();
    return events && events->isHeard(type);
}

}  // namespace

void sendUpdateEvent(const boost::weak_ptr<SceneManager>& sceneManager, const EventType& type,
                     const std::string& id) {
    const auto scene = sceneManager.lock();
    if (scene && isNoticed(*scene, type)) scene->triggerEvent(Event(type, EventData(id)));
}

}  // namespace vantorix::scene
