#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace vantorix::scene {

/// What stands in @p before, in its order, then @p number in decimal and @p after.
///
/// Every character is written once, at its place: one that is copied from where it was written a
/// moment ago waits there until all earlier stores have reached the cache.
inline std::string textAround(std::initializer_list<std::string_view> before, unsigned int number,
                              std::string_view after) {
    std::size_t digits = 1;
    for (auto rest = number; rest >= 10; rest /= 10) ++digits;
    auto size = digits + after.size();
    for (const auto& part : before) size += part.size();
    std::string text(size, '\0');
    char* end = text.data();
    for (const auto& part : before) end = std::copy(part.begin(), part.end(), end);
    end = std::to_chars(end, end + digits, number).ptr;
    std::copy(after.begin(), after.end(), end);
    return text;
}

/// @p prefix and then @p number in decimal.
inline std::string numberedID(std::string_view prefix, unsigned int number) {
    return textAround({prefix}, number, {});
}

}  // namespace vantorix::scene
