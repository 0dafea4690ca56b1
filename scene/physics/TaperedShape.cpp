#include "scene/physics/TaperedShape.h"

namespace vantorix::scene {

TaperedShape::TaperedShape(float height, const Eigen::Vector2f& radius1,
                           const Eigen::Vector2f& radius2)
    : height_(height), radius1_(radius1), radius2_(radius2) {}

float TaperedShape::getHeight() const { return height_; }

const Eigen::Vector2f& TaperedShape::getRadius1() const { return radius1_; }

const Eigen::Vector2f& TaperedShape::getRadius2() const { return radius2_; }

}  // namespace vantorix::scene
