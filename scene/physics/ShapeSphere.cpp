#include "scene/physics/ShapeSphere.h"

namespace vantorix::scene {

ShapeSphere::ShapeSphere(float radius) : radius_(radius) {}

IPhysicsShape::ShapeType ShapeSphere::getType() const { return SPHERE; }

float ShapeSphere::getRadius() const { return radius_; }

}  // namespace vantorix::scene
