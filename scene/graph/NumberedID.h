#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <string>

namespace vantorix::scene {

/// @p prefix and then @p number in decimal.
template <std::size_t Size>
std::string numberedID(const char (&prefix)[Size], unsigned int number) {
    constexpr std::size_t longestNumber = 10;
    constexpr std::size_t prefixSize = Size - 1;  // Without the 0 at its end.
    std::array<char, prefixSize + longestNumber> text{};
    std::memcpy(text.data(), prefix, prefixSize);
    char* const digits = text.data() + prefixSize;
    return {text.data(), std::to_chars(digits, text.data() + text.size(), number).ptr};
}

}  // namespace vantorix::scene
