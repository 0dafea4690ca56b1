#pragma once

#include <Eigen/Core>

#include "scene/SceneExport.h"
#include "scene/physics/IPhysicsShape.h"

namespace vantorix::scene {

/// What the tapered shapes store: a height and a pair of radii at either end.
class VANTORIX_SCENE_EXPORT TaperedShape : public IPhysicsShape {
public:
    float getHeight() const;
    const Eigen::Vector2f& getRadius1() const;
    const Eigen::Vector2f& getRadius2() const;

protected:
    TaperedShape(float height, const Eigen::Vector2f& radius1, const Eigen::Vector2f& radius2);
    TaperedShape(const TaperedShape&) = default;
    TaperedShape& operator=(const TaperedShape&) = default;
    ~TaperedShape() = default;

private:
    float height_;
    Eigen::Vector2f radius1_;
    Eigen::Vector2f radius2_;
};

}  // namespace vantorix::scene
