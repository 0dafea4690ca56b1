#include "core_api/event/EventListener.h"

#include "core/event/DeliveryGate.h"
#include "core/event/ListenerRegistry.h"

namespace vantorix::core::event {

EventListener::EventListener() : EventListener(new DeliveryGate) {}

EventListener::EventListener(const EventListener&) : EventListener() {}

EventListener::EventListener(DeliveryGate* gate) : gate_(gate) {}

EventListener& EventListener::operator=(const EventListener&) { return *this; }

EventListener::~EventListener() { endDeliveries(); }

void EventListener::endDeliveries() {
    gate_->close();
    while (const auto registry = gate_->takeRegistry()) registry->removeAll(*gate_);
}

}  // namespace vantorix::core::event
