#pragma once

#include <array>
#include <cmath>

#include <Eigen/Core>

#include "scene/transform/Lanes.h"

namespace vantorix::scene {

/// Three columns of a matrix.
using Axes = std::array<Lanes, 3>;

constexpr Axes unitAxes = {Lanes{1, 0, 0, 0}, Lanes{0, 1, 0, 0}, Lanes{0, 0, 1, 0}};

/// The rotation about an axis of any length, which may be 0, by degrees in the last lane. What the
/// last lanes of the columns hold means nothing. As AngleAxis computes it, a column at a time.
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

/// What the channels of one node give together. The translation is a whole matrix, since it also
/// takes what a matrix channel gives; until one does, only its last column counts.
class Pose {
public:
    /// @p offset has 0 in its last lane.
    void move(Lanes offset) { offset_ += isPlaced_ ? placed(offset) : offset; }
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

    /// Writes four floats.
    void getScale(float* scale) const { storeLanes(scale, scale_); }
    /// Writes 16 floats, column by column.
    void getMatrix(float* matrix) const {
        for (std::size_t i = 0; i < 3; ++i) storeLanes(matrix + 4 * i, column(i));
        storeLanes(matrix + 12, offset_);
    }

private:
    Lanes column(std::size_t i) const {
        if (!isPlaced_) return withoutLast(turned_[i]);
        return isTurned_ ? placed(turned_[i]) : placed_[i];
    }
    Lanes placed(Lanes vector) const {
        return placed_[0] * allLanes(vector[0]) + placed_[1] * allLanes(vector[1]) +
               placed_[2] * allLanes(vector[2]);
    }
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
    Axes placed_ = unitAxes;
    Axes turned_ = unitAxes;
    bool isPlaced_ = false;
    bool isTurned_ = false;
};

}  // namespace vantorix::scene
