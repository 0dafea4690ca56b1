#include "core_api/event/EventManager.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "core_api/event/Event.h"

#include "core/event/EventTypeHash.h"
#include "core/event/ListenerRegistry.h"

namespace vantorix::core::event {

EventManager::EventManager() : registry_(boost::make_shared<ListenerRegistry>(heard_)) {}

EventManager::~EventManager() { registry_->close(); }

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
    // Nothing after this call: a listener may release the event manager.
    if (isHashHeard(event.getEventType().getHash())) registry_->dispatch(std::move(event));
}

void EventManager::triggerEvent(std::string type, std::string data) {
    static_assert(typeSlots == hashSlots);
    if (isSubclass() || isHashHeard(typeSlot(type))) send(std::move(type), std::move(data));
}

void EventManager::send(std::string&& type, std::string&& data) {
    const auto hash = EventType::hashOf(type);
    if (isSubclass()) {
        triggerEvent(Event(EventType(std::move(type), hash), EventData(std::move(data))));
    } else {
        registry_->dispatch(type, hash, EventData(std::move(data)));
    }
}

}  // namespace vantorix::core::event
