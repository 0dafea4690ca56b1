#pragma once

#include "scene/SceneExport.h"
#include "scene/physics/TaperedShape.h"

namespace vantorix::scene {

/// A cylinder with other radii at its second end.
class VANTORIX_SCENE_EXPORT ShapeTaperedCylinder final : public TaperedShape {
public:
    ShapeTaperedCylinder(float height, const Eigen::Vector2f& radius1,
                         const Eigen::Vector2f& radius2);

    ShapeType getType() const override;
};

}  // namespace vantorix::scene
