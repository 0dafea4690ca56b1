#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/IdRegistry.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::scene {
class Controller;
class Mesh;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

class SkinAssembly;

/// A skin in the controller library, and the nodes at the roots of its skeletons.
struct BuiltController {
    boost::shared_ptr<scene::Controller> controller;
    std::vector<std::string> skeletons;
};

/// Adds skins to the controller library of a scene, each named after its geometry: "mesh-skin".
class ControllerBuilder {
public:
    /// Refers to @p nodes and @p report. @p nodeIds are the IDs that the nodes get, by number.
    ControllerBuilder(const std::vector<ModelNode>& nodes, const std::vector<std::string>& nodeIds,
                      boost::shared_ptr<scene::SceneManager> scene, ImportReport& report);

    BuiltController build(const SkinAssembly& assembly, boost::shared_ptr<scene::Mesh> mesh);

private:
    std::vector<std::string> skeletonsOf(const SkinAssembly& assembly) const;

    const std::vector<ModelNode>& nodes_;
    const std::vector<std::string>& nodeIds_;
    boost::shared_ptr<scene::SceneManager> scene_;
    IdRegistry ids_;
};

}  // namespace vantorix::apps::import
