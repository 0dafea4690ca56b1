// World matrices to the last bit, whatever became of the tree: parents multiply from the top down.

#include <cmath>
#include <cstring>
#include <limits>
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

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

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

TEST_P(WorldMatrix, FollowsMovesAnywhereAbove) {
    while (nodes_.size() < 15) nodes_.push_back(scene_.makeNode("node"));
    for (std::size_t i = 1; i < nodes_.size(); ++i) nodes_[(i - 1) / 2]->addNode(nodes_[i]);
    for (int i = 0; i < 300 && !HasFailure(); ++i) {
        place(*any());
        for (int j = below(6); j > 0; --j) {  // Some are asked again before the next move.
            const auto& node = *any();
            EXPECT_EQ(node.getCombinedTransformations(), recursed(node, localOf)) << "move " << i;
        }
    }
}

/// As the matrix is defined: (rotation + translation * its last row) * scale, by columns.
Matrix4f composed(const Node& node) {
    const auto rotation = node.getRotation();
    Eigen::Vector4f translation(0, 0, 0, 0), scale(1, 1, 1, 1);
    translation.head<3>() = node.getTranslation().vector();
    scale.head<3>() = node.getScale();
    Matrix4f matrix;
    for (int i = 0; i < 16; ++i) {
        matrix(i % 4, i / 4) =
            (rotation(i % 4, i / 4) + translation(i % 4) * rotation(3, i / 4)) * scale(i / 4);
    }
    return matrix;
}

/// NaNs count as equal, zeros of different signs do not.
bool haveSameBits(const Matrix4f& left, const Matrix4f& right) {
    for (int i = 0; i < 16; ++i) {
        const float a = left(i % 4, i / 4), b = right(i % 4, i / 4);
        if (!(std::isnan(a) && std::isnan(b)) && std::memcmp(&a, &b, sizeof(a)) != 0) return false;
    }
    return true;
}

TEST_P(WorldMatrix, StartsFromALocalOneThatIsComposedWhateverTheNumbers) {
    const auto node = nodes_[0];
    constexpr float infinity = std::numeric_limits<float>::infinity();
    // Mostly numbers with which a move changes the last column only.
    const auto pick = [&](float odd) { return below(9) == 0 ? odd : number(); };
    const auto vector = [&](float odd) {
        return Eigen::Vector3f(pick(odd), pick(odd), pick(-odd));
    };
    for (int i = 0; i < 400; ++i) {
        Matrix4f rotation = Matrix4f::Identity();
        switch (below(8)) {
            case 0:
                rotation.topLeftCorner<3, 3>() << vector(0), vector(-0.0f), vector(infinity);
                if (below(4) == 0) rotation(below(4), below(4)) = pick(-0.0f);
                node->setRotation(rotation);
                break;
            case 1:
                node->setScale(vector(infinity));
                break;
            case 2:
                node->addTranslation(vector(0));
                break;
            case 3:
                node->move(vector(-0.0f));
                break;
            default:
                node->setTranslation(Eigen::Translation3f(vector(i % 3 == 0 ? infinity : -0.0f)));
        }
        ASSERT_TRUE(haveSameBits(node->getTransformations(), composed(*node)));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorldMatrix, testing::Range(0u, 10u));

}  // namespace
}  // namespace vantorix::test
