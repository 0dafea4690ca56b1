#include "scene/physics/ShapeTaperedCylinder.h"

namespace vantorix::scene {

ShapeTaperedCylinder::ShapeTaperedCylinder(float height, const Eigen::Vector2f& radius1,
                                           const Eigen::Vector2f& radius2)
    : TaperedShape(height, radius1, radius2) {}

IPhysicsShape::ShapeType ShapeTaperedCylinder::getType() const { return TAPERED_CYLINDER; }

}  // namespace vantorix::scene
