#include "scene/physics/StraightShape.h"

namespace vantorix::scene {

StraightShape::StraightShape(float height, const Eigen::Vector2f& radius)
    : height_(height), radius_(radius) {}

float StraightShape::getHeight() const { return height_; }

const Eigen::Vector2f& StraightShape::getRadius() const { return radius_; }

}  // namespace vantorix::scene
