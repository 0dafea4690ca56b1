#include "core_api/event/Event.h"

#include <utility>

#include <boost/make_shared.hpp>

namespace vantorix::core::event {

Event::Event(EventType type, EventData data, std::string sender)
    : type_(std::move(type)), data_(std::move(data)) {
    if (!sender.empty()) sender_ = boost::make_shared<const std::string>(std::move(sender));
}

const std::string& Event::getSender() const {
    static const std::string none;
    return sender_ ? *sender_ : none;
}

}  // namespace vantorix::core::event
