#pragma once

#include "apps/render/DrawList.h"

namespace vantorix::apps::render {

/// Adds a key light over the viewer's left shoulder, a weaker one at the eye, and a little
/// ambience.
void helpByDefaultLight(const Viewpoint& viewpoint, Lighting& lighting);

/// Dims all lights together where they would leave nothing but white at @p point: files state
/// brightness in units of many sizes. Adds the least ambience that shows shapes in the shade.
void balanceExposure(const Eigen::Vector3d& point, Lighting& lighting);

}  // namespace vantorix::apps::render
