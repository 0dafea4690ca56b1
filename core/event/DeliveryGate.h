#pragma once

#include <atomic>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

namespace vantorix::core::event {

/// Counts the threads that are inside a listener and lets none in once it is closed. Outlives the
/// listener as long as a registration or a running dispatch refers to it.
class DeliveryGate : public boost::intrusive_ref_counter<DeliveryGate> {
public:
    /// A stay inside a gate; lies on the stack of the delivering thread.
    class Visit {
    public:
        explicit Visit(DeliveryGate& gate);
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

        bool isInside() const { return inside_; }
        void leave();

    private:
        friend class DeliveryGate;
        DeliveryGate& gate_;
        Visit* const outer_;  // The visit during which this one began, of whatever gate.
        bool inside_;
    };

    bool isOpen() const { return (state_.load(std::memory_order_acquire) & closedBit) == 0; }

    /// Lets nobody in any more and waits until no other thread is inside.
    void close();

    /// Ends the innermost visit of this thread if it is one of this gate.
    void leaveInnermost();

private:
    static constexpr unsigned int closedBit = 1;
    static constexpr unsigned int oneVisit = 2;

    unsigned int ownVisits() const;

    std::atomic<unsigned int> state_{0};  // Twice the number of visits, plus the closed bit.
};

}  // namespace vantorix::core::event
