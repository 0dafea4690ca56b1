#include "core_api/event/EventManager.h"

#include <utility>

#include "core_api/event/Event.h"

#include "core/event/ListenerRegistry.h"

namespace vantorix::core::event {

EventManager::EventManager() : registry_(new ListenerRegistry(heard_)) {}

EventManager::~EventManager() = default;

bool EventManager::registerListener(const EventType& type, EventListener* listener) {
    return listener && registry_->add(type, *listener);
}

bool EventManager::unregisterListener(const EventType& type, EventListener* listener) {
    return listener && registry_->remove(type, *listener);
}

unsigned int EventManager::unregisterFromAll(EventListener* listener) {
    return listener ? registry_->removeAll(*listener) : 0;
}

bool EventManager::isListening(const EventType& type, const EventListener* listener) const {
    return listener && registry_->contains(type, *listener);
}

unsigned int EventManager::getListenerCount(const EventType& type) const {
    return registry_->count(type);
}

std::vector<EventType> EventManager::getListenedTypes() const { return registry_->types(); }

void EventManager::triggerEvent(Event event) {
    if (!isHashHeard(event.getEventType().getHash())) return;
    const auto row = registry_->row(event.getEventType());
    // From the first delivery on nothing of this object is used: a listener may release it.
    if (row) ListenerRegistry::deliver(*row, event);
}

void EventManager::triggerEvent(std::string type, std::string data) {
    if (!isSubclass() && !isHashHeard(EventType::hashOf(type))) return;
    triggerEvent(Event(EventType(std::move(type)), EventData(std::move(data))));
}

}  // namespace vantorix::core::event
