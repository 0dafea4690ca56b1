#pragma once

#include <cstdint>
#include <cstring>

/// Four floats in one register: what Eigen would compute one by one, or by way of memory.
namespace vantorix::scene {

using Lanes __attribute__((vector_size(16))) = float;
using LaneBits __attribute__((vector_size(16))) = std::int32_t;

inline Lanes loadLanes(const float* floats) {
    Lanes lanes;
    std::memcpy(&lanes, floats, sizeof(lanes));
    return lanes;
}

/// Of three floats; the last lane is 0.
inline Lanes loadThreeLanes(const float* floats) {
    return Lanes{floats[0], floats[1], floats[2], 0};
}

inline void storeLanes(float* floats, Lanes lanes) { std::memcpy(floats, &lanes, sizeof(lanes)); }

inline Lanes allLanes(float value) { return Lanes{value, value, value, value}; }

inline LaneBits bitsOf(Lanes lanes) {
    LaneBits bits;
    std::memcpy(&bits, &lanes, sizeof(bits));
    return bits;
}

/// With 0 in the last lane, also for one that is no number.
inline Lanes withoutLast(Lanes lanes) {
    const LaneBits kept = bitsOf(lanes) & LaneBits{-1, -1, -1, 0};
    std::memcpy(&lanes, &kept, sizeof(lanes));
    return lanes;
}

/// Whether no bit is set in any lane.
inline bool isZero(LaneBits bits) {
    std::int64_t halves[2];
    std::memcpy(halves, &bits, sizeof(halves));
    return (halves[0] | halves[1]) == 0;
}

}  // namespace vantorix::scene
