#pragma once

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// A geometric shape of a rigid body, by type; the class of that name holds its measures.
/// The library never interprets them.
class VANTORIX_SCENE_EXPORT IPhysicsShape {
public:
    enum ShapeType : int {
        PLANE = 0,
        BOX = 1,
        SPHERE = 2,
        CYLINDER = 3,
        TAPERED_CYLINDER = 4,
        CAPSULE = 5,
        TAPERED_CAPSULE = 6
    };

    virtual ShapeType getType() const = 0;

protected:
    IPhysicsShape() = default;
    IPhysicsShape(const IPhysicsShape&) = default;
    IPhysicsShape& operator=(const IPhysicsShape&) = default;
    ~IPhysicsShape() = default;  ///< Shapes are released through the pointer made for their class.
};

}  // namespace vantorix::scene
