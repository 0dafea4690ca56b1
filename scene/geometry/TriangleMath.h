#pragma once

#include <Eigen/Core>
#include <Eigen/Geometry>

namespace vantorix::scene {

/// An edge of length 0 is moved off it along x.
inline Eigen::Vector3f usableEdge(const Eigen::Vector3f& from, const Eigen::Vector3f& to) {
    Eigen::Vector3f edge = to - from;
    if (edge.squaredNorm() == 0.0f) edge.x() += 0.001f;
    return edge;
}

/// Not normalised again: the length is the sine of the angle between the edges.
inline Eigen::Vector3f faceNormal(const Eigen::Vector3f& edge1, const Eigen::Vector3f& edge2) {
    return edge1.normalized().cross(edge2.normalized());
}

/// The first three components of matrix * (position, 1).
inline Eigen::Vector3f transformedPosition(const Eigen::Matrix4f& matrix,
                                           const Eigen::Vector3f& position) {
    return (matrix * position.homogeneous()).head<3>();
}

}  // namespace vantorix::scene
