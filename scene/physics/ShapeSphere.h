#pragma once

#include "scene/SceneExport.h"
#include "scene/physics/IPhysicsShape.h"

namespace vantorix::scene {

/// A sphere around the origin.
class VANTORIX_SCENE_EXPORT ShapeSphere final : public IPhysicsShape {
public:
    explicit ShapeSphere(float radius);

    ShapeType getType() const override;
    float getRadius() const;

private:
    float radius_;
};

}  // namespace vantorix::scene
