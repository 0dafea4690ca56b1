#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

#include "scene/geometry/FloatArray.h"

namespace vantorix::scene {

/// Whether @p floats point into the array, which may move when it grows.
inline bool liesIn(const FloatArray& values, const float* floats) {
    const std::less<> before;
    return !before(floats, values.data()) && before(floats, values.data() + values.size());
}

/// @p count floats that start inside the array, as they read when they are appended one by one:
/// where they run past the end, they meet themselves.
inline std::vector<float> copyFromInside(const FloatArray& values, std::size_t count,
                                         const float* floats) {
    const auto rest = static_cast<std::size_t>(values.data() + values.size() - floats);
    std::vector<float> copy(floats, floats + std::min(count, rest));
    copy.reserve(count);
    for (std::size_t i = 0; copy.size() < count; ++i) copy.push_back(copy[i]);
    return copy;
}

}  // namespace vantorix::scene
