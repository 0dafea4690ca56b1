#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vantorix::scene {

/// The first index whose key time is not before @p time, @p count when there is none. Key times
/// may come in any order; a NaN is passed over.
///
/// Reads them from the first, sixteen at a time: with no cursor to keep there is none that an edit
/// could make wrong.
inline std::size_t firstKeyFrom(const float* times, std::size_t count, float time) {
    using Lanes __attribute__((vector_size(16))) = float;
    constexpr std::size_t blockSize = 16;
    const Lanes wanted = {time, time, time, time};
    std::size_t index = 0;
    for (; index + blockSize <= count; index += blockSize) {
        std::array<Lanes, 4> block{};
        std::memcpy(block.data(), times + index, sizeof(block));
        const auto reached = (wanted <= block[0]) | (wanted <= block[1]) | (wanted <= block[2]) |
                             (wanted <= block[3]);
        std::array<std::int64_t, 2> flags{};
        std::memcpy(flags.data(), &reached, sizeof(flags));
        if ((flags[0] | flags[1]) != 0) break;
    }
    while (index < count && !(time <= times[index])) ++index;
    return index;
}

/// The value at @p t on the line from (@p ta, @p a) to (@p tb, @p b), @p a where both times are
/// equal.
inline float interpolateKeys(float a, float b, float ta, float tb, float t) {
    if (tb == ta) return a;
    return a + (b - a) * (t - ta) / (tb - ta);
}

}  // namespace vantorix::scene
