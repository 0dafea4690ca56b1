#pragma once

#include <string>

namespace vantorix::apps::cli {

/// @p text as it can be shown on one line of any terminal: control characters, characters that
/// change the direction of writing, and bytes that are not UTF-8 become "\n", "\x1b", "\u202e".
std::string printable(const std::string& text);

}  // namespace vantorix::apps::cli
