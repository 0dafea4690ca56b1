#include <OgreLogManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// One for the process; without plugins there is nothing to draw with.
Ogre::Root& ogreRoot() {
    static auto* const log = [] {
        auto* const manager = new Ogre::LogManager;
        manager->createLog("", true, false, true);
        return manager;
    }();
    benchmark::DoNotOptimize(log);
    static auto* const root = new Ogre::Root("", "", "");
    return *root;
}

Ogre::Vector3 toOgre(const Eigen::Vector3f& vector) { return {vector.x(), vector.y(), vector.z()}; }

/// A scene manager's nodes as TreeCases.h wants them.
class OgreTree {
public:
    OgreTree() : scene_(ogreRoot().createSceneManager()) {}
    ~OgreTree() { ogreRoot().destroySceneManager(scene_); }
    OgreTree(const OgreTree&) = delete;
    OgreTree& operator=(const OgreTree&) = delete;

    void build(const TreePlan& plan) {
        for (std::size_t i = 0; i < plan.parents.size(); ++i) {
            auto& parent = i == 0 ? *scene_->getRootSceneNode() : at(plan.parents[i]);
            const auto& turn = plan.poses[i].rotation;
            nodes_.push_back(parent.createChildSceneNode(
                plan.ids[i], toOgre(plan.poses[i].position),
                Ogre::Quaternion(turn.w(), turn.x(), turn.y(), turn.z())));
        }
        update();
    }
    void buildBare(const TreePlan& plan) {
        for (std::size_t i = 0; i < plan.parents.size(); ++i) {
            auto& parent = i == 0 ? *scene_->getRootSceneNode() : at(plan.parents[i]);
            nodes_.push_back(parent.createChildSceneNode());
        }
        update();
    }

    void move(int node, const Eigen::Vector3f& position) { at(node).setPosition(toOgre(position)); }
    void update() { scene_->getRootSceneNode()->_update(true, false); }
    const Ogre::Affine3& world(int node) const { return at(node)._getFullTransform(); }
    Eigen::Matrix4f matrix(int node) const {
        return Eigen::Map<const Eigen::Matrix4f>(world(node)[0]).transpose();
    }

    void holdNodes() {}
    void remove(int parent, int child) { at(parent).removeChild(&at(child)); }
    int childCount(int node) const { return static_cast<int>(at(node).numChildren()); }

    const Ogre::SceneManager& scene() const { return *scene_; }

private:
    Ogre::SceneNode& at(int node) const { return *nodes_[static_cast<std::size_t>(node)]; }

    Ogre::SceneManager* scene_;
    std::vector<Ogre::SceneNode*> nodes_;
};

class OgreFinder {
public:
    explicit OgreFinder(const TreePlan& plan) { tree_.build(plan); }
    bool contains(const std::string& id) const { return tree_.scene().hasSceneNode(id); }

private:
    OgreTree tree_;
};

const bool ogreCasesAdded = [] {
    addCases("ogreHoldBare", holdBareTree<OgreTree>, {TREE8}, {10000});
    addCases("ogreMoveAll", moveAll<OgreTree>, {TREE8, FLAT, CHAIN}, {10000, 100000});
    addCases("ogreRemoveHalf", removeHalf<OgreTree>, {FLAT}, {10000, 100000});
    addFindCases<OgreFinder>("ogreFind");
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
