#pragma once

#include <cmath>

#include <Eigen/Core>
#include <Eigen/Geometry>

#include "scene/geometry/PaddedVector.h"

namespace vantorix::scene {

/// An edge of length 0 is moved off it along x.
inline Eigen::Vector3f usableEdge(const Eigen::Vector3f& from, const Eigen::Vector3f& to) {
    Eigen::Vector3f edge = to - from;
    if (edge.squaredNorm() == 0.0f) edge.x() += 0.001f;
    return edge;
}

/// Of length 1. An edge of length 0, which rounding may leave, stays as it is.
inline PaddedVector direction(const Eigen::Vector3f& edge) {
    const float squaredLength = edge.squaredNorm();
    const float length = squaredLength > 0.0f ? std::sqrt(squaredLength) : 1.0f;
    return padded(edge) / PaddedVector{length, length, length, length};
}

/// Not normalised again: the length is the sine of the angle between the edges.
inline PaddedVector faceNormal(const Eigen::Vector3f& edge1, const Eigen::Vector3f& edge2) {
    return cross(direction(edge1), direction(edge2));
}

/// The first three components of matrix * (position, 1).
inline Eigen::Vector3f transformedPosition(const Eigen::Matrix4f& matrix,
                                           const Eigen::Vector3f& position) {
    return (matrix * position.homogeneous()).head<3>();
}

}  // namespace vantorix::scene
