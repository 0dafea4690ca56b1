#pragma once

#include <cstdint>
#include <vector>

namespace vantorix::apps::import {

/// Everything that the program sent, up to the end of its message.
std::vector<std::uint8_t> receiveMessage();

/// False when the program is gone.
bool sendMessage(const std::vector<std::uint8_t>& message);

}  // namespace vantorix::apps::import
