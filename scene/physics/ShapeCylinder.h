#pragma once

#include "scene/SceneExport.h"
#include "scene/physics/StraightShape.h"

namespace vantorix::scene {

/// A cylinder: height, then the radii of its cross-section.
class VANTORIX_SCENE_EXPORT ShapeCylinder final : public StraightShape {
public:
    ShapeCylinder(float height, const Eigen::Vector2f& radius);

    ShapeType getType() const override;
};

}  // namespace vantorix::scene
