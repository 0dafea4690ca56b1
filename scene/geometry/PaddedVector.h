#pragma once

#include <Eigen/Core>

namespace vantorix::scene {

/// A vector with a fourth component of 0, in one register: what is done to one component is done to
/// all at once.
using PaddedVector __attribute__((vector_size(16))) = float;

inline PaddedVector padded(const Eigen::Vector3f& vector) {
    return PaddedVector{vector.x(), vector.y(), vector.z(), 0.0f};
}

inline Eigen::Vector3f unpadded(PaddedVector vector) { return {vector[0], vector[1], vector[2]}; }

inline PaddedVector cross(PaddedVector left, PaddedVector right) {
    return __builtin_shufflevector(left, left, 1, 2, 0, 3) *
               __builtin_shufflevector(right, right, 2, 0, 1, 3) -
           __builtin_shufflevector(left, left, 2, 0, 1, 3) *
               __builtin_shufflevector(right, right, 1, 2, 0, 3);
}

}  // namespace vantorix::scene
