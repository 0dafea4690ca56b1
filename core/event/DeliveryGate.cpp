#include "core/event/DeliveryGate.h"

#include <algorithm>
#include <thread>
#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core/event/ListenerRegistry.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<boost::mutex>;

}  // namespace

DeliveryGate::Visit*& DeliveryGate::Visit::innermostOfThread() {
    thread_local Visit* innermost = nullptr;
    return innermost;
}

DeliveryGate::Visit::Visit(DeliveryGate& gate, Visit*& innermost)
    : gate_(gate), innermost_(innermost), outer_(innermost), inside_(true) {
    innermost_ = this;
    if (gate_.state_.fetch_add(oneVisit, std::memory_order_acq_rel) & closedBit) leave();
}

DeliveryGate::Visit::~Visit() {
    if (inside_) leave();
    innermost_ = outer_;
}

void DeliveryGate::Visit::leave() {
    inside_ = false;
    gate_.state_.fetch_sub(oneVisit, std::memory_order_release);
}

void DeliveryGate::close() {
    state_.fetch_or(closedBit, std::memory_order_acq_rel);
    const auto expected = ownVisits() * oneVisit + closedBit;
    while (state_.load(std::memory_order_acquire) != expected) std::this_thread::yield();
}

bool DeliveryGate::leaveEarly() {
    auto* const innermost = Visit::innermostOfThread();
    if (!innermost || &innermost->gate_ != this) return false;
    if (innermost->inside_) innermost->leave();
    return true;
}

void DeliveryGate::addRegistry(const boost::shared_ptr<ListenerRegistry>& registry) {
    const Lock lock(mutex_);
    places_.push_back({registry.get(), registry});
}

void DeliveryGate::removeRegistry(const ListenerRegistry& registry) {
    const Lock lock(mutex_);
    const auto isIt = [&registry](const Place& place) { return place.address == &registry; };
    places_.erase(std::remove_if(places_.begin(), places_.end(), isIt), places_.end());
}

boost::shared_ptr<ListenerRegistry> DeliveryGate::takeRegistry() {
    const Lock lock(mutex_);
    while (!places_.empty()) {
        const auto registry = places_.back().registry.lock();
        places_.pop_back();
        if (registry) return registry;
    }
    return nullptr;
}

unsigned int DeliveryGate::ownVisits() const {
    unsigned int count = 0;
    for (const auto* visit = Visit::innermostOfThread(); visit; visit = visit->outer_) {
        if (&visit->gate_ == this && visit->inside_) ++count;
    }
    return count;
}

}  // namespace vantorix::core::event
