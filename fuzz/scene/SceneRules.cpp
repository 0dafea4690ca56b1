#include <algorithm>
#include <set>
#include <unordered_map>
#include <vector>

#include "fuzz/Fuzzer.h"
#include "fuzz/scene/SceneFuzzer.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::fuzz {
namespace {

using scene::Node;
using Matrix = Eigen::Matrix4f;
using Counts = std::unordered_map<const Node*, std::size_t>;

constexpr std::size_t mostCounted = 1 << 20;

std::size_t countPlaces(const Node& top, Counts& known) {
    const auto found = known.find(&top);
    if (found != known.end()) return found->second;
    std::size_t places = 1;
    for (unsigned int i = 0; i < top.getChildCount() && places < mostCounted; ++i) {
        places += countPlaces(*top.getChildNode(i), known);
    }
    return known[&top] = std::min(places, mostCounted);
}

void list(const boost::shared_ptr<Node>& top, std::vector<boost::shared_ptr<Node>>& nodes) {
    nodes.push_back(top);
    for (unsigned int i = 0; i < top->getChildCount(); ++i) list(top->getChildNode(i), nodes);
}

/// The parent's answer times the own matrix, ended by a node met before.
Matrix combined(const Node& node, std::set<const Node*>& met) {
    met.insert(&node);
    const auto parent = node.getParent();
    if (!parent || met.count(parent.get()) > 0) return node.getTransformations();
    return combined(*parent, met) * node.getTransformations();
}

bool areSame(const Matrix& left, const Matrix& right) {
    return ((left.array() == right.array()) || (left.array().isNaN() && right.array().isNaN()))
        .all();
}

}  // namespace

std::size_t countPlaces(const Node& top) {
    Counts known;
    return countPlaces(top, known);
}

bool SceneFuzzer::isSmall(scene::SceneManager& manager) const {
    return countPlaces(*manager.getRoot()) <= mostPlaces;
}

void SceneFuzzer::checkNow() { checkTree(*scene()); }

void SceneFuzzer::checkTree(scene::SceneManager& manager) const {
    std::vector<boost::shared_ptr<Node>> walked;
    list(manager.getRoot(), walked);
    const auto nodes = manager.getNodeArray();
    require(nodes == walked, "the node array is the tree, depth first");

    std::set<std::string> ids, names;
    for (const auto& node : nodes) {
        if (ids.insert(node->getID()).second) {
            require(manager.getNodeByID(node->getID()) == node, "the first node of an ID is found");
        }
        if (names.insert(node->getName()).second) {
            require(manager.getNodeByName(node->getName()) == node,
                    "the first node of a name is found");
        }
        checkWorldMatrix(*node);
    }
    for (const char* id : {"a", "c", "", "OID1"}) {
        require(ids.count(id) > 0 || !manager.getNodeByID(id), "no node is found outside the tree");
    }
}

void SceneFuzzer::checkWorldMatrix(const Node& node) const {
    std::set<const Node*> met;
    require(areSame(node.getCombinedTransformations(), combined(node, met)),
            "the world matrix is the product along the parents");
}

}  // namespace vantorix::fuzz
