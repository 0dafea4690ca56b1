#include "core/event/DeliveryGate.h"

#include <thread>

namespace vantorix::core::event {
namespace {

thread_local DeliveryGate::Visit* innermost = nullptr;

}  // namespace

DeliveryGate::Visit::Visit(DeliveryGate& gate) : gate_(gate), outer_(innermost), inside_(true) {
    innermost = this;
    if (gate_.state_.fetch_add(oneVisit, std::memory_order_acq_rel) & closedBit) leave();
}

DeliveryGate::Visit::~Visit() {
    leave();
    innermost = outer_;
}

void DeliveryGate::Visit::leave() {
    if (!inside_) return;
    inside_ = false;
    gate_.state_.fetch_sub(oneVisit, std::memory_order_release);
}

void DeliveryGate::close() {
    state_.fetch_or(closedBit, std::memory_order_acq_rel);
    const auto expected = ownVisits() * oneVisit + closedBit;
    while (state_.load(std::memory_order_acquire) != expected) std::this_thread::yield();
}

void DeliveryGate::leaveInnermost() {
    if (innermost && &innermost->gate_ == this) innermost->leave();
}

unsigned int DeliveryGate::ownVisits() const {
    unsigned int count = 0;
    for (const auto* visit = innermost; visit; visit = visit->outer_) {
        if (&visit->gate_ == this && visit->inside_) ++count;
    }
    return count;
}

}  // namespace vantorix::core::event
