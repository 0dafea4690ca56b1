#include "scene/physics/ShapeCapsule.h"

namespace vantorix::scene {

ShapeCapsule::ShapeCapsule(float height, const Eigen::Vector2f& radius)
    : StraightShape(height, radius) {}

IPhysicsShape::ShapeType ShapeCapsule::getType() const { return CAPSULE; }

}  // namespace vantorix::scene
