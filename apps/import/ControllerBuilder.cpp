#include "apps/import/ControllerBuilder.h"

#include <set>
#include <unordered_map>

#include <boost/make_shared.hpp>

#include "apps/import/SkinAssembly.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::import {
namespace {

/// Tells which nodes stand below a joint; no way up is gone twice.
class JointAncestors {
public:
    JointAncestors(const std::vector<ModelNode>& nodes, const std::set<std::uint32_t>& joints)
        : nodes_(nodes), joints_(joints) {}

    bool has(std::uint32_t node) {
        std::vector<std::uint32_t> way;
        bool found = false;
        while (node != 0 && !found) {
            const auto known = known_.find(node);
            if (known != known_.end()) {
                found = known->second;
                break;
            }
            way.push_back(node);
            node = nodes_[node].parent;
            found = joints_.count(node) > 0;
        }
        for (const auto passed : way) known_[passed] = found;
        return found;
    }

private:
    const std::vector<ModelNode>& nodes_;
    const std::set<std::uint32_t>& joints_;
    std::unordered_map<std::uint32_t, bool> known_;
};

}  // namespace

ControllerBuilder::ControllerBuilder(const std::vector<ModelNode>& nodes,
                                     const std::vector<std::string>& nodeIds,
                                     boost::shared_ptr<scene::SceneManager> scene,
                                     ImportReport& report)
    : nodes_(nodes), nodeIds_(nodeIds), scene_(scene), ids_("controller", report) {
    for (const auto& controller : scene->getControllersLibrary()) ids_.reserve(controller->getID());
}

BuiltController ControllerBuilder::build(const SkinAssembly& assembly,
                                         boost::shared_ptr<scene::Mesh> mesh) {
    const auto skin = boost::make_shared<scene::Skin>(mesh);
    const std::string id = ids_.take(mesh->getID() + "-skin");
    assembly.fill(id, nodeIds_, *skin);
    const auto controller = boost::make_shared<scene::Controller>(id, mesh->getName());
    controller->setSkin(skin);
    scene_->addController(controller);
    return {controller, skeletonsOf(assembly)};
}

/// The joints that stand below no other joint of the skin, in the order of the document.
std::vector<std::string> ControllerBuilder::skeletonsOf(const SkinAssembly& assembly) const {
    std::set<std::uint32_t> joints;
    for (const auto& joint : assembly.getJoints()) joints.insert(joint.node);
    JointAncestors ancestors(nodes_, joints);
    std::vector<std::string> roots;
    for (const auto joint : joints) {
        if (!ancestors.has(joint)) roots.push_back(nodeIds_[joint]);
    }
    return roots;
}

}  // namespace vantorix::apps::import
