#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include <boost/function.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "core_api/event/Event.h"

#include "core/event/DeliveryGate.h"
#include "core/event/GrowingTable.h"
#include "core/utils/SpinLock.h"

namespace vantorix::core::event {

class EventManager;

/// What an EventBase knows, apart from it: a delivery goes on with this when a handler has
/// destroyed the object. Safe on any thread; handlers are called without a lock.
class EventHandlers : public DeliveryGate {
public:
    using Handler = boost::function<void(Event)>;

    explicit EventHandlers(boost::shared_ptr<EventManager> manager);

    boost::shared_ptr<EventManager> getManager() const;

    /// Returns the event manager so far.
    boost::shared_ptr<EventManager> replaceManager(boost::shared_ptr<EventManager> manager);

    /// Adds @p handler, then runs @p listen; takes the handler back when that throws.
    template <class Listen>
    void addHandler(const EventType& type, Handler handler, const Listen& listen) {
        auto& entry = append(type, std::move(handler));
        try {
            listen();
        } catch (...) {
            entry.isTakenBack.store(true, std::memory_order_release);
            throw;
        }
    }

    /// Returns false when the type was listened to already.
    bool addType(const EventType& type);
    /// Takes back what addType() has just added under the registration mutex.
    void dropLastType();

    /// The types that are listened to, in the order in which they were added.
    std::vector<EventType> getTypes() const;

    /// Calls the handlers that the event's type has now, until end() is called.
    /// @{
    void call(const Event& event) const;
    void call(Event&& event) const;
    /// @}
    void end() { ended_.store(true, std::memory_order_release); }

    /// Held while registrations are moved from one event manager to another, never while a handler
    /// runs. Recursive: a subclass of EventManager may call back.
    boost::recursive_mutex& registrationMutex() { return registrationMutex_; }

private:
    /// The handlers of one type: a list that only grows.
    struct Handlers {
        struct Entry {
            explicit Entry(Handler itsHandler) : handler(std::move(itsHandler)) {}

            Handler handler;
            std::unique_ptr<Entry> next;
            std::atomic<bool> isTakenBack{false};
        };

        explicit Handlers(const EventType& itsType) : type(itsType) {}
        ~Handlers();

        const EventType type;
        bool listened = false;
        std::unique_ptr<Entry> first;
        std::atomic<Entry*> last{nullptr};  // Everything up to here stays as it is.
    };

    Handlers::Entry& append(const EventType& type, Handler handler);
    template <class AnyEvent>
    void callEach(AnyEvent&& event) const;
    Handlers* find(const EventType& type) const;
    Handlers& findOrAdd(const EventType& type);

    boost::recursive_mutex registrationMutex_;  // Taken before the other ones.
    mutable utils::SpinLock managerLock_;
    boost::shared_ptr<EventManager> manager_;
    mutable boost::mutex mutex_;  // Of what follows.
    GrowingTable<Handlers> handlers_;
    std::vector<EventType> types_;
    std::atomic<bool> ended_{false};
};

}  // namespace vantorix::core::event
