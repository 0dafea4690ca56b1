#pragma once

#include "apps/check/Finding.h"

namespace vantorix::scene {
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::check {

class Report;

/// Reads a whole scene once and lists everything in it that cannot be meant. Changes nothing.
/// Threads: lock the scene while its synchronisation thread runs.
class SceneCheck {
public:
    explicit SceneCheck(scene::SceneManager& scene) : scene_(scene) {}

    /// In the order of identifiers, materials, geometries, controllers, nodes, cameras, animations.
    Findings run();

private:
    void checkIds(const Report& report);
    void checkMaterials(const Report& report);
    void checkGeometries(const Report& report);
    void checkControllers(const Report& report);
    void checkNodes(const Report& report);
    void checkNode(const scene::Node& node, const Report& report);
    void checkInstances(const scene::Node& node, const Report& report);
    void checkCameras(const Report& report);
    void checkAnimations(const Report& report);

    scene::SceneManager& scene_;
};

}  // namespace vantorix::apps::check
