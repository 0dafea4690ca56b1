#pragma once

#include "apps/render/DrawList.h"

namespace vantorix::scene {
class Light;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// Adds @p light as it stands at a node with the matrix @p world: it shines along the node's -z.
/// Lights whose values are not finite, and black ones, are left out.
void addLight(const scene::Light& light, const Eigen::Matrix4d& world, Lighting& lighting);

}  // namespace vantorix::apps::render
