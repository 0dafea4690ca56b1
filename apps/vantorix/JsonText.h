#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace vantorix::apps::cli {

/// A number that reads as short as the float it comes from: 0.1, not 0.10000000149011612.
/// Null for infinities and NaN.
nlohmann::ordered_json jsonNumber(float number);

/// @p document as text with @p indent blanks per level, on one line when it is -1. Bytes that are
/// not UTF-8 become replacement characters.
std::string jsonText(const nlohmann::ordered_json& document, int indent);

}  // namespace vantorix::apps::cli
