#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vantorix::core::utils {
namespace text_hash {

/// One step of a multiplicative hash (Knuth, The Art of Computer Programming, vol. 3, section 6.4);
/// the shift brings the upper bits down.
inline std::uint64_t mixed(std::uint64_t value) {
    value *= 0x9E3779B97F4A7C15u;  // The golden ratio.
    return value ^ value >> 32;
}

template <class Word>
std::uint64_t load(const char* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

/// The last eight bytes, or all of a shorter text. Sizes are constants: no call copies a few bytes.
/// A text of four to seven that was copied a moment ago was mostly written by two stores, each of
/// four bytes: what is read over the edge of the second one waits for both.
inline std::uint64_t lastBytes(const char* text, std::size_t size) {
    if (size >= 8) return load<std::uint64_t>(text + size - 8);
    if (size >= 4) {
        return load<std::uint8_t>(text) | load<std::uint8_t>(text + 1) << 8 |
               load<std::uint8_t>(text + 2) << 16 | load<std::uint32_t>(text + size - 4) << 24;
    }
    if (size == 0) return 0;
    return load<std::uint8_t>(text) | load<std::uint8_t>(text + size / 2) << 8 |
           load<std::uint8_t>(text + size - 1) << 16;
}

}  // namespace text_hash

/// Whether the first @p size bytes of two texts are the same, of few bytes without a call.
inline bool equalTexts(const char* left, const char* right, std::size_t size) {
    using text_hash::lastBytes;
    if (size > 16) return std::memcmp(left, right, size) == 0;
    if (lastBytes(left, size) != lastBytes(right, size)) return false;
    return size < 8 ||
           text_hash::load<std::uint64_t>(left) == text_hash::load<std::uint64_t>(right);
}

/// A hash of any bytes for tables in memory; not stable between machines.
inline std::uint64_t textHash(const char* text, std::size_t size) {
    std::uint64_t hash = size;
    for (std::size_t at = 0; at + 8 < size; at += 8) {
        hash = text_hash::mixed(hash ^ text_hash::load<std::uint64_t>(text + at));
    }
    // The last eight bytes, also where they overlap with the ones before. Twice, since once leaves
    // the lower bits of the hash without a trace of the last characters.
    return text_hash::mixed(text_hash::mixed(hash ^ text_hash::lastBytes(text, size)));
}

}  // namespace vantorix::core::utils
