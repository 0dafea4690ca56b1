#pragma once

#include <Eigen/Core>

#include "scene/SceneExport.h"
#include "scene/physics/IPhysicsShape.h"

namespace vantorix::scene {

/// A box around the origin.
class VANTORIX_SCENE_EXPORT ShapeBox final : public IPhysicsShape {
public:
    explicit ShapeBox(const Eigen::Vector3f& halfExtents);

    ShapeType getType() const override;
    const Eigen::Vector3f& getHalfExtents() const;

private:
    Eigen::Vector3f halfExtents_;
};

}  // namespace vantorix::scene
