#pragma once

#include <Eigen/Core>

#include "apps/render/DrawList.h"

namespace vantorix::apps::render {

/// An axis-aligned box in world space. Usable when it is finite and not inverted; one point is.
struct Box {
    Eigen::Vector3d least{0.0, 0.0, 0.0};
    Eigen::Vector3d most{0.0, 0.0, 0.0};

    bool isUsable() const;
};

/// What a camera sees, apart from where it stands.
struct Lens {
    bool orthographic = false;
    double yFov = 45.0;  ///< Degrees; of an orthographic lens half the height of its view.
    double zNear = 0.1;
    double zFar = 10000.0;
};

/// The box of all finite corners of the list as they stand in the world.
Box boundsOf(const DrawList& list);

/// A three-quarter view that shows the whole box.
/// @param upAxis 0, 1 or 2: the world's x, y or z axis points up.
/// @param aspect width of the picture by its height.
Viewpoint frame(const Box& box, int upAxis, double aspect);

/// The view of a camera that looks along -z of @p world with y up. Scale in @p world changes the
/// lengths of the lens, shear is ignored; values that show nothing at all are replaced.
Viewpoint throughLens(const Lens& lens, const Eigen::Matrix4d& world, double aspect);

}  // namespace vantorix::apps::render
