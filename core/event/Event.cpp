#include "core_api/event/Event.h"

#include <utility>

#include "core/event/Payload.h"

namespace vantorix::core::event {

Event::Event(EventType type, EventData data, std::string sender)
    : type_(std::move(type)), data_(std::move(data)) {
    if (!sender.empty()) sender_.reset(new Payload(std::move(sender)), false);
}

const std::string& Event::getSender() const {
    static const std::string none;
    return sender_ ? sender_->beginning() : none;
}

}  // namespace vantorix::core::event
