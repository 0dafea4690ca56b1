#include "scene/animation/MatrixKeys.h"

#include <cmath>

#include <Eigen/Geometry>

namespace vantorix::scene {
namespace {

bool hasDirection(float length) { return length > 0.0f && std::isfinite(length); }

/// A rotation whose columns are those of @p columns that @p lengths give a direction.
Eigen::Matrix3f completedRotation(const Eigen::Matrix3f& columns, const Eigen::Vector3f& lengths) {
    Eigen::Matrix3f rotation = Eigen::Matrix3f::Identity();
    for (Eigen::Index missing = 0; missing < 3; ++missing) {
        const Eigen::Index next = (missing + 1) % 3;
        const Eigen::Index last = (missing + 2) % 3;
        if (hasDirection(lengths[missing])) continue;
        if (!hasDirection(lengths[next]) || !hasDirection(lengths[last])) continue;
        const Eigen::Vector3f normal = columns.col(next).cross(columns.col(last));
        if (!hasDirection(normal.norm())) break;
        rotation = columns;
        rotation.col(missing) = normal.normalized();
        return rotation;
    }
    for (Eigen::Index only = 0; only < 3; ++only) {
        if (!hasDirection(lengths[only])) continue;
        const Eigen::Vector3f axis = Eigen::Vector3f::Unit(only);
        return Eigen::Quaternionf::FromTwoVectors(axis, columns.col(only)).toRotationMatrix();
    }
    return rotation;
}

}  // namespace

MatrixKey::MatrixKey(const float* rows)
    : matrix(Eigen::Map<const Eigen::Matrix<float, 4, 4, Eigen::RowMajor>>(rows)),
      scale(matrix.topLeftCorner<3, 3>().colwise().norm()),
      translation(matrix.topRightCorner<3, 1>()) {
    rotation = matrix.topLeftCorner<3, 3>();
    for (Eigen::Index column = 0; column < 3; ++column) {
        if (!hasDirection(scale[column])) isSingular = true;
        rotation.col(column) /= scale[column];
    }
    if (isSingular) rotation = completedRotation(rotation, scale);
    scale = scale.unaryExpr([](float length) { return std::isfinite(length) ? length : 1.0f; });
    isMirrored = rotation.determinant() < 0.0f;
    if (isMirrored) rotation.col(0) = -rotation.col(0);
}

Eigen::Matrix4f MatrixKey::placement() const {
    Eigen::Matrix4f placed = Eigen::Matrix4f::Identity();
    placed.topLeftCorner<3, 3>() = rotation;
    if (isMirrored) placed.col(0) = -placed.col(0);
    placed.topRightCorner<3, 1>() = translation;
    return placed;
}

MatrixKey blend(const MatrixKey& start, const MatrixKey& end, float fraction) {
    if (fraction == 1.0f) return end;
    MatrixKey blended = start;
    const Eigen::Quaternionf from(start.rotation);
    const Eigen::Quaternionf to(end.rotation);
    blended.rotation =
        from.normalized().slerp(fraction, to.normalized()).normalized().toRotationMatrix();
    blended.translation += fraction * (end.translation - start.translation);
    blended.scale += fraction * (end.scale - start.scale);
    return blended;
}

}  // namespace vantorix::scene
