#pragma once

#include <Eigen/Core>

#include "scene/SceneExport.h"
#include "scene/physics/IPhysicsShape.h"

namespace vantorix::scene {

/// The plane a x + b y + c z + d = 0, stored as (a, b, c, d).
class VANTORIX_SCENE_EXPORT ShapePlane final : public IPhysicsShape {
public:
    explicit ShapePlane(const Eigen::Vector4f& equation);

    ShapeType getType() const override;
    const Eigen::Vector4f& getEquation() const;

private:
    Eigen::Vector4f equation_;
};

}  // namespace vantorix::scene
