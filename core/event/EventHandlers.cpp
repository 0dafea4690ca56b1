#include "core/event/EventHandlers.h"

#include <utility>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"

namespace vantorix::core::event {
namespace {

using Lock = boost::lock_guard<boost::mutex>;

}  // namespace

EventHandlers::EventHandlers(boost::shared_ptr<EventManager> manager)
    : manager_(std::move(manager)) {}

boost::shared_ptr<EventManager> EventHandlers::getManager() const {
    const Lock lock(mutex_);
    return manager_;
}

boost::shared_ptr<EventManager> EventHandlers::replaceManager(
    boost::shared_ptr<EventManager> manager) {
    const Lock lock(mutex_);
    manager_.swap(manager);
    return manager;
}

void EventHandlers::addHandler(const EventType& type, Handler handler) {
    const Lock lock(mutex_);
    auto& handlers = handlers_[type];
    if (!handlers) {
        handlers = boost::make_shared<Handlers>();
    } else if (handlers.use_count() > 1) {
        handlers = boost::make_shared<Handlers>(*handlers);  // These are being called.
    }
    handlers->push_back(std::move(handler));
}

bool EventHandlers::addType(const EventType& type) {
    const Lock lock(mutex_);
    if (!listened_.insert(type).second) return false;
    types_.push_back(type);
    return true;
}

std::vector<EventType> EventHandlers::getTypes() const {
    const Lock lock(mutex_);
    return types_;
}

void EventHandlers::call(Event event) const {
    const auto handlers = handlersOf(event.getEventType());
    if (!handlers) return;
    for (const auto& handler : *handlers) {
        if (ended_) return;
        handler(event);
    }
}

boost::shared_ptr<const EventHandlers::Handlers> EventHandlers::handlersOf(
    const EventType& type) const {
    const Lock lock(mutex_);
    const auto found = handlers_.find(type);
    return found == handlers_.end() ? nullptr : found->second;
}

}  // namespace vantorix::core::event
