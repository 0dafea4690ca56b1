#pragma once

#include <Eigen/Geometry>

#include "core_api/utils/Vector.h"

/// What the parameters of transformation elements mean as matrices.
namespace vantorix::scene {

/// Zero for a vector without components, as a rotate element made without an axis holds it.
inline Eigen::Vector3f toEigen(const core::utils::Vector<float, 3>& vector) {
    if (vector.size() < 3) return Eigen::Vector3f::Zero();
    return {vector[0], vector[1], vector[2]};
}

/// The rotation about @p axis, of any length; the identity about an axis of length 0.
inline Eigen::Matrix3f rotationAbout(const Eigen::Vector3f& axis, float degrees) {
    constexpr float radiansPerDegree = 0.017453292f;
    const float length = axis.norm();
    if (!(length > 0.0f)) return Eigen::Matrix3f::Identity();
    return Eigen::AngleAxisf(degrees * radiansPerDegree, axis / length).toRotationMatrix();
}

}  // namespace vantorix::scene
