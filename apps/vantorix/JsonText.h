#pragma once

#include <cstddef>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace vantorix::apps::cli {

/// A number that reads as short as the float it comes from: 0.1, not 0.10000000149011612.
/// Null for infinities and NaN.
nlohmann::ordered_json jsonNumber(float number);

/// @p document as text with @p indent blanks per level, on one line when it is -1. Bytes that are
/// not UTF-8 become replacement characters.
std::string jsonText(const nlohmann::ordered_json& document, int indent);

/// What a command writes that was given @p files files and made a document of each that it could
/// read: the list of documents, or of one file the document itself, or nothing.
std::string documentsText(const nlohmann::ordered_json& documents, std::size_t files);

}  // namespace vantorix::apps::cli
