#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "scene/geometry/FloatArray.h"
#include "scene/transform/Lanes.h"

namespace vantorix::scene {

/// Whether all key times are numbers, none before the one in front of it.
inline bool areAscending(const float* times, std::size_t count) {
    if (count == 0 || times[0] != times[0]) return false;
    const auto isInOrder = [](float before, float after) { return before <= after; };
    return std::equal(times, times + count - 1, times + 1, isInOrder);
}

/// Whether key times come in order, looked through again only when they may have changed.
class KeyOrder {
public:
    /// As areAscending(). False as long as somebody may be writing to them.
    bool isAscending(const FloatArray& times) {
        const auto revision = times.revision();
        if (revision == 0) return false;
        if (revision != revision_) isAscending_ = areAscending(times.data(), times.size());
        revision_ = revision;
        return isAscending_;
    }

private:
    std::uint64_t revision_ = 0;
    bool isAscending_ = false;
};

/// The first index whose key time is not before @p time, @p count when there is none. Key times
/// may come in any order; a NaN is passed over.
///
/// Reads them from the first, sixteen at a time.
inline std::size_t firstKeyFrom(const float* times, std::size_t count, float time) {
    constexpr std::size_t blockSize = 16;
    const Lanes wanted = allLanes(time);
    std::size_t index = 0;
    for (; index + blockSize <= count; index += blockSize) {
        std::array<Lanes, 4> block{};
        std::memcpy(block.data(), times + index, sizeof(block));
        const LaneBits reached = (wanted <= block[0]) | (wanted <= block[1]) |
                                 (wanted <= block[2]) | (wanted <= block[3]);
        if (!isZero(reached)) break;
    }
    while (index < count && !(time <= times[index])) ++index;
    return index;
}

/// The same where key times are ascending; @p likely is tried first.
inline std::size_t firstAscendingKeyFrom(const float* times, std::size_t count, float time,
                                         std::size_t likely) {
    const auto isBefore = [](float key, float wanted) { return !(wanted <= key); };
    if (likely > 0 && likely < count && isBefore(times[likely - 1], time) &&
        !isBefore(times[likely], time)) {
        return likely;
    }
    return static_cast<std::size_t>(std::lower_bound(times, times + count, time, isBefore) - times);
}

/// The keys around a time.
struct KeyInterval {
    KeyInterval() = default;
    /// @p end is what firstKeyFrom() found.
    KeyInterval(const float* times, std::size_t count, std::size_t end, float time) {
        if (end == 0 || end == count) return;
        endKey = end;
        elapsed = time - times[end - 1];
        length = times[end] - times[end - 1];
        isInstant = times[end] == times[end - 1];
    }

    /// The value at the time on the line from @p start to @p end, for a float or several.
    template <typename Value>
    Value between(Value start, Value end) const {
        return isInstant ? start : start + (end - start) * elapsed / length;
    }

    std::size_t endKey = 0;  ///< Index of the later key; 0 where the time is not between two keys.
    float elapsed = 0;       ///< Since the earlier key.
    float length = 0;
    bool isInstant = false;  ///< Both keys have the same time.
};

}  // namespace vantorix::scene
