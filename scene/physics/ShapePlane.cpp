#include "scene/physics/ShapePlane.h"

namespace vantorix::scene {

ShapePlane::ShapePlane(const Eigen::Vector4f& equation) : equation_(equation) {}

IPhysicsShape::ShapeType ShapePlane::getType() const { return PLANE; }

const Eigen::Vector4f& ShapePlane::getEquation() const { return equation_; }

}  // namespace vantorix::scene
