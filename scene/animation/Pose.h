#pragma once

#include <cstddef>

#include <Eigen/Core>

#include "scene/transform/AxisAngle.h"
#include "scene/transform/Lanes.h"

namespace vantorix::scene {

/// What the channels of one node give together. The translation is a whole matrix, since it also
/// takes what a matrix channel gives; until one does, only its last column counts.
class Pose {  // NOLINT(cppcoreguidelines-pro-type-member-init): the axes, which few need.
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
        const Axes axes = columns();
        for (std::size_t i = 0; i < 3; ++i) storeLanes(matrix + 4 * i, axes[i]);
        storeLanes(matrix + 12, offset_);
    }

private:
    Axes columns() const {
        if (!isTurned_) return isPlaced_ ? placed_ : unitAxes;
        if (!isPlaced_) {
            return {withoutLast(turned_[0]), withoutLast(turned_[1]), withoutLast(turned_[2])};
        }
        return {placed(turned_[0]), placed(turned_[1]), placed(turned_[2])};
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
    Axes placed_;  ///< Written when it is placed.
    Axes turned_;  ///< Written when it is turned.
    bool isPlaced_ = false;
    bool isTurned_ = false;
};

}  // namespace vantorix::scene
