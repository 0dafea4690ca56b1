// World matrices to the last bit, whatever became of the tree: parents multiply from the top down.

#include <random>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using Matrix4f = Eigen::Matrix4f;
using scene::Node;
using NodePointer = boost::shared_ptr<Node>;

Matrix4f localOf(const Node& node) { return node.getTransformations(); }
Matrix4f rotationOf(const Node& node) { return node.getRotation(); }

/// The plain recursion: the parent's answer times the own matrix, ended by a node met before.
Matrix4f recursed(const Node& node, Matrix4f (*own)(const Node&), std::set<const Node*> met = {}) {
    met.insert(&node);
    const auto parent = node.getParent();
    if (!parent || met.count(parent.get()) > 0) return own(node);
    return recursed(*parent, own, met) * own(node);
}

class WorldMatrix : public testing::TestWithParam<unsigned int> {
protected:
    WorldMatrix() {
        scene_->setEventManager(nullptr);
        for (int i = 0; i < 9; ++i) nodes_.push_back(scene_.makeNode("node"));
        for (const auto& node : nodes_) place(*node);
    }

    const NodePointer& any() { return nodes_[random_() % nodes_.size()]; }

    float number() { return std::uniform_real_distribution<float>(-1.5f, 1.5f)(random_); }

    void place(Node& node) {
        node.setTranslation(Eigen::Translation3f(number(), number(), number()));
        node.setScale({number(), number(), number()});
        node.setRotation(Matrix4f::NullaryExpr([this] { return number(); }));
    }

    /// Removals leave nodes that still name a parent; additions below them close circles.
    void edit() {
        const auto node = any();
        const auto choice = random_() % 5;
        if (choice < 2) any()->addNode(node);
        if (choice == 2) scene_->removeNode(node);
        if (choice == 3) place(*node);
        if (choice == 4 && random_() % 8 == 0) {
            nodes_[random_() % nodes_.size()] = scene_.makeNode("node");
        }
    }

    RecordedScene scene_;
    std::vector<NodePointer> nodes_;

private:
    std::mt19937 random_{GetParam()};
};

TEST_P(WorldMatrix, HasTheBitsOfTheRecursionOverParents) {
    for (int i = 0; i < 600 && !HasFailure(); ++i) {
        edit();
        const auto& node = *any();
        EXPECT_EQ(node.getCombinedTransformations(), recursed(node, localOf)) << "edit " << i;
        EXPECT_EQ(node.getCombinedRotations(), recursed(node, rotationOf)) << "edit " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorldMatrix, testing::Range(0u, 10u));

}  // namespace
}  // namespace vantorix::test
