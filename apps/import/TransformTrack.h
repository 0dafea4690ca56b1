#pragma once

#include <array>
#include <vector>

#include <Eigen/Geometry>

#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

/// What one channel does to a transformation element.
struct TransformTrack {
    /// The element that is enough: MATRIX is for everything that moves in more than one way.
    enum Kind { TRANSLATE, SCALE, MATRIX };

    Kind kind = MATRIX;
    std::vector<float> times;   ///< Seconds.
    std::vector<float> values;  ///< Per key 3 floats, or 16 of a matrix row by row.
};

/// A node at rest, taken apart: matrix = translation * rotation * scale. Shear is left out.
struct RestPose {
    explicit RestPose(const std::array<float, 16>& matrix);

    Eigen::Vector3f translation;
    Eigen::Quaternionf rotation;
    Eigen::Vector3f scale;
    bool isExact;  ///< There is neither shear nor a mirror in the matrix.
};

/// The simplest kind that can play @p channel from a node at @p rest and leaves the node at rest
/// when nothing plays. Channels of several clips need the most general of their kinds.
TransformTrack::Kind kindOf(const ModelChannel& channel, const RestPose& rest);

/// The keys that play @p channel through an element of @p kind. A player that shows nothing at and
/// before the first key and after the last one shows the whole clip: the first value also stands a
/// second before the first time (or before 0), the last one at @p duration.
TransformTrack makeTrack(const ModelChannel& channel, const RestPose& rest,
                         TransformTrack::Kind kind, float duration);

}  // namespace vantorix::apps::import
