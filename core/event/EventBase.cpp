#include "core_api/event/EventBase.h"

#include <utility>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include "core_api/event/EventManager.h"

#include "core/event/EventHandlers.h"

namespace vantorix::core::event {
namespace {

using RegistrationLock = boost::lock_guard<boost::recursive_mutex>;

}  // namespace

EventBase::EventBase(boost::shared_ptr<EventManager> eventManager)
    : handlers_(boost::make_shared<EventHandlers>(eventManager)), current_(eventManager.get()) {}

EventBase::~EventBase() {
    handlers_->end();
    endDeliveries();
    if (const auto manager = handlers_->getManager()) manager->unregisterFromAll(this);
}

void EventBase::handleEvent(Event event) {
    const auto handlers = handlers_;
    leaveDelivery();  // A handler may destroy this object, here or on another thread.
    handlers->call(std::move(event));
}

boost::shared_ptr<EventManager> EventBase::getEventManager() const {
    return handlers_->getManager();
}

void EventBase::setEventManager(boost::shared_ptr<EventManager> eventManager) {
    boost::shared_ptr<EventManager> previous;  // Released after the lock.
    const RegistrationLock lock(handlers_->registrationMutex());
    if (eventManager.get() == peekEventManager()) return;
    current_.store(eventManager.get(), std::memory_order_release);
    previous = handlers_->replaceManager(eventManager);
    if (previous) previous->unregisterFromAll(this);
    if (!eventManager) return;
    for (const auto& type : handlers_->getTypes()) eventManager->registerListener(type, this);
}

void EventBase::registerToListen(EventType type) {
    const RegistrationLock lock(handlers_->registrationMutex());
    const auto manager = handlers_->getManager();
    if (handlers_->addType(type) && manager) manager->registerListener(type, this);
}

void EventBase::registerHandler(EventType type, boost::function<void(Event)> handler) {
    if (!handler) return;
    handlers_->addHandler(type, std::move(handler));
    registerToListen(std::move(type));
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
