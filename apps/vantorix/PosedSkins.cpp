#include "apps/vantorix/PosedSkins.h"

#include <boost/make_shared.hpp>

#include "apps/render/PosedMesh.h"
#include "apps/render/SkinPose.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"

namespace vantorix::apps::cli {

PosedSkins::PosedSkins(scene::SceneManager& scene) {
    for (const auto& node : scene.getNodeArray()) addTo(scene, node);
}

PosedSkins::~PosedSkins() {
    for (const auto& [node, instance] : added_) node->removeInstanceGeometry(instance);
}

void PosedSkins::addTo(const scene::SceneManager& scene,
                       const boost::shared_ptr<scene::Node>& node) {
    const Eigen::Matrix4f world = node->getCombinedTransformations();
    for (const auto& shown : node->getInstancedControllers()) {
        const auto controller = shown->getController();
        const auto geometry = shown->getInstanceGeometry();
        if (!controller || !controller->getSkin() || !geometry) continue;
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry->getGeometry());
        if (!mesh) continue;
        const render::SkinPose pose(scene, controller->getSkin(), world);
        const auto posed = render::posedMesh(*mesh, pose, world);
        if (!posed) continue;
        added_.emplace_back(
            node, boost::make_shared<scene::InstanceGeometry>(posed, geometry->getMaterialMap()));
        node->addInstanceGeometry(added_.back().second);
    }
}

}  // namespace vantorix::apps::cli
