#include "core/event/ListenerRegistry.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventListener.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<boost::mutex>;

}  // namespace

ListenerRegistry::Registration::Registration(EventListener& heard)
    : listener(heard), gate(heard.gate_) {}

bool ListenerRegistry::add(const EventType& type, EventListener& listener) {
    const Lock lock(mutex_);
    auto& known = byGate_[listener.gate_.get()][type];
    if (known) return false;
    known = new Registration(listener);
    append(type, known);
    return true;
}

bool ListenerRegistry::remove(const EventType& type, const EventListener& listener) {
    const Lock lock(mutex_);
    const auto registrations = byGate_.find(listener.gate_.get());
    if (registrations == byGate_.end()) return false;
    const auto found = registrations->second.find(type);
    if (found == registrations->second.end()) return false;
    end(type, *found->second);
    registrations->second.erase(found);
    if (registrations->second.empty()) byGate_.erase(registrations);
    return true;
}

unsigned int ListenerRegistry::removeAll(const EventListener& listener) {
    const Lock lock(mutex_);
    const auto registrations = byGate_.find(listener.gate_.get());
    if (registrations == byGate_.end()) return 0;
    for (const auto& [type, registration] : registrations->second) end(type, *registration);
    const auto count = static_cast<unsigned int>(registrations->second.size());
    byGate_.erase(registrations);
    return count;
}

bool ListenerRegistry::contains(const EventType& type, const EventListener& listener) const {
    const Lock lock(mutex_);
    const auto registrations = byGate_.find(listener.gate_.get());
    return registrations != byGate_.end() && registrations->second.count(type) > 0;
}

unsigned int ListenerRegistry::count(const EventType& type) const {
    const auto current = row(type);
    if (!current) return 0;
    return static_cast<unsigned int>(
        std::count_if(current->begin(), current->end(),
                      [](const RegistrationPtr& one) { return one->isLive(); }));
}

std::vector<EventType> ListenerRegistry::types() const {
    const Lock lock(mutex_);
    std::vector<EventType> result;
    for (const auto& [type, entry] : entries_) result.push_back(type);
    return result;
}

boost::shared_ptr<const ListenerRegistry::Row> ListenerRegistry::row(const EventType& type) const {
    const Lock lock(mutex_);
    const auto found = entries_.find(type);
    return found == entries_.end() ? nullptr : found->second.row;
}

void ListenerRegistry::deliver(const Row& row, const Event& event) {
    for (const auto& registration : row) {
        if (!registration->isLive()) continue;
        const DeliveryGate::Visit visit(*registration->gate);
        if (visit.isInside()) registration->listener.handleEvent(event);
    }
}

std::atomic<unsigned int>& ListenerRegistry::heardBy(const EventType& type) {
    return heard_[type.getHash() % heard_.size()];
}

void ListenerRegistry::append(const EventType& type, RegistrationPtr registration) {
    auto& entry = entries_[type];
    if (!entry.row) {
        entry.row = boost::make_shared<Row>();
    } else if (entry.row.use_count() > 1) {
        entry.row = boost::make_shared<Row>(*entry.row);  // A dispatch is working on this one.
    }
    entry.row->push_back(std::move(registration));
    heardBy(type).fetch_add(1, std::memory_order_release);
}

void ListenerRegistry::end(const EventType& type, Registration& registration) {
    registration.ended.store(true, std::memory_order_release);
    heardBy(type).fetch_sub(1, std::memory_order_release);
    const auto found = entries_.find(type);
    auto& entry = found->second;
    if (++entry.ended == entry.row->size()) {
        entries_.erase(found);
    } else if (entry.ended > entry.row->size() / 2) {
        dropEnded(entry);
    }
}

void ListenerRegistry::dropEnded(Entry& entry) {
    auto live = boost::make_shared<Row>();
    live->reserve(entry.row->size() - entry.ended);
    for (const auto& registration : *entry.row) {
        if (!registration->ended.load(std::memory_order_relaxed)) live->push_back(registration);
    }
    entry.row = std::move(live);
    entry.ended = 0;
}

}  // namespace vantorix::core::event
