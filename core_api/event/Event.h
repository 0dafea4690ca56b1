#pragma once

#include <string>
#include <utility>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "core_api/CoreExport.h"
#include "core_api/event/EventData.h"
#include "core_api/event/EventType.h"

namespace vantorix::core::event {

/// One event: what happened, its payload and who sent it. Cheap to copy, never changes.
class VANTORIX_CORE_EXPORT Event {
public:
    /// With an empty sender.
    Event(EventType type, EventData data) : type_(std::move(type)), data_(std::move(data)) {}
    Event(EventType type, EventData data, std::string sender);
    Event(const Event&) = default;
    Event(Event&&) = default;
    Event& operator=(const Event&) = default;
    Event& operator=(Event&&) = default;
    virtual ~Event() = default;

    virtual EventData getEventData() const { return data_; }
    const EventType& getEventType() const { return type_; }
    const std::string& getSender() const;

private:
    EventType type_;
    EventData data_;
    boost::intrusive_ptr<const Payload> sender_;  // Empty for the empty sender.
};

}  // namespace vantorix::core::event
