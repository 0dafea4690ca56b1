#pragma once

#include <Eigen/Core>

namespace vantorix::scene {

/// One key of a matrix channel, split into what can be blended.
///
/// The scale is the lengths of the first three columns. Where such a column has no direction (or
/// no finite length), the rotation is completed from the others, so that it is always one; a
/// mirrored matrix has its first column turned round and remembers that.
struct MatrixKey {
    /// @p rows points to 16 floats, row by row.
    explicit MatrixKey(const float* rows);

    /// Rotation (mirrored again if need be) and translation.
    Eigen::Matrix4f placement() const;

    Eigen::Matrix4f matrix;
    Eigen::Vector3f scale;
    Eigen::Matrix3f rotation;
    Eigen::Vector3f translation;
    bool isMirrored = false;
    bool isSingular = false;
};

/// What lies @p fraction of the way from @p start to @p end: the rotations blended along the
/// shortest arc (Shoemake, "Animating Rotation with Quaternion Curves", 1985), the rest linearly.
MatrixKey blend(const MatrixKey& start, const MatrixKey& end, float fraction);

}  // namespace vantorix::scene
