#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <boost/unordered/unordered_map.hpp>

#include "core_api/event/EventManager.h"

#include "core/event/DeliveryGate.h"
#include "core/event/EventTypeHash.h"
#include "core/event/SpinLock.h"

namespace vantorix::core::event {

class EventHandlers;

/// Who listens to what. A row holds the registrations for one type, in order; a dispatch works on
/// the row as it was when it began, without a lock. Safe on any thread.
class ListenerRegistry : public boost::enable_shared_from_this<ListenerRegistry> {
public:
    struct Registration : boost::intrusive_ref_counter<Registration> {
        explicit Registration(EventListener& heard);

        void deliver(const Event& event) const;

        EventListener& listener;  // Only to be touched by a visitor of the gate.
        const boost::intrusive_ptr<DeliveryGate> gate;
        const EventHandlers* const handlers;  // The gate, if the listener is a plain EventBase.
        std::size_t position = 0;             // In the current row.
        std::atomic<bool> ended{false};
    };
    using RegistrationPtr = boost::intrusive_ptr<Registration>;

    struct Row : boost::intrusive_ref_counter<Row> {
        std::vector<RegistrationPtr> registrations;  // Removals leave empty or ended ones.
        std::size_t used = 0;                        // Those that have not ended.
    };
    using RowPtr = boost::intrusive_ptr<Row>;

    /// @p heard is kept equal to the number of registrations for each hash until close().
    explicit ListenerRegistry(EventManager::HeardHashes& heard) : heard_(heard) {}

    /// Ends all registrations; the event manager goes.
    void close();

    bool add(const EventType& type, EventListener& listener);
    bool remove(const EventType& type, const EventListener& listener);
    unsigned int removeAll(const EventListener& listener);
    unsigned int removeAll(DeliveryGate& gate);

    bool contains(const EventType& type, const EventListener& listener) const;
    unsigned int count(const EventType& type) const;
    std::vector<EventType> types() const;

    /// Delivers to those who are registered now. After the first delivery this object is not used.
    void dispatch(const Event& event) const;

private:
    using Registrations = boost::unordered_map<EventType, RegistrationPtr, EventTypeHash>;
    using ByGate = boost::unordered_map<DeliveryGate*, Registrations>;
    using Rows = boost::unordered_map<EventType, RowPtr, EventTypeHash>;

    boost::intrusive_ptr<const Row> rowOf(const EventType& type) const;
    std::atomic<unsigned int>& heardBy(const EventType& type);
    bool addTo(Registrations& registrations, const EventType& type, EventListener& listener);
    void append(const EventType& type, const RegistrationPtr& registration);
    void end(const EventType& type, Registration& registration);
    static void closeUp(RowPtr& row);

    mutable SpinLock lock_;
    Rows rows_;
    // By gate: it stays unique as long as it is referred to, a listener's address does not.
    ByGate byGate_;
    EventManager::HeardHashes& heard_;
};

}  // namespace vantorix::core::event
