#include <random>
#include <set>

#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/utils/Matrix.h"

#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using scene::Node;
using scene::SceneManager;

/// What a node is, without any cache or index.
struct PlainNode {
    std::string id;
    std::string name;
    Eigen::Vector3f translation = Eigen::Vector3f::Zero();
    std::vector<int> children;
    int parent = -1;
    bool held = true;   ///< The test itself keeps a reference.
    bool alive = true;  ///< Held, the root, or in the row of one that is alive.
};

/// The tree as its rules are told: scans, recursion, nothing remembered.
class PlainTree {
public:
    std::vector<PlainNode> nodes;
    int root = 0;
    Names events;

    bool reaches(int from, int to) const {
        if (from == to) return true;
        for (const int child : nodes[index(from)].children) {
            if (reaches(child, to)) return true;
        }
        return false;
    }

    void add(int parent, int child) {
        if (reaches(child, parent)) return;
        nodes[index(parent)].children.push_back(child);
        nodes[index(child)].parent = parent;
        announceMove(child);
        events.push_back("NodeNewChild|" + at(parent).id + "," + at(child).id);
        events.push_back("SceneTopologyUpdate|");
    }

    void remove(int parent, int child) {
        auto& row = nodes[index(parent)].children;
        const auto found = std::find(row.begin(), row.end(), child);
        if (found == row.end()) {
            events.push_back("SceneTopologyUpdate|");
        } else {
            row.erase(found);
        }
    }

    void move(int node, const Eigen::Vector3f& offset) {
        nodes[index(node)].translation += offset;
        announceMove(node);
    }

    void collectGarbage() {
        std::set<int> reached;
        for (int node = 0; node < static_cast<int>(nodes.size()); ++node) {
            if (at(node).alive && (at(node).held || node == root)) mark(node, reached);
        }
        for (int node = 0; node < static_cast<int>(nodes.size()); ++node) {
            nodes[index(node)].alive = reached.count(node) > 0;
        }
    }

    int find(int from, const std::string& text, std::string PlainNode::*field) const {
        if (at(from).*field == text) return from;
        for (const int child : at(from).children) {
            const int found = find(child, text, field);
            if (found >= 0) return found;
        }
        return -1;
    }

    void list(int from, std::vector<int>& order) const {
        order.push_back(from);
        for (const int child : at(from).children) list(child, order);
    }

    const PlainNode& at(int node) const { return nodes[index(node)]; }

private:
    static std::size_t index(int node) { return static_cast<std::size_t>(node); }

    void mark(int node, std::set<int>& reached) const {
        if (!reached.insert(node).second) return;
        for (const int child : at(node).children) mark(child, reached);
    }

    void announceMove(int node) {
        Eigen::Matrix4f local = Eigen::Matrix4f::Identity();
        local.topRightCorner<3, 1>() = at(node).translation;
        events.push_back("NodeTransformationUpdate|" + at(node).id + "," +
                         core::utils::Matrix(local.data()).toEventDataString());
        events.push_back("SceneUpdate|");
    }
};

/// Applies one random edit after another to a scene and to its plain model.
class RandomEdits {
public:
    explicit RandomEdits(unsigned int seed, boost::shared_ptr<core::event::EventManager> events)
        : scene_(boost::make_shared<SceneManager>(events)), random_(seed) {
        remember(scene_->getRoot());
        for (int i = 0; i < 12; ++i) remember(boost::make_shared<Node>(scene_));
    }
    ~RandomEdits() { scene_->stop(); }

    void step() {
        const int a = aliveNode();
        const int b = aliveNode();
        const int choice = pick(12);
        if (choice < 4) return add(a, b);
        if (choice == 4) return remove(a, b);
        if (choice == 5) return removeFromParent(a);
        if (choice == 6) return rename(a);
        if (choice < 9) return move(a);
        if (choice == 9) return remember(boost::make_shared<Node>(scene_));
        if (choice == 10) return release(a);
        if (pick(20) == 0) setRoot(a);
    }

    void compare() {
        const auto& text = anyText();
        EXPECT_EQ(indexOf(scene_->getNodeByID(text)), tree_.find(tree_.root, text, &PlainNode::id));
        EXPECT_EQ(indexOf(scene_->getNodeByName(text)),
                  tree_.find(tree_.root, text, &PlainNode::name));
    }

    void compareArrays() {
        std::vector<int> expected;
        tree_.list(tree_.root, expected);
        std::vector<int> actual;
        for (const auto& node : scene_->getNodeArray()) actual.push_back(indexOf(node));
        EXPECT_EQ(actual, expected);
        for (std::size_t node = 0; node < weak_.size(); ++node) {
            ASSERT_EQ(weak_[node].expired(), !tree_.nodes[node].alive) << node;
            const auto live = weak_[node].lock();
            if (!live) continue;
            std::vector<int> row;
            for (unsigned int i = 0; i < live->getChildCount(); ++i) {
                row.push_back(indexOf(live->getChildNode(i)));
            }
            EXPECT_EQ(row, tree_.nodes[node].children);
        }
    }

    PlainTree& tree() { return tree_; }

private:
    const std::string& anyText() {
        static const Names pool = {"", "a", "b", "c", "d", "e", "f", "OID3"};
        return pool[random_() % pool.size()];
    }

    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    int aliveNode() {
        for (;;) {
            const int node = pick(static_cast<int>(weak_.size()));
            if (tree_.at(node).alive) return node;
        }
    }

    boost::shared_ptr<Node> live(int node) const {
        return weak_[static_cast<std::size_t>(node)].lock();
    }

    int indexOf(const boost::shared_ptr<Node>& node) const {
        for (std::size_t i = 0; node && i < weak_.size(); ++i) {
            if (weak_[i].lock() == node) return static_cast<int>(i);
        }
        return -1;
    }

    void remember(const boost::shared_ptr<Node>& node) {
        weak_.push_back(node);
        held_.push_back(node);
        PlainNode plain;
        plain.id = node->getID();
        tree_.nodes.push_back(plain);
    }

    void add(int parent, int child) {
        // Doubly attached nodes multiply the plain model's paths; keep these few.
        if (pathsTo(child) > 3) return;
        tree_.add(parent, child);
        live(parent)->addNode(live(child));
    }

    int pathsTo(int child) const {
        int rows = 0;
        for (const auto& node : tree_.nodes) {
            rows += static_cast<int>(std::count(node.children.begin(), node.children.end(), child));
        }
        return rows * static_cast<int>(1 + tree_.at(child).children.size() / 3);
    }

    void remove(int parent, int child) {
        tree_.remove(parent, child);
        live(parent)->removeChild(live(child));
        tree_.collectGarbage();
    }

    void removeFromParent(int node) {
        const int parent = tree_.at(node).parent;
        const bool hasParent = parent >= 0 && tree_.at(parent).alive;
        if (hasParent) tree_.remove(parent, node);
        scene_->removeNode(live(node));
        tree_.collectGarbage();
    }

    void rename(int node) {
        const auto& text = anyText();
        if (pick(2) == 0) {
            tree_.nodes[static_cast<std::size_t>(node)].id = text;
            live(node)->setID(text);
        } else {
            tree_.nodes[static_cast<std::size_t>(node)].name = text;
            live(node)->setName(text);
        }
    }

    void move(int node) {
        const Eigen::Vector3f offset(static_cast<float>(pick(5)), static_cast<float>(pick(5)), 0);
        tree_.move(node, offset);
        live(node)->addTranslation(offset);
    }

    void release(int node) {
        held_[static_cast<std::size_t>(node)].reset();
        tree_.nodes[static_cast<std::size_t>(node)].held = false;
        tree_.collectGarbage();
    }

    void setRoot(int node) {
        tree_.root = node;
        scene_->setRoot(live(node));
        tree_.collectGarbage();
    }

    boost::shared_ptr<SceneManager> scene_;
    std::mt19937 random_;
    std::vector<boost::weak_ptr<Node>> weak_;
    std::vector<boost::shared_ptr<Node>> held_;
    PlainTree tree_;
};

/// Hears every type through registrations, not by overriding the dispatch.
class Listener : public core::event::EventBase {
public:
    explicit Listener(const boost::shared_ptr<core::event::EventManager>& manager)
        : EventBase(manager) {
        for (const auto* type :
             {"NodeTransformationUpdate", "SceneUpdate", "NodeNewChild", "SceneTopologyUpdate"}) {
            registerHandler(core::event::EventType(type), [this](const core::event::Event& event) {
                lines.push_back(event.getEventType().getName() + "|" +
                                event.getEventData().toString());
            });
        }
    }
    Names lines;
};

class TreeProperty : public testing::TestWithParam<unsigned int> {};

// With few edits between two look-ups, or with so many that nodes come and go unread.
TEST_P(TreeProperty, AgreesWithThePlainModelAfterEveryEdit) {
    const int editsBetween = GetParam() % 2 == 0 ? 3 : 40;
    const auto manager = boost::make_shared<core::event::EventManager>();
    Listener listener(manager);
    RandomEdits edits(GetParam(), manager);
    listener.lines.clear();
    for (int i = 0; i < 1500 && !HasFailure(); ++i) {
        edits.step();
        if (i % editsBetween == 0) edits.compare();
        if (i % 50 == 0) edits.compareArrays();
    }
    EXPECT_EQ(listener.lines, edits.tree().events);
}

TEST_P(TreeProperty, AgreesWhenNobodyListens) {
    RandomEdits edits(GetParam() + 1000, boost::make_shared<core::event::EventManager>());
    for (int i = 0; i < 1500 && !HasFailure(); ++i) {
        edits.step();
        edits.compare();
    }
    edits.compareArrays();
}

INSTANTIATE_TEST_SUITE_P(Seeds, TreeProperty, testing::Range(0u, 12u));

}  // namespace
}  // namespace vantorix::test
