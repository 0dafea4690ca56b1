#pragma once

#include <cstddef>

#include <Eigen/Core>

namespace vantorix::scene {

class Stream;

// The comparisons decide what a NaN does: it is taken, and replaced by whatever comes next.

inline float lowerOf(float current, float sample) { return sample > current ? current : sample; }

inline float upperOf(float current, float sample) { return current > sample ? current : sample; }

inline void lower(Eigen::Vector3f& minimum, const Eigen::Vector3f& sample) {
    for (int axis = 0; axis < 3; ++axis) minimum[axis] = lowerOf(minimum[axis], sample[axis]);
}

inline void raise(Eigen::Vector3f& maximum, const Eigen::Vector3f& sample) {
    for (int axis = 0; axis < 3; ++axis) maximum[axis] = upperOf(maximum[axis], sample[axis]);
}

/// The first @p size of three components, the others 0.
/// @throws std::out_of_range when @p size is above 3.
Eigen::Vector3f makeSample(const float* values, int size);

/// Reads one tuple as a sample; false when the stream ends before.
/// @throws std::out_of_range when the stride is above 3.
bool readSample(const Stream& stream, std::size_t tuple, Eigen::Vector3f& sample);

}  // namespace vantorix::scene
