#pragma once

namespace vantorix::scene {
class InstanceController;
class InstanceGeometry;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::check {

class Report;

/// Whether the geometry and the materials are there, also in the libraries, and whether all parts
/// of the mesh have a material.
void checkInstance(const scene::InstanceGeometry& instance, const scene::SceneManager& scene,
                   const Report& report);

/// Whether controller, geometry and skeletons are there.
void checkInstance(const scene::InstanceController& instance, const scene::SceneManager& scene,
                   const Report& report);

}  // namespace vantorix::apps::check
