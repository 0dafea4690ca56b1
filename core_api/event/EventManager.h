#pragma once

#include <array>
#include <atomic>
#include <string>
#include <typeinfo>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "core_api/CoreExport.h"
#include "core_api/event/EventType.h"

namespace vantorix::core::event {

class Event;
class EventListener;
class ListenerRegistry;

/// Hands events to the listeners that are registered for their type.
///
/// Dispatch is synchronous, on the caller's thread, in order of registration, and no lock is held
/// while a listener runs: it may register, unregister, trigger, destroy listeners (itself too) and
/// release the event manager. A listener that is unregistered or destroyed during a dispatch is
/// not called any more; one that is registered during a dispatch hears the next event.
/// Ownership: listeners are not owned.
/// Threads: every call is safe on any thread. After unregisterListener() returned, no delivery
/// starts; one that runs on another thread at that moment may still be inside the listener.
/// Destroying a listener ends its registrations and waits, see EventListener.
/// A subclass that overrides triggerEvent(Event) sees every event.
class VANTORIX_CORE_EXPORT EventManager {
public:
    EventManager();
    virtual ~EventManager();
    EventManager(const EventManager&) = delete;
    EventManager& operator=(const EventManager&) = delete;

    /// Returns false when @p listener is null or hears @p type already.
    virtual bool registerListener(const EventType& type, EventListener* listener);

    /// Returns false when @p listener did not hear @p type.
    virtual bool unregisterListener(const EventType& type, EventListener* listener);

    /// Ends all registrations of @p listener and returns their number.
    virtual unsigned int unregisterFromAll(EventListener* listener);

    virtual bool isListening(const EventType& type, const EventListener* listener) const;
    virtual unsigned int getListenerCount(const EventType& type) const;

    /// The types that somebody listens to, in no particular order.
    virtual std::vector<EventType> getListenedTypes() const;

    /// Delivers @p event before it returns.
    virtual void triggerEvent(Event event);

    /// Sends an event with an empty sender through triggerEvent(Event).
    void triggerEvent(std::string type, std::string data);

    /// Whether an event of this type has to be sent: false only when nobody listens to it and no
    /// subclass can see it. Costs a nanosecond or two; may answer true for a type that shares its
    /// hash with one that is listened to.
    bool isHeard(const EventType& type) const {
        return isSubclass() || isHashHeard(type.getHash());
    }

    /// Whether this is no subclass. Then triggerEvent(Event) does not touch this object once the
    /// first listener is called: whoever knows that it exists until then needs no reference.
    bool isPlain() const { return !isSubclass(); }

private:
    friend class ListenerRegistry;
    static constexpr std::size_t hashSlots = 512;
    /// Registrations per hash of their type.
    using HeardHashes = std::array<std::atomic<unsigned int>, hashSlots>;

    // By address: two type_info objects of one type would only cost the short cut.
    bool isSubclass() const { return &typeid(*this) != &typeid(EventManager); }

    bool isHashHeard(std::size_t hash) const {
        return heard_[hash % hashSlots].load(std::memory_order_acquire) != 0;
    }

    /// The part of triggerEvent() that an event comes to which somebody may hear: apart, so that
    /// the other one stays short.
    [[gnu::noinline]] void send(std::string&& type, std::string&& data);

    HeardHashes heard_{};
    const boost::shared_ptr<ListenerRegistry> registry_;
};

}  // namespace vantorix::core::event
