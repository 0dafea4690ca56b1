#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <boost/unordered/unordered_map.hpp>

#include "core_api/event/EventManager.h"

#include "core/event/DeliveryGate.h"
#include "core/event/EventTypeHash.h"
#include "core/utils/SpinLock.h"

namespace vantorix::core::event {

class EventData;
class EventHandlers;

/// Who listens to what. A row holds the registrations for one type, in order; a dispatch works on
/// the row as it was when it began, without a lock. Safe on any thread.
class ListenerRegistry : public boost::enable_shared_from_this<ListenerRegistry> {
public:
    struct Registration : boost::intrusive_ref_counter<Registration> {
        explicit Registration(EventListener& heard);

        /// For the last listener, @p event may be an expiring one.
        template <class AnyEvent>
        void deliver(AnyEvent&& event) const;

        EventListener& listener;  // Only to be touched by a visitor of the gate.
        const boost::intrusive_ptr<DeliveryGate> gate;
        const EventHandlers* const handlers;  // The gate, if the listener is a plain EventBase.
        std::size_t position = 0;             // In the current row.
        std::atomic<bool> ended{false};
    };
    using RegistrationPtr = boost::intrusive_ptr<Registration>;

    /// The registrations for one type. Counts those who read it, beginnings under the registry's
    /// lock and ends without it, which spares an atomic operation: the last of them destroys a row
    /// that was retired meanwhile.
    class Row {
    public:
        struct Retire {
            void operator()(Row* row) const { row->retire(); }
        };

        /// @name Under the registry's lock
        /// @{
        void begin() { ++begun_; }
        bool isRead() const { return begun_ + balance_.load(std::memory_order_acquire) != 0; }
        /// @}
        void end() {
            if (balance_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
        }

        explicit Row(const EventType& itsType) : type(itsType) {}

        const EventType type;
        std::vector<RegistrationPtr> registrations;  // Removals leave empty or ended ones.
        std::size_t used = 0;                        // Those that have not ended.

    private:
        void retire() {
            const auto begun = begun_;  // From the addition on, an end may destroy this.
            const auto ended = -balance_.fetch_add(begun, std::memory_order_acq_rel);
            if (ended == begun) delete this;
        }

        std::ptrdiff_t begun_ = 0;
        // Minus the ends; from the retirement on, the beginnings minus the ends.
        std::atomic<std::ptrdiff_t> balance_{0};
    };
    using RowPtr = std::unique_ptr<Row, Row::Retire>;

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
    /// @{
    void dispatch(Event&& event) const;
    /// The event of the type named @p name, of which @p hash is the hash.
    void dispatch(const std::string& name, std::size_t hash, EventData data) const;
    /// @}

private:
    using Registrations = boost::unordered_map<EventType, RegistrationPtr, EventTypeHash>;
    using ByGate = boost::unordered_map<DeliveryGate*, Registrations>;
    using Rows = boost::unordered_map<EventType, RowPtr, EventTypeHash>;

    class Reading;
    static void deliverToAll(const Reading& row, Event&& event);

    std::atomic<unsigned int>& heardBy(const EventType& type);
    bool addTo(Registrations& registrations, const EventType& type, EventListener& listener);
    void append(const EventType& type, const RegistrationPtr& registration);
    void end(const EventType& type, Registration& registration);
    static void closeUp(RowPtr& row);

    mutable utils::SpinLock lock_;
    Rows rows_;
    mutable Row* recentRow_ = nullptr;  // Of the last dispatch: mostly also that of the next.
    // By gate: it stays unique as long as it is referred to, a listener's address does not.
    ByGate byGate_;
    EventManager::HeardHashes& heard_;
};

}  // namespace vantorix::core::event
