#include "apps/import/ImportError.h"

#include <algorithm>

namespace vantorix::apps::import {
namespace {

constexpr std::size_t longestLine = 300;

}  // namespace

LimitError::LimitError(const LimitMet& limit, const std::string& text)
    : std::runtime_error(text), limit_(limit) {}

void requireWithin(const std::string& name, std::uint64_t count, std::uint64_t allowed) {
    if (count <= allowed) return;
    throw LimitError({name, "", static_cast<double>(count), static_cast<double>(allowed)},
                     "has " + std::to_string(count) + " " + name + ", " + std::to_string(allowed) +
                         " are allowed");
}

std::string oneLine(const std::string& text) {
    std::string line = text.substr(0, longestLine);
    const auto isControl = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
    std::replace_if(line.begin(), line.end(), isControl, ' ');
    const auto last = line.find_last_not_of(' ');
    line.erase(last == std::string::npos ? 0 : last + 1);
    return line;
}

}  // namespace vantorix::apps::import
