#pragma once

#include <atomic>
#include <vector>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/thread/mutex.hpp>

namespace vantorix::core::event {

class ListenerRegistry;

/// The way into a listener. Counts the threads that are inside, lets none in once it is closed, and
/// outlives the listener as long as a registration or a running dispatch refers to it.
class DeliveryGate : public boost::intrusive_ref_counter<DeliveryGate> {
public:
    /// A stay inside a gate; lies on the stack of the delivering thread.
    class Visit {
    public:
        explicit Visit(DeliveryGate& gate) : Visit(gate, innermostOfThread()) {}
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

        bool isInside() const { return inside_; }

    private:
        friend class DeliveryGate;
        Visit(DeliveryGate& gate, Visit*& innermost);
        static Visit*& innermostOfThread();
        void leave();

        DeliveryGate& gate_;
        Visit*& innermost_;
        Visit* const outer_;  // The visit during which this one began, of whatever gate.
        bool inside_;
    };

    DeliveryGate() = default;
    virtual ~DeliveryGate() = default;

    /// Lets nobody in any more and waits until no other thread is inside.
    void close();

    /// Ends the visit that this thread began last, if it is one of this gate: from here on close()
    /// does not wait for it. Returns whether it is; then the visitor keeps this gate alive.
    bool leaveEarly();

    /// @name The registries that refer to this gate
    /// @{
    void addRegistry(const boost::shared_ptr<ListenerRegistry>& registry);
    void removeRegistry(const ListenerRegistry& registry);
    /// Takes one off the list; empty when there is none. Needs no memory.
    boost::shared_ptr<ListenerRegistry> takeRegistry();
    /// @}

private:
    static constexpr unsigned int closedBit = 1;
    static constexpr unsigned int oneVisit = 2;

    struct Place {
        const ListenerRegistry* address;
        boost::weak_ptr<ListenerRegistry> registry;
    };

    unsigned int ownVisits() const;

    std::atomic<unsigned int> state_{0};  // Twice the number of visits, plus the closed bit.
    boost::mutex mutex_;
    std::vector<Place> places_;
};

}  // namespace vantorix::core::event
