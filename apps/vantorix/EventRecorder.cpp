#include "apps/vantorix/EventRecorder.h"

#include <boost/thread/lock_guard.hpp>

namespace vantorix::apps::cli {

void EventRecorder::triggerEvent(core::event::Event event) {
    {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        events_.push_back(event);
    }
    EventManager::triggerEvent(event);
}

std::vector<core::event::Event> EventRecorder::getEvents() const {
    const boost::lock_guard<boost::mutex> lock(mutex_);
    return events_;
}

}  // namespace vantorix::apps::cli
