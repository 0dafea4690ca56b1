#pragma once

#include <cstdint>

/// Four floats in one register: what Eigen would compute one by one, or by way of memory.
namespace vantorix::scene {

using Lanes __attribute__((vector_size(16))) = float;
using LaneBits __attribute__((vector_size(16))) = std::int32_t;

/// Lanes that lie anywhere among floats. Copying their bytes instead goes by way of other
/// registers.
using LanesInMemory __attribute__((vector_size(16), aligned(4), may_alias)) = float;

inline Lanes loadLanes(const float* floats) {
    return *reinterpret_cast<const LanesInMemory*>(floats);
}

/// Of three floats; the last lane is 0.
inline Lanes loadThreeLanes(const float* floats) {
    return Lanes{floats[0], floats[1], floats[2], 0};
}

inline void storeLanes(float* floats, Lanes lanes) {
    *reinterpret_cast<LanesInMemory*>(floats) = lanes;
}

inline Lanes allLanes(float value) { return Lanes{value, value, value, value}; }

inline LaneBits bitsOf(Lanes lanes) { return reinterpret_cast<LaneBits>(lanes); }

/// The lanes with these numbers. Those of @p more count from 4.
template <int First, int Second, int Third, int Fourth = 3>
Lanes pick(Lanes lanes, Lanes more) {
    return __builtin_shufflevector(lanes, more, First, Second, Third, Fourth);
}
template <int First, int Second, int Third, int Fourth = 3>
Lanes pick(Lanes lanes) {
    return pick<First, Second, Third, Fourth>(lanes, lanes);
}

/// With 0 in the last lane, also for one that is no number.
inline Lanes withoutLast(Lanes lanes) {
    return reinterpret_cast<Lanes>(bitsOf(lanes) & LaneBits{-1, -1, -1, 0});
}

/// Whether no bit is set in any lane.
inline bool isZero(LaneBits bits) {
    using Halves __attribute__((vector_size(16))) = std::int64_t;
    const auto halves = reinterpret_cast<Halves>(bits);
    return (halves[0] | halves[1]) == 0;
}

}  // namespace vantorix::scene
