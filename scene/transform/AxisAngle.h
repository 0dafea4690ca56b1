#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include <Eigen/Core>

#include "core_api/utils/Vector.h"

#include "scene/transform/Lanes.h"

/// What the parameters of transformation elements mean as matrices.
namespace vantorix::scene {

/// Zero for a vector without components, as a rotate element made without an axis holds it.
inline Eigen::Vector3f toEigen(const core::utils::Vector<float, 3>& vector) {
    if (vector.size() < 3) return Eigen::Vector3f::Zero();
    return {vector[0], vector[1], vector[2]};
}

/// Three columns of a matrix.
using Axes = std::array<Lanes, 3>;

constexpr Axes unitAxes = {Lanes{1, 0, 0, 0}, Lanes{0, 1, 0, 0}, Lanes{0, 0, 1, 0}};

/// The rotation about an axis of any length, which may be 0, by degrees in the last lane. What the
/// last lanes of the columns hold means nothing. As Eigen::AngleAxis computes it, a column at a
/// time.
inline Axes axesTurnedAbout(Lanes axisAndDegrees) {
    constexpr float radiansPerDegree = 0.017453292f;
    const Lanes squares = axisAndDegrees * axisAndDegrees;
    const float length = std::sqrt(squares[0] + (squares[1] + squares[2]));
    if (!(length > 0.0f)) return unitAxes;
    const float angle = axisAndDegrees[3] * radiansPerDegree;
    const float sine = std::sin(angle);
    const float cosine = std::cos(angle);
    const Lanes axis = axisAndDegrees / allLanes(length);
    const Lanes s = allLanes(sine) * axis;
    const Lanes v = allLanes(1.0f - cosine) * axis;
    // The cosine stands on the diagonal, the sines around it.
    const Lanes c = allLanes(cosine);
    return {pick<0, 0, 0>(v) * axis + Lanes{1, 1, -1, 1} * pick<0, 6, 5>(c, s),
            pick<0, 1, 1>(v) * pick<1, 1, 2>(axis) + Lanes{-1, 1, 1, 1} * pick<6, 0, 4>(c, s),
            v * pick<2, 2, 2>(axis) + Lanes{1, -1, 1, 1} * pick<5, 4, 0>(c, s)};
}

/// The same as a matrix.
inline Eigen::Matrix3f rotationAbout(const Eigen::Vector3f& axis, float degrees) {
    const auto columns = axesTurnedAbout(Lanes{axis.x(), axis.y(), axis.z(), degrees});
    Eigen::Matrix3f rotation;
    for (Eigen::Index i = 0; i < 3; ++i) {
        const Lanes column = columns[static_cast<std::size_t>(i)];
        rotation.col(i) << column[0], column[1], column[2];
    }
    return rotation;
}

}  // namespace vantorix::scene
