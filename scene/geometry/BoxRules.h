#pragma once

#include <cstddef>

#include <Eigen/Core>

namespace vantorix::scene {

// Comparisons as they stand decide what a NaN does: it is taken, and replaced by what comes next.

/// The rule of a box's lower corner.
struct LowerBound {
    template <typename Number>  // A float, or several at once.
    static Number pick(Number current, Number sample) {
        return sample > current ? current : sample;
    }
};

/// The rule of a box's upper corner.
struct UpperBound {
    template <typename Number>
    static Number pick(Number current, Number sample) {
        return current > sample ? current : sample;
    }
};

template <typename Rule>
void extend(Eigen::Vector3f& corner, const Eigen::Vector3f& sample) {
    for (int axis = 0; axis < 3; ++axis) corner[axis] = Rule::pick(corner[axis], sample[axis]);
}

/// By @p count positions of three floats, one after the other.
template <typename Rule>
void extend(Eigen::Vector3f& corner, const float* positions, std::size_t count);

/// The corner of the box of that many positions, of which the first one is where it starts from.
template <typename Rule>
Eigen::Vector3f cornerOf(const float* positions, std::size_t count) {
    Eigen::Vector3f corner = Eigen::Map<const Eigen::Vector3f>(positions);
    extend<Rule>(corner, positions, count);
    return corner;
}

/// @throws std::out_of_range when a position of @p size components makes no sample.
void requireSampleSize(std::size_t size);

}  // namespace vantorix::scene
