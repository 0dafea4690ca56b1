#pragma once

#include <vector>

#include <boost/thread/mutex.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"

namespace vantorix::apps::cli {

/// An event manager that keeps every event in order before it hands it on. Safe on any thread.
class EventRecorder : public core::event::EventManager {
public:
    using core::event::EventManager::triggerEvent;
    void triggerEvent(core::event::Event event) override;

    std::vector<core::event::Event> getEvents() const;

private:
    mutable boost::mutex mutex_;
    std::vector<core::event::Event> events_;
};

}  // namespace vantorix::apps::cli
