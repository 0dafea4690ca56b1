#pragma once

#include <atomic>
#include <string>

#include <boost/function.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "core_api/CoreExport.h"
#include "core_api/event/Event.h"
#include "core_api/event/EventListener.h"

namespace vantorix::core::event {

class EventHandlers;
class EventManager;

/// An object that sends events and has handlers for those that it receives.
///
/// Handlers of one type are called in the order of their registration and follow the object to
/// every event manager that it is given, also by way of none. They may register further handlers,
/// replace the event manager and destroy the object; handlers still to come are then not called.
/// Threads: every call is safe on any thread. Destroying the object ends its deliveries without
/// waiting for handlers: one that runs on another thread at that moment runs to its end. A handler
/// that needs an object which may go on another thread is therefore registered with
/// registerHandlerOf(), or locks a weak pointer itself, and a derived class of which that is true
/// calls endDeliveries() first in its destructor.
class VANTORIX_CORE_EXPORT EventBase : public EventListener {
public:
    /// @p eventManager may be empty.
    explicit EventBase(boost::shared_ptr<EventManager> eventManager);
    EventBase(const EventBase&) = delete;
    EventBase& operator=(const EventBase&) = delete;

    /// Calls the handlers of the event's type. An override that calls this touches nothing of the
    /// object afterwards when another thread might destroy it: for endDeliveries() the call is over
    /// when the handlers begin.
    void handleEvent(Event event) override;
    ~EventBase() override;

    virtual boost::shared_ptr<EventManager> getEventManager() const;

    /// Moves all registrations to @p eventManager, which may be empty.
    virtual void setEventManager(boost::shared_ptr<EventManager> eventManager);

    /// Lets events of @p type reach handleEvent(), once each however often this is called.
    virtual void registerToListen(EventType type);

    /// Adds a handler and listens to @p type. An empty handler is ignored.
    virtual void registerHandler(EventType type, boost::function<void(Event)> handler);

    /// @name Sending through the event manager; without one nothing happens
    /// @{
    virtual void triggerEvent(std::string type, std::string data);
    virtual void triggerEvent(Event event);
    /// @}

    /// A handler that only runs while @p owner lives, and keeps it alive until it returned.
    void registerHandlerOf(boost::weak_ptr<void> owner, EventType type,
                           boost::function<void(Event)> handler);

    /// The event manager without a reference: valid only while nobody replaces it and this object
    /// lives.
    EventManager* peekEventManager() const { return current_.load(std::memory_order_acquire); }

private:
    EventHandlers& handlers() const;

    std::atomic<EventManager*> current_;
};

}  // namespace vantorix::core::event
