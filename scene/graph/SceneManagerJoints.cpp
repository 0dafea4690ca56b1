#include <utility>

#include "scene/controller/Controller.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/JointPlacement.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
namespace {

using Controllers = std::vector<boost::shared_ptr<Controller>>;

/// The positions that a joints scene carries, and what else its checks look at.
struct GivenPositions {
    explicit GivenPositions(const GeometryManager& manager) : geometries(manager.getCount()) {
        if (geometries != 1) return;
        const auto mesh =
            boost::dynamic_pointer_cast<Mesh>(manager.getGeometry(manager.getIDs().front()));
        if (!mesh) return;
        for (const auto& mapping : mesh->getVertices()) {
            if (mapping.semantic != POSITION) continue;
            ++mappings;
            count = mapping.stream ? mapping.stream->count : 0;
            if (mapping.stream) values = mapping.stream->values;
        }
    }

    bool areFor(std::size_t joints) const {
        return count >= 0 && static_cast<std::size_t>(count) == joints &&
               values.size() / 3 >= joints;
    }

    unsigned int geometries;
    unsigned int mappings = 0;
    int count = 0;
    std::vector<float> values;
};

/// The first check that fails, in the words of the log; null when all pass.
const char* findJointsProblem(const GivenPositions& given, std::size_t joints,
                              const Controllers& controllers) {
    if (given.geometries != 1) return "Invalid joints scene. Found more than one geometry.";
    if (given.mappings > 1) {
        return "Invalid joints scene. Found more than one vertices stream mapping.";
    }
    if (!given.areFor(joints)) return "Invalid joints scene. Found different number of joints.";
    if (controllers.size() != 1 || !controllers.front()) {
        return "Invalid scene. Scene must have one and only one controller.";
    }
    if (!controllers.front()->getSkin()) {
        return "Invalid scene. Scene must have one and only one controller with a valid skin.";
    }
    return nullptr;
}

/// A node whose children are being visited, and where it stands among the joints.
struct JointLevel {
    boost::shared_ptr<Node> node;
    int joint;
    unsigned int nextChild;
};

}  // namespace

void SceneManager::replaceJoints(boost::shared_ptr<SceneManager> jointsScene) {
    if (!jointsScene) return;
    const auto self = weak_from_this().lock();
    const GivenPositions given(*jointsScene->getGeometryManager());
    std::vector<boost::shared_ptr<Node>> joints;
    std::vector<int> parents;
    transverseSceneForJoints(root_, joints, parents);
    const auto controllers = controllersLibrary_;
    if (const auto* const problem = findJointsProblem(given, joints.size(), controllers)) {
        logger_ << problem;
        return;
    }
    const auto skin = controllers.front()->getSkin();
    for (std::size_t i = 0; i < joints.size(); ++i) {
        placeJoint(*joints[i], Eigen::Map<const Eigen::Vector3f>(given.values.data() + 3 * i));
    }
    bindSkin(*skin, joints);
}

// With a stack of its own: trees may be deeper than the program's.
void SceneManager::transverseSceneForJoints(boost::shared_ptr<Node> node,
                                            std::vector<boost::shared_ptr<Node>>& joints,
                                            std::vector<int>& parents) const {
    std::vector<JointLevel> levels;
    const auto enter = [&](const boost::shared_ptr<Node>& entered) {
        int place = -1;
        if (entered->getType() == "JOINT") {
            place = static_cast<int>(joints.size());
            joints.push_back(entered);
            parents.push_back(levels.empty() ? -1 : levels.back().joint);
        }
        levels.push_back({entered, place, 0});
    };
    if (node) enter(node);
    while (!levels.empty()) {
        auto& level = levels.back();
        if (level.nextChild < level.node->getChildCount()) {
            enter(level.node->getChildNode(level.nextChild++));
        } else {
            levels.pop_back();
        }
    }
}

}  // namespace vantorix::scene
