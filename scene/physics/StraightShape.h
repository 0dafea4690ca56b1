#pragma once

#include <Eigen/Core>

#include "scene/SceneExport.h"
#include "scene/physics/IPhysicsShape.h"

namespace vantorix::scene {

/// What cylinder and capsule store: a height and one pair of radii.
class VANTORIX_SCENE_EXPORT StraightShape : public IPhysicsShape {
public:
    float getHeight() const;
    const Eigen::Vector2f& getRadius() const;

protected:
    StraightShape(float height, const Eigen::Vector2f& radius);
    StraightShape(const StraightShape&) = default;
    StraightShape& operator=(const StraightShape&) = default;
    ~StraightShape() = default;

private:
    float height_;
    Eigen::Vector2f radius_;
};

}  // namespace vantorix::scene
