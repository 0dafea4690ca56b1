#include "core/event/ListenerRegistry.h"

#include <new>
#include <typeinfo>
#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventBase.h"
#include "core_api/event/EventListener.h"

#include "core/event/EventHandlers.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<utils::SpinLock>;
using Row = ListenerRegistry::Row;
using RowPtr = ListenerRegistry::RowPtr;
using RegistrationPtr = ListenerRegistry::RegistrationPtr;

/// The registrations that have not ended.
RowPtr closedUp(const Row& row) {
    RowPtr result(new Row(row.type));
    result->registrations.reserve(row.used + 1);
    for (const auto& registration : row.registrations) {
        if (!registration || registration->ended.load(std::memory_order_relaxed)) continue;
        registration->position = result->registrations.size();
        result->registrations.push_back(registration);
    }
    result->used = result->registrations.size();
    return result;
}

/// A row that may be changed: a dispatch keeps the old one.
Row& changeable(RowPtr& row) {
    if (row->isRead()) row = closedUp(*row);
    return *row;
}

}  // namespace

/// A dispatch's stay in the row of a type, as it is when that begins.
class ListenerRegistry::Reading {
public:
    Reading(const ListenerRegistry& registry, const EventType& type)
        : Reading(
              registry, [&type](const EventType& other) { return other == type; }, type) {}

    /// Finds the row by the text, without an event type to be made from it first.
    Reading(const ListenerRegistry& registry, const std::string& name, std::size_t hash)
        : Reading(
              registry,
              [&](const EventType& type) {
                  return type.getHash() == hash && type.getName() == name;
              },
              name, [hash](const std::string&) { return hash; },
              [](const std::string& wanted, const EventType& type) {
                  return type.getName() == wanted;
              }) {}

    ~Reading() {
        if (row_) row_->end();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    /// Null when nobody is registered.
    const EventType* type() const { return row_ ? &row_->type : nullptr; }
    const RegistrationPtr* begin() const { return row_ ? row_->registrations.data() : nullptr; }
    const RegistrationPtr* end() const {
        return row_ ? begin() + row_->registrations.size() : nullptr;
    }

private:
    template <class IsWanted, class... Key>
    Reading(const ListenerRegistry& registry, const IsWanted& isWanted, const Key&... key)
        : row_(nullptr) {
        const Lock lock(registry.lock_);
        auto*& recent = registry.recentRow_;
        if (!recent || !isWanted(recent->type)) {
            const auto found = registry.rows_.find(key...);
            if (found == registry.rows_.end()) return;
            recent = found->second.get();
        }
        row_ = recent;
        row_->begin();
    }

    Row* row_;
};

ListenerRegistry::Registration::Registration(EventListener& heard)
    : listener(heard),
      gate(heard.gate_),
      handlers(typeid(heard) == typeid(EventBase) ? static_cast<EventHandlers*>(gate.get())
                                                  : nullptr) {}

template <class AnyEvent>
void ListenerRegistry::Registration::deliver(AnyEvent&& event) const {
    if (ended.load(std::memory_order_acquire)) return;
    if (handlers) {  // Nobody overrides handleEvent(): what it would do, without the visit.
        handlers->call(std::forward<AnyEvent>(event));
        return;
    }
    const DeliveryGate::Visit visit(*gate);
    if (visit.isInside()) listener.handleEvent(std::forward<AnyEvent>(event));
}

void ListenerRegistry::close() {
    ByGate gates;
    Rows rows;
    {
        const Lock lock(lock_);
        gates.swap(byGate_);
        rows.swap(rows_);
        recentRow_ = nullptr;
    }
    for (const auto& [gate, registrations] : gates) gate->removeRegistry(*this);
}

bool ListenerRegistry::add(const EventType& type, EventListener& listener) {
    const Lock lock(lock_);
    auto& gate = *listener.gate_;
    const auto known = byGate_.try_emplace(&gate).first;
    try {
        return addTo(known->second, type, listener);
    } catch (...) {
        if (known->second.empty()) {
            gate.removeRegistry(*this);
            byGate_.erase(known);
        }
        throw;
    }
}

bool ListenerRegistry::addTo(Registrations& registrations, const EventType& type,
                             EventListener& listener) {
    if (registrations.count(type) > 0) return false;
    const RegistrationPtr registration(new Registration(listener));
    if (registrations.empty()) listener.gate_->addRegistry(shared_from_this());
    const auto added = registrations.emplace(type, registration).first;
    try {
        append(type, registration);
    } catch (...) {
        registrations.erase(added);
        throw;
    }
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

void ListenerRegistry::dispatch(Event&& event) const {
    const Reading row(*this, event.getEventType());
    deliverToAll(row, std::move(event));
}

void ListenerRegistry::dispatch(const std::string& name, std::size_t hash, EventData data) const {
    const Reading row(*this, name, hash);
    if (row.type()) deliverToAll(row, Event(*row.type(), std::move(data)));
}

// The last listener gets the event itself: for a single one, its payload is never counted.
void ListenerRegistry::deliverToAll(const Reading& row, Event&& event) {
    if (row.begin() == row.end()) return;
    const auto* const last = row.end() - 1;
    for (const auto* registration = row.begin(); registration != last; ++registration) {
        if (*registration) (*registration)->deliver(std::as_const(event));
    }
    if (*last) (*last)->deliver(std::move(event));
}

std::atomic<unsigned int>& ListenerRegistry::heardBy(const EventType& type) {
    return heard_[type.getHash() % heard_.size()];
}

void ListenerRegistry::append(const EventType& type, const RegistrationPtr& registration) {
    recentRow_ = nullptr;
    const auto found = rows_.try_emplace(type).first;
    try {
        if (!found->second) found->second.reset(new Row(type));
        auto& row = changeable(found->second);
        registration->position = row.registrations.size();
        row.registrations.push_back(registration);
        ++row.used;
    } catch (...) {
        if (!found->second || found->second->used == 0) rows_.erase(found);
        throw;
    }
    heardBy(type).fetch_add(1, std::memory_order_release);
}

void ListenerRegistry::end(const EventType& type, Registration& registration) {
    registration.ended.store(true, std::memory_order_release);
    heardBy(type).fetch_sub(1, std::memory_order_release);
    recentRow_ = nullptr;
    const auto found = rows_.find(type);
    auto& row = *found->second;
    if (--row.used == 0) {
        rows_.erase(found);
        return;
    }
    const bool isRead = row.isRead();
    if (!isRead) row.registrations[registration.position].reset();
    if (isRead || row.used < row.registrations.size() / 2) closeUp(found->second);
}

void ListenerRegistry::closeUp(RowPtr& row) {
    try {
        row = closedUp(*row);
    } catch (const std::bad_alloc&) {
        // What has ended is passed over where it stands: listeners can go without memory.
    }
}

}  // namespace vantorix::core::event
