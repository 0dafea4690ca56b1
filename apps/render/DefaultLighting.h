#pragma once

#include "apps/render/DrawList.h"

namespace vantorix::apps::render {

/// A key light over the viewer's left shoulder, a weaker one at the eye, and a little ambience.
Lighting defaultLighting(const Viewpoint& viewpoint);

/// Adds the default light to what @p lighting has.
void helpByDefaultLight(const Viewpoint& viewpoint, Lighting& lighting);

/// Dims all lights together where they would leave nothing but white at @p point: files state
/// brightness in units of many sizes.
void limitExposure(const Eigen::Vector3d& point, Lighting& lighting);

}  // namespace vantorix::apps::render
