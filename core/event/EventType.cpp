#include "core_api/event/EventType.h"

#include <functional>
#include <utility>

namespace vantorix::core::event {

EventType::EventType(std::string name)
    : name_(new SharedName(std::move(name))), hash_(hashOf(name_->text)) {}

const std::string& EventType::getName() const {
    static const std::string none;
    return name_ ? name_->text : none;
}

std::size_t EventType::hashOf(const std::string& name) { return std::hash<std::string>()(name); }

}  // namespace vantorix::core::event
