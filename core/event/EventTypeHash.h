#pragma once

#include <cstddef>
#include <string>

#include "core_api/event/EventType.h"

namespace vantorix::core::event {

/// How many slots the names of events fall into.
constexpr std::size_t typeSlots = 512;

/// The slot of a name, from its size and three of its characters. These are read one by one: what a
/// string was made of a moment ago, in other portions, a wider load would have to wait for.
inline std::size_t typeSlot(const std::string& name) {
    const std::size_t size = name.size();
    if (size == 0) return 0;
    const auto character = [&name](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(name[place]));
    };
    const auto mixed =
        size + 7 * character(0) + 31 * character(size / 2) + 127 * character(size - 1);
    return mixed % typeSlots;
}

/// For hash tables with event types as keys.
struct EventTypeHash {
    std::size_t operator()(const EventType& type) const { return type.getHash(); }
};

}  // namespace vantorix::core::event
