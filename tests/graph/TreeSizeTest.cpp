#include <gtest/gtest.h>

#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using scene::Node;
using scene::SceneManager;

/// A scene whose events nobody hears, so that large trees are made quickly.
struct LargeTrees : testing::Test {
    ~LargeTrees() override { scene->stop(); }

    boost::shared_ptr<Node> makeNode(const std::string& id) const {
        const auto node = boost::make_shared<Node>(scene);
        node->setID(id);
        return node;
    }

    boost::shared_ptr<SceneManager> scene = boost::make_shared<SceneManager>(nullptr);
};

TEST_F(LargeTrees, AMillionDeepAreBuiltFromEitherEndAskedAndReleased) {
    constexpr int depth = 1000000;
    auto last = scene->getRoot();
    for (int i = 0; i < depth / 2; ++i) {
        const auto child = boost::make_shared<Node>(scene);
        last->addNode(child);
        last = child;
    }
    auto top = makeNode("bottom");
    const auto bottom = top;
    for (int i = 0; i < depth / 2; ++i) {
        const auto above = boost::make_shared<Node>(scene);
        above->addNode(top);
        top = above;
    }
    last->addNode(top);
    scene->getRoot()->addTranslation(1, 2, 3);
    EXPECT_EQ(bottom->getCombinedTransformations()(0, 3), 1.0f);
    EXPECT_EQ(scene->getNodeByID("bottom"), bottom);
    EXPECT_EQ(scene->getNodeArray().size(), depth + 2u);
    EXPECT_EQ(scene->getRoot()->getBVMax(), Eigen::Vector3f(0, 0, 0));
    bottom->addNode(scene->getRoot());
    EXPECT_EQ(bottom->getChildCount(), 0u) << "it would close a circle";
}

TEST_F(LargeTrees, AHundredThousandWideKeepTheirOrderUnderRemovals) {
    constexpr unsigned int width = 100000;
    const auto root = scene->getRoot();
    std::vector<boost::shared_ptr<Node>> kept;
    std::vector<boost::shared_ptr<Node>> removed;
    for (unsigned int i = 0; i < width; ++i) {
        const auto child = makeNode("n" + std::to_string(i));
        root->addNode(child);
        (i % 3 == 0 ? kept : removed).push_back(child);
    }
    for (const auto& child : removed) root->removeChild(child);
    ASSERT_EQ(root->getChildCount(), kept.size());
    for (unsigned int i = 0; i < kept.size(); ++i) ASSERT_EQ(root->getChildNode(i), kept[i]);
    EXPECT_EQ(scene->getNodeByID("n1"), nullptr);
    EXPECT_EQ(scene->getNodeByID("n99999"), kept.back());
    while (root->getChildCount() > 0) root->removeChild(root->getChildNode(0));
    EXPECT_EQ(scene->getNodeArray().size(), 1u);
}

}  // namespace
}  // namespace vantorix::test
