#pragma once

#include <array>
#include <cmath>

#include <Eigen/Core>

#include "scene/transform/Lanes.h"

namespace vantorix::scene {

/// Three columns of a matrix.
using Axes = std::array<Lanes, 3>;

/// The rotation about an axis of any length, which may be 0, by degrees in the last lane. What the
/// last lanes of the columns hold means nothing. As AngleAxis computes it, a column at a time.
inline Axes axesTurnedAbout(Lanes axisAndDegrees) {
    constexpr float radiansPerDegree = 0.017453292f;
    const Lanes squares = axisAndDegrees * axisAndDegrees;
    const float length = std::sqrt(squares[0] + (squares[1] + squares[2]));
    if (!(length > 0.0f)) return {Lanes{1, 0, 0, 0}, Lanes{0, 1, 0, 0}, Lanes{0, 0, 1, 0}};
    const float angle = axisAndDegrees[3] * radiansPerDegree;
    const float sine = std::sin(angle);
    const float cosine = std::cos(angle);
    const Lanes axis = axisAndDegrees / allLanes(length);
    const Lanes s = allLanes(sine) * axis;
    const Lanes v = allLanes(1.0f - cosine) * axis;
    return {allLanes(v[0]) * axis + Lanes{cosine, s[2], -s[1], 0},
            Lanes{v[0], v[1], v[1], 0} * Lanes{axis[1], axis[1], axis[2], 0} +
                Lanes{-s[2], cosine, s[0], 0},
            v * allLanes(axis[2]) + Lanes{s[1], -s[0], cosine, 0}};
}

/// What the channels of one node give together. The translation is a whole matrix, since it also
/// takes what a matrix channel gives; until one does, only its last column counts.
class Pose {
public:
    /// @p offset has 0 in its last lane.
    void move(Lanes offset) {
        if (isPlaced_) {
            offset = placed_[0] * allLanes(offset[0]) + placed_[1] * allLanes(offset[1]) +
                     placed_[2] * allLanes(offset[2]);
        }
        offset_ += offset;
    }
    void place(const Eigen::Matrix4f& placement) {
        for (std::size_t i = 0; i < 3; ++i) placed_[i] = loadLanes(placement.data() + 4 * i);
        offset_ = loadLanes(placement.data() + 12);
        isPlaced_ = true;
    }
    void turn(const Axes& axes) {
        turned_ = isTurned_ ? turnedAxes(axes) : axes;
        isTurned_ = true;
    }
    void scale(Lanes factors) { scale_ *= factors; }
    void setScale(const Eigen::Vector3f& scale) { scale_ = loadThreeLanes(scale.data()); }

    Eigen::Vector3f getScale() const { return {scale_[0], scale_[1], scale_[2]}; }
    Eigen::Matrix4f matrix() const {
        Axes axes{Lanes{1, 0, 0, 0}, Lanes{0, 1, 0, 0}, Lanes{0, 0, 1, 0}};
        if (isPlaced_) axes = placed_;
        for (std::size_t i = 0; isTurned_ && i < 3; ++i) {
            const Lanes turned = turned_[i];
            axes[i] = isPlaced_
                          ? placed_[0] * allLanes(turned[0]) + placed_[1] * allLanes(turned[1]) +
                                placed_[2] * allLanes(turned[2])
                          : withoutLast(turned);
        }
        Eigen::Matrix4f matrix;
        for (std::size_t i = 0; i < 3; ++i) storeLanes(matrix.data() + 4 * i, axes[i]);
        storeLanes(matrix.data() + 12, offset_);
        return matrix;
    }

private:
    /// Each element adds up its products from the last one.
    Axes turnedAxes(const Axes& axes) const {
        Axes product;
        for (std::size_t i = 0; i < 3; ++i) {
            product[i] = turned_[0] * allLanes(axes[i][0]) +
                         (turned_[1] * allLanes(axes[i][1]) + turned_[2] * allLanes(axes[i][2]));
        }
        return product;
    }

    Lanes offset_ = {0, 0, 0, 1};
    Lanes scale_ = {1, 1, 1, 1};
    Axes placed_;  ///< Counts once isPlaced_.
    Axes turned_;  ///< Counts once isTurned_.
    bool isPlaced_ = false;
    bool isTurned_ = false;
};

}  // namespace vantorix::scene
