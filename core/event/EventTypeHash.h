#pragma once

#include <cstddef>

#include "core_api/event/EventType.h"

namespace vantorix::core::event {

/// For hash tables with event types as keys.
struct EventTypeHash {
    std::size_t operator()(const EventType& type) const { return type.getHash(); }
};

}  // namespace vantorix::core::event
