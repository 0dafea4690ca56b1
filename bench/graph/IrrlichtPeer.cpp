#include <irrlicht/irrlicht.h>

#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// One for the process, without a window.
irr::IrrlichtDevice& irrlichtDevice() {
    static auto* const device = [] {
        irr::SIrrlichtCreationParameters parameters;
        parameters.DriverType = irr::video::EDT_NULL;
        parameters.LoggingLevel = irr::ELL_NONE;
        return irr::createDeviceEx(parameters);
    }();
    return *device;
}

irr::core::vector3df toIrrlicht(const Eigen::Vector3f& vector) {
    return {vector.x(), vector.y(), vector.z()};
}

/// Empty scene nodes as TreeCases.h wants them.
class IrrlichtTree {
public:
    ~IrrlichtTree() { scene().clear(); }

    void build(const TreePlan& plan) {
        makeNodes(plan, [&plan](irr::scene::ISceneNode& node, std::size_t i) {
            node.setName(plan.names[i].c_str());
            node.setPosition(toIrrlicht(plan.poses[i].position));
            node.setRotation(toIrrlicht(plan.poses[i].degrees));
        });
        update();
    }
    void buildBare(const TreePlan& plan) {
        makeNodes(plan, [](irr::scene::ISceneNode&, std::size_t) {});
    }

    void move(int node, const Eigen::Vector3f& position) {
        at(node).setPosition(toIrrlicht(position));
    }
    // Every node is made after its parent.
    void update() {
        for (auto* const node : nodes_) node->updateAbsolutePosition();
    }
    const irr::core::matrix4& world(int node) const { return at(node).getAbsoluteTransformation(); }
    const irr::core::matrix4& worldAlong(const std::vector<int>& path) {
        for (const int node : path) at(node).updateAbsolutePosition();
        return world(path.back());
    }
    Eigen::Matrix4f matrix(int node) const {
        return Eigen::Map<const Eigen::Matrix4f>(world(node).pointer());
    }

private:
    static irr::scene::ISceneManager& scene() { return *irrlichtDevice().getSceneManager(); }
    irr::scene::ISceneNode& at(int node) const { return *nodes_[static_cast<std::size_t>(node)]; }

    template <class Dress>
    void makeNodes(const TreePlan& plan, Dress dress) {
        nodes_.reserve(plan.parents.size());
        for (std::size_t i = 0; i < plan.parents.size(); ++i) {
            auto* const parent = i == 0 ? scene().getRootSceneNode() : &at(plan.parents[i]);
            nodes_.push_back(scene().addEmptySceneNode(parent));
            dress(*nodes_.back(), i);
        }
    }

    std::vector<irr::scene::ISceneNode*> nodes_;
};

const bool irrlichtCasesAdded = [] {
    addCases("irrlichtHoldBare", holdBareTree<IrrlichtTree>, {TREE8}, {10000});
    addCases("irrlichtMoveLeaf", moveLeaf<IrrlichtTree>, {TREE8}, {1000, 10000, 100000});
    addCases("irrlichtMoveBranch", moveBranch<IrrlichtTree>, {TREE8}, {1000, 10000, 100000});
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
