#include "scene/physics/ShapeTaperedCapsule.h"

namespace vantorix::scene {

ShapeTaperedCapsule::ShapeTaperedCapsule(float height, const Eigen::Vector2f& radius1,
                                         const Eigen::Vector2f& radius2)
    : TaperedShape(height, radius1, radius2) {}

IPhysicsShape::ShapeType ShapeTaperedCapsule::getType() const { return TAPERED_CAPSULE; }

}  // namespace vantorix::scene
