#include "scene/physics/ShapeCylinder.h"

namespace vantorix::scene {

ShapeCylinder::ShapeCylinder(float height, const Eigen::Vector2f& radius)
    : StraightShape(height, radius) {}

IPhysicsShape::ShapeType ShapeCylinder::getType() const { return CYLINDER; }

}  // namespace vantorix::scene
