#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "scene/geometry/FloatArray.h"

namespace vantorix::scene {

/// Whether key times come in order, looked through again only when they may have changed.
class KeyOrder {
public:
    /// Whether all of @p times are numbers, none before the one in front of it. False as long as
    /// somebody may be writing to them.
    bool isAscending(const FloatArray& times) {
        const auto revision = times.revision();
        if (revision == 0) return false;
        if (revision != revision_) look(times);
        return isAscending_;
    }

private:
    void look(const FloatArray& times) {
        const auto fromSecond = std::min(times.begin() + 1, times.end());
        const auto isInOrder = [](float before, float after) { return before <= after; };
        isAscending_ = !times.empty() && times[0] == times[0] &&
                       std::equal(times.begin(), times.end() - 1, fromSecond, isInOrder);
        revision_ = times.revision();
    }

    std::uint64_t revision_ = 0;
    bool isAscending_ = false;
};

/// The first index whose key time is not before @p time, @p count when there is none. Key times
/// may come in any order; a NaN is passed over.
///
/// Reads them from the first, sixteen at a time.
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

/// The same for the keys of a stream. Where they are in order, @p likely is tried first.
inline std::size_t firstKeyFrom(const FloatArray& times, KeyOrder& order, float time,
                                std::size_t likely) {
    if (!order.isAscending(times)) return firstKeyFrom(times.data(), times.size(), time);
    const auto isBefore = [](float key, float wanted) { return !(wanted <= key); };
    if (likely > 0 && likely < times.size() && isBefore(times[likely - 1], time) &&
        !isBefore(times[likely], time)) {
        return likely;
    }
    const auto found = std::lower_bound(times.begin(), times.end(), time, isBefore);
    return static_cast<std::size_t>(found - times.begin());
}

/// The value at @p t on the line from (@p ta, @p a) to (@p tb, @p b), @p a where both times are
/// equal.
inline float interpolateKeys(float a, float b, float ta, float tb, float t) {
    if (tb == ta) return a;
    return a + (b - a) * (t - ta) / (tb - ta);
}

}  // namespace vantorix::scene
