#pragma once

#include "scene/SceneExport.h"
#include "scene/physics/StraightShape.h"

namespace vantorix::scene {

/// A capsule: height, then the radii of its caps.
class VANTORIX_SCENE_EXPORT ShapeCapsule final : public StraightShape {
public:
    ShapeCapsule(float height, const Eigen::Vector2f& radius);

    ShapeType getType() const override;
};

}  // namespace vantorix::scene
