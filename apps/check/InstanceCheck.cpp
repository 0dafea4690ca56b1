#include "apps/check/InstanceCheck.h"

#include <algorithm>

#include "apps/check/Report.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::apps::check {
namespace {

void checkGeometry(const boost::shared_ptr<scene::IGeometry>& geometry,
                   const scene::SceneManager& scene, const Report& report) {
    if (!geometry) {
        report.add(Finding::ORPHAN, "no geometry");
        return;
    }
    const auto library = scene.getGeometryManager();
    report.require(library && library->getGeometry(geometry->getID()) == geometry, Finding::ORPHAN,
                   "geometry " + geometry->getID() + " is not in the library");
}

void checkMaterial(const std::string& symbol, const boost::shared_ptr<scene::Material>& material,
                   const scene::SceneManager& scene, const Report& report) {
    if (!material) {
        report.add(Finding::ORPHAN, "no material for symbol " + symbol);
        return;
    }
    const auto library = scene.getMaterialList();
    report.require(std::find(library.begin(), library.end(), material) != library.end(),
                   Finding::ORPHAN,
                   "material " + material->getMaterialID() + " is not in the library");
}

}  // namespace

void checkInstance(const scene::InstanceGeometry& instance, const scene::SceneManager& scene,
                   const Report& report) {
    const auto geometry = instance.getGeometry();
    checkGeometry(geometry, scene, report);
    // Only making the map changeable needs a changeable instance.
    auto bindings = instance;
    const auto& materials = bindings.getMaterialMap();
    for (const auto& [symbol, material] : materials) {
        checkMaterial(symbol, material, scene, report);
    }
    const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
    if (!mesh) return;
    for (unsigned int i = 0; i < mesh->getPrimitiveCount(); ++i) {
        const auto symbol = mesh->getPrimitive(i)->getMaterialSymbol();
        report.require(materials.count(symbol) > 0, Finding::ORPHAN,
                       "symbol " + symbol + " of primitive " + std::to_string(i) + " is not bound");
    }
}

void checkInstance(const scene::InstanceController& instance, const scene::SceneManager& scene,
                   const Report& report) {
    const auto controller = instance.getController();
    const auto library = scene.getControllersLibrary();
    if (!controller) {
        report.add(Finding::ORPHAN, "no controller");
    } else if (std::find(library.begin(), library.end(), controller) == library.end()) {
        report.add(Finding::ORPHAN, "controller " + controller->getID() + " is not in the library");
    }
    const auto geometry = instance.getInstanceGeometry();
    report.require(geometry != nullptr, Finding::ORPHAN, "no geometry instance");
    if (geometry) checkInstance(*geometry, scene, report);
    for (const auto& skeleton : instance.getSkeletons()) {
        report.require(scene.getNodeByID(skeleton) != nullptr, Finding::ORPHAN,
                       "no node for skeleton " + skeleton);
    }
}

}  // namespace vantorix::apps::check
