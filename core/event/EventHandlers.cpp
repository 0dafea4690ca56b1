#include "core/event/EventHandlers.h"

#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core_api/event/EventManager.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<boost::mutex>;
using ManagerLock = boost::lock_guard<utils::SpinLock>;

}  // namespace

EventHandlers::Handlers::~Handlers() {
    while (first) first = std::move(first->next);  // Not by recursion, however long the list is.
}

EventHandlers::EventHandlers(boost::shared_ptr<EventManager> manager)
    : manager_(std::move(manager)) {}

boost::shared_ptr<EventManager> EventHandlers::getManager() const {
    const ManagerLock lock(managerLock_);
    return manager_;
}

boost::shared_ptr<EventManager> EventHandlers::replaceManager(
    boost::shared_ptr<EventManager> manager) {
    const ManagerLock lock(managerLock_);
    manager_.swap(manager);
    return manager;
}

EventHandlers::Handlers::Entry& EventHandlers::append(const EventType& type, Handler handler) {
    auto entry = std::make_unique<Handlers::Entry>(std::move(handler));
    const Lock lock(mutex_);
    auto& handlers = findOrAdd(type);
    auto* const last = handlers.last.load(std::memory_order_relaxed);
    auto& place = last ? last->next : handlers.first;
    place = std::move(entry);
    handlers.last.store(place.get(), std::memory_order_release);
    return *place;
}

bool EventHandlers::addType(const EventType& type) {
    const Lock lock(mutex_);
    auto& handlers = findOrAdd(type);
    if (handlers.listened) return false;
    types_.push_back(type);
    handlers.listened = true;
    return true;
}

void EventHandlers::dropLastType() {
    const Lock lock(mutex_);
    find(types_.back())->listened = false;
    types_.pop_back();
}

std::vector<EventType> EventHandlers::getTypes() const {
    const Lock lock(mutex_);
    return types_;
}

void EventHandlers::call(const Event& event) const { callEach(event); }

void EventHandlers::call(Event&& event) const { callEach(std::move(event)); }

// The last handler gets an expiring event itself.
template <class AnyEvent>
void EventHandlers::callEach(AnyEvent&& event) const {
    const auto* const handlers = find(event.getEventType());
    const auto* const last = handlers ? handlers->last.load(std::memory_order_acquire) : nullptr;
    if (!last) return;
    for (const auto* entry = handlers->first.get();; entry = entry->next.get()) {
        if (ended_.load(std::memory_order_acquire)) return;
        const bool isCalled = !entry->isTakenBack.load(std::memory_order_acquire);
        if (entry == last) {
            if (isCalled) entry->handler(std::forward<AnyEvent>(event));
            return;
        }
        if (isCalled) entry->handler(std::as_const(event));
    }
}

EventHandlers::Handlers* EventHandlers::find(const EventType& type) const {
    return handlers_.find(type.getHash(),
                          [&type](const Handlers& handlers) { return handlers.type == type; });
}

EventHandlers::Handlers& EventHandlers::findOrAdd(const EventType& type) {
    if (auto* const known = find(type)) return *known;
    return handlers_.insert(type.getHash(), type);
}

}  // namespace vantorix::core::event
