#pragma once

#include <atomic>
#include <unordered_map>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/event/EventManager.h"

#include "core/event/DeliveryGate.h"
#include "core/event/EventTypeHash.h"

namespace vantorix::core::event {

/// Who listens to what. A row holds the registrations for one type, in order; a dispatch works on
/// the row as it was when it began. Safe on any thread.
class ListenerRegistry {
public:
    struct Registration : boost::intrusive_ref_counter<Registration> {
        explicit Registration(EventListener& heard);
        bool isLive() const { return !ended.load(std::memory_order_acquire) && gate->isOpen(); }

        EventListener& listener;  // Only to be touched by a visitor of the gate.
        const boost::intrusive_ptr<DeliveryGate> gate;
        std::atomic<bool> ended{false};
    };
    using RegistrationPtr = boost::intrusive_ptr<Registration>;
    using Row = std::vector<RegistrationPtr>;

    /// @p heard is kept equal to the number of registrations for each hash.
    explicit ListenerRegistry(EventManager::HeardHashes& heard) : heard_(heard) {}

    bool add(const EventType& type, EventListener& listener);
    bool remove(const EventType& type, const EventListener& listener);
    unsigned int removeAll(const EventListener& listener);

    bool contains(const EventType& type, const EventListener& listener) const;
    unsigned int count(const EventType& type) const;
    std::vector<EventType> types() const;

    /// Empty when nobody is registered.
    boost::shared_ptr<const Row> row(const EventType& type) const;

    static void deliver(const Row& row, const Event& event);

private:
    struct Entry {
        boost::shared_ptr<Row> row;
        std::size_t ended = 0;  // Registrations of the row that wait for their removal.
    };
    using Registrations = std::unordered_map<EventType, RegistrationPtr, EventTypeHash>;

    std::atomic<unsigned int>& heardBy(const EventType& type);
    void append(const EventType& type, RegistrationPtr registration);
    void end(const EventType& type, Registration& registration);
    static void dropEnded(Entry& entry);

    mutable boost::mutex mutex_;
    std::unordered_map<EventType, Entry, EventTypeHash> entries_;
    // By gate: it stays unique as long as it is referred to, a listener's address does not.
    std::unordered_map<const DeliveryGate*, Registrations> byGate_;
    EventManager::HeardHashes& heard_;
};

}  // namespace vantorix::core::event
