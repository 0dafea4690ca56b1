#pragma once

#include <optional>

#include <Eigen/Core>

#include "apps/render/DrawList.h"
#include "apps/render/Picture.h"

namespace vantorix::apps::render {

/// A way through the world, from the near plane on.
struct WorldRay {
    Eigen::Vector3d origin, direction;
};

/// What lies behind the middle of a pixel. @p x counts from the left, @p y from the top.
WorldRay rayThrough(const Viewpoint& viewpoint, int width, int height, int x, int y);

/// Where a place in the world appears, in pixels from the left and the top; empty when it lies
/// outside the picture or behind the eye.
std::optional<Eigen::Vector2d> pixelOf(const Viewpoint& viewpoint, int width, int height,
                                       const Eigen::Vector3d& place);

/// Draws a ring with a dot in its middle, in pixels from the left and the top.
void drawMarker(const Eigen::Vector2d& middle, Picture& picture);

}  // namespace vantorix::apps::render
