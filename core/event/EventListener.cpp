#include "core_api/event/EventListener.h"

#include "core/event/DeliveryGate.h"

namespace vantorix::core::event {

EventListener::EventListener() : gate_(new DeliveryGate) {}

EventListener::EventListener(const EventListener&) : gate_(new DeliveryGate) {}

EventListener& EventListener::operator=(const EventListener&) { return *this; }

EventListener::~EventListener() { gate_->close(); }

void EventListener::endDeliveries() { gate_->close(); }

void EventListener::leaveDelivery() { gate_->leaveInnermost(); }

}  // namespace vantorix::core::event
