#include "scene/physics/ShapeBox.h"

namespace vantorix::scene {

ShapeBox::ShapeBox(const Eigen::Vector3f& halfExtents) : halfExtents_(halfExtents) {}

IPhysicsShape::ShapeType ShapeBox::getType() const { return BOX; }

const Eigen::Vector3f& ShapeBox::getHalfExtents() const { return halfExtents_; }

}  // namespace vantorix::scene
