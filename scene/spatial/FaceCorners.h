#pragma once

#include <array>

#include <Eigen/Core>

#include "scene/geometry/Triangle.h"

namespace vantorix::scene {

/// The positions of a triangle as it last cached them, which its own tests go by.
class FaceCorners {
public:
    static std::array<Eigen::Vector3f, 3> of(const Triangle& triangle) {
        return {triangle.p1_, triangle.p2_, triangle.p3_};
    }
};

}  // namespace vantorix::scene
