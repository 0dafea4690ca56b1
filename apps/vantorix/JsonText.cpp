#include "apps/vantorix/JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

namespace vantorix::apps::cli {

using Json = nlohmann::ordered_json;

Json jsonNumber(float number) {
    if (!std::isfinite(number)) return nullptr;
    std::array<char, 64> text{};
    std::to_chars(text.data(), text.data() + text.size() - 1, number);
    double shortest = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), shortest);
    return shortest;
}

std::string jsonText(const Json& document, int indent) {
    return document.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string documentsText(const nlohmann::ordered_json& documents, std::size_t files) {
    if (files > 1) return jsonText(documents, 2) + "\n";
    return documents.empty() ? std::string() : jsonText(documents[0], 2) + "\n";
}

}  // namespace vantorix::apps::cli
