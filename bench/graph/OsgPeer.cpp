#include <osg/MatrixTransform>

#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// A tree of transforms, with a name each, as TreeCases.h wants it.
class OsgTree {
public:
    void build(const TreePlan& plan) {
        makeNodes(plan, [&plan](osg::MatrixTransform& node, std::size_t i) {
            node.setName(plan.names[i]);
            node.setMatrix(osg::Matrix(plan.poses[i].matrix.data()));
        });
    }
    void buildBare(const TreePlan& plan) {
        makeNodes(plan, [](osg::MatrixTransform&, std::size_t) {});
    }

    Eigen::Matrix4f matrix(int node) const {
        const auto world = nodes_[static_cast<std::size_t>(node)]->getWorldMatrices().at(0);
        return Eigen::Map<const Eigen::Matrix4d>(world.ptr()).cast<float>();
    }
    void release() { root_ = nullptr; }

private:
    template <class Dress>
    void makeNodes(const TreePlan& plan, Dress dress) {
        nodes_.reserve(plan.parents.size());
        for (std::size_t i = 0; i < plan.parents.size(); ++i) {
            auto* const node = new osg::MatrixTransform;
            nodes_.push_back(node);
            dress(*node, i);
            if (i == 0) {
                root_ = node;
            } else {
                nodes_[static_cast<std::size_t>(plan.parents[i])]->addChild(node);
            }
        }
    }

    osg::ref_ptr<osg::MatrixTransform> root_;
    std::vector<osg::MatrixTransform*> nodes_;
};

const bool osgCasesAdded = [] {
    addCases("osgBuild", buildTree<OsgTree>, {TREE8, FLAT, CHAIN}, {10000, 100000});
    addCases("osgRelease", releaseTree<OsgTree>, {TREE8, FLAT, CHAIN}, {10000});
    addCases("osgHoldBare", holdBareTree<OsgTree>, {TREE8}, {10000});
    addCases("osgBuildPeak", buildPeak<OsgTree>, {TREE8}, {100000});
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
