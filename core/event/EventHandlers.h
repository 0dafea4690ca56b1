#pragma once

#include <atomic>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <boost/function.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "core/event/EventTypeHash.h"

namespace vantorix::core::event {

class Event;
class EventManager;

/// What an EventBase knows, apart from it: a delivery goes on with this when a handler has
/// destroyed the object. Safe on any thread.
class EventHandlers {
public:
    using Handler = boost::function<void(Event)>;

    explicit EventHandlers(boost::shared_ptr<EventManager> manager);

    boost::shared_ptr<EventManager> getManager() const;

    /// Returns the event manager so far.
    boost::shared_ptr<EventManager> replaceManager(boost::shared_ptr<EventManager> manager);

    void addHandler(const EventType& type, Handler handler);

    /// Returns false when the type was listened to already.
    bool addType(const EventType& type);

    /// The types that are listened to, in the order in which they were added.
    std::vector<EventType> getTypes() const;

    /// Calls the handlers of the event's type until end() is called.
    void call(Event event) const;
    void end() { ended_ = true; }

    /// Held while registrations are moved from one event manager to another, never while a handler
    /// runs. Recursive: a subclass of EventManager may call back.
    boost::recursive_mutex& registrationMutex() { return registrationMutex_; }

private:
    using Handlers = std::vector<Handler>;

    boost::shared_ptr<const Handlers> handlersOf(const EventType& type) const;

    boost::recursive_mutex registrationMutex_;  // Taken before the other one.
    mutable boost::mutex mutex_;
    boost::shared_ptr<EventManager> manager_;
    std::unordered_map<EventType, boost::shared_ptr<Handlers>, EventTypeHash> handlers_;
    std::unordered_set<EventType, EventTypeHash> listened_;
    std::vector<EventType> types_;
    std::atomic<bool> ended_{false};
};

}  // namespace vantorix::core::event
