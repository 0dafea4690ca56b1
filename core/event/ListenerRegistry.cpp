#include "core/event/ListenerRegistry.h"

#include <typeinfo>
#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventBase.h"
#include "core_api/event/EventListener.h"

#include "core/event/EventHandlers.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<SpinLock>;
using Row = ListenerRegistry::Row;
using RowPtr = ListenerRegistry::RowPtr;

RowPtr withoutEmptyPlaces(const Row& row) {
    RowPtr result(new Row);
    result->registrations.reserve(row.used + 1);
    for (const auto& registration : row.registrations) {
        if (!registration) continue;
        registration->position = result->registrations.size();
        result->registrations.push_back(registration);
    }
    result->used = result->registrations.size();
    return result;
}

/// A row that may be changed: a dispatch keeps the old one.
Row& changeable(RowPtr& row) {
    if (row->use_count() > 1) row = withoutEmptyPlaces(*row);
    return *row;
}

}  // namespace

ListenerRegistry::Registration::Registration(EventListener& heard)
    : listener(heard),
      gate(heard.gate_),
      handlers(typeid(heard) == typeid(EventBase) ? static_cast<EventHandlers*>(gate.get())
                                                  : nullptr) {}

void ListenerRegistry::Registration::deliver(const Event& event) const {
    if (ended.load(std::memory_order_acquire)) return;
    if (handlers) {  // Nobody overrides handleEvent(): what it would do, without the visit.
        handlers->call(event);
        return;
    }
    const DeliveryGate::Visit visit(*gate);
    if (visit.isInside()) listener.handleEvent(event);
}

void ListenerRegistry::close() {
    ByGate gates;
    Rows rows;
    {
        const Lock lock(lock_);
        gates.swap(byGate_);
        rows.swap(rows_);
    }
    for (const auto& [gate, registrations] : gates) gate->removeRegistry(*this);
}

bool ListenerRegistry::add(const EventType& type, EventListener& listener) {
    const Lock lock(lock_);
    auto& registrations = byGate_[listener.gate_.get()];
    if (registrations.empty()) listener.gate_->addRegistry(shared_from_this());
    auto& registration = registrations[type];
    if (registration) return false;
    registration = new Registration(listener);
    append(type, registration);
    return true;
}

bool ListenerRegistry::remove(const EventType& type, const EventListener& listener) {
    const Lock lock(lock_);
    const auto registrations = byGate_.find(listener.gate_.get());
    if (registrations == byGate_.end()) return false;
    const auto found = registrations->second.find(type);
    if (found == registrations->second.end()) return false;
    end(type, *found->second);
    registrations->second.erase(found);
    if (registrations->second.empty()) {
        listener.gate_->removeRegistry(*this);
        byGate_.erase(registrations);
    }
    return true;
}

unsigned int ListenerRegistry::removeAll(const EventListener& listener) {
    return removeAll(*listener.gate_);
}

unsigned int ListenerRegistry::removeAll(DeliveryGate& gate) {
    const Lock lock(lock_);
    const auto registrations = byGate_.find(&gate);
    if (registrations == byGate_.end()) return 0;
    for (const auto& [type, registration] : registrations->second) end(type, *registration);
    const auto count = static_cast<unsigned int>(registrations->second.size());
    gate.removeRegistry(*this);
    byGate_.erase(registrations);
    return count;
}

bool ListenerRegistry::contains(const EventType& type, const EventListener& listener) const {
    const Lock lock(lock_);
    const auto registrations = byGate_.find(listener.gate_.get());
    return registrations != byGate_.end() && registrations->second.count(type) > 0;
}

unsigned int ListenerRegistry::count(const EventType& type) const {
    const Lock lock(lock_);
    const auto found = rows_.find(type);
    return found == rows_.end() ? 0 : static_cast<unsigned int>(found->second->used);
}

std::vector<EventType> ListenerRegistry::types() const {
    const Lock lock(lock_);
    std::vector<EventType> result;
    for (const auto& [type, row] : rows_) result.push_back(type);
    return result;
}

void ListenerRegistry::dispatch(const Event& event) const {
    const auto row = rowOf(event.getEventType());
    if (!row) return;
    for (const auto& registration : row->registrations) {
        if (registration) registration->deliver(event);
    }
}

boost::intrusive_ptr<const Row> ListenerRegistry::rowOf(const EventType& type) const {
    const Lock lock(lock_);
    const auto found = rows_.find(type);
    if (found == rows_.end()) return nullptr;
    return found->second;
}

std::atomic<unsigned int>& ListenerRegistry::heardBy(const EventType& type) {
    return heard_[type.getHash() % heard_.size()];
}

void ListenerRegistry::append(const EventType& type, const RegistrationPtr& registration) {
    auto& row = rows_[type];
    if (!row) row = new Row;
    auto& current = changeable(row);
    registration->position = current.registrations.size();
    current.registrations.push_back(registration);
    ++current.used;
    heardBy(type).fetch_add(1, std::memory_order_release);
}

void ListenerRegistry::end(const EventType& type, Registration& registration) {
    registration.ended.store(true, std::memory_order_release);
    heardBy(type).fetch_sub(1, std::memory_order_release);
    const auto found = rows_.find(type);
    auto& row = changeable(found->second);
    row.registrations[registration.position].reset();
    if (--row.used == 0) {
        rows_.erase(found);
    } else if (row.used < row.registrations.size() / 2) {
        found->second = withoutEmptyPlaces(row);
    }
}

}  // namespace vantorix::core::event
