#include "core_api/event/EventBase.h"

#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core_api/event/EventManager.h"

#include "core/event/EventHandlers.h"

namespace vantorix::core::event {
namespace {

using RegistrationLock = boost::lock_guard<boost::recursive_mutex>;

}  // namespace

EventBase::EventBase(boost::shared_ptr<EventManager> eventManager)
    : EventListener(new EventHandlers(eventManager)), current_(eventManager.get()) {}

EventBase::~EventBase() {
    handlers().end();
    if (const auto manager = handlers().getManager()) manager->unregisterFromAll(this);
}

void EventBase::handleEvent(Event event) {
    auto& own = handlers();
    // From here on this object is not touched: a handler may destroy it, or another thread.
    const bool isKept = own.leaveEarly();
    const boost::intrusive_ptr<DeliveryGate> keeper(isKept ? nullptr : &own);
    own.call(event);
}

EventHandlers& EventBase::handlers() const { return static_cast<EventHandlers&>(*gate_); }

boost::shared_ptr<EventManager> EventBase::getEventManager() const {
    return handlers().getManager();
}

void EventBase::setEventManager(boost::shared_ptr<EventManager> eventManager) {
    boost::shared_ptr<EventManager> previous;  // Released after the lock.
    const RegistrationLock lock(handlers().registrationMutex());
    if (eventManager.get() == peekEventManager()) return;
    current_.store(eventManager.get(), std::memory_order_release);
    previous = handlers().replaceManager(eventManager);
    if (previous) previous->unregisterFromAll(this);
    if (!eventManager) return;
    try {
        for (const auto& type : handlers().getTypes()) eventManager->registerListener(type, this);
    } catch (...) {
        // All or nothing: the caller may give this manager, or another one, again.
        eventManager->unregisterFromAll(this);
        current_.store(nullptr, std::memory_order_release);
        handlers().replaceManager(nullptr);
        throw;
    }
}

void EventBase::registerToListen(EventType type) {
    const RegistrationLock lock(handlers().registrationMutex());
    const auto manager = handlers().getManager();
    if (!handlers().addType(type) || !manager) return;
    try {
        manager->registerListener(type, this);
    } catch (...) {
        handlers().dropLastType();
        throw;
    }
}

void EventBase::registerHandler(EventType type, boost::function<void(Event)> handler) {
    if (!handler) return;
    // The handler first: an event may arrive as soon as this listens.
    handlers().addHandler(type, std::move(handler), [&] { registerToListen(type); });
}

void EventBase::triggerEvent(std::string type, std::string data) {
    if (const auto manager = getEventManager()) {
        manager->triggerEvent(std::move(type), std::move(data));
    }
}

void EventBase::triggerEvent(Event event) {
    if (const auto manager = getEventManager()) manager->triggerEvent(std::move(event));
}

void EventBase::registerHandlerOf(boost::weak_ptr<void> owner, EventType type,
                                  boost::function<void(Event)> handler) {
    if (!handler) return;
    registerHandler(std::move(type),
                    [owner = std::move(owner), handler = std::move(handler)](Event event) {
                        if (const auto alive = owner.lock()) handler(std::move(event));
                    });
}

}  // namespace vantorix::core::event
