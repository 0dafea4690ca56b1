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

}  // namespace vantorix::apps::cli
