#pragma once

#include <cstddef>
#include <vector>

#include <boost/unordered/unordered_set.hpp>

#include "scene/graph/ChildRow.h"

namespace vantorix::scene {

class Node;

/// Walks a sub-tree depth first, each node before its children and children in their order, with
/// a stack of its own: trees may be deeper than the program's stack. The tree must not change
/// while it is walked.
class NodeWalk {
public:
    /// A node attached several times is met as often as it is attached, or only the first time.
    enum Repeats { VISIT_REPEATS, SKIP_REPEATS };

    NodeWalk(Node& top, Repeats repeats) : top_(&top), repeats_(repeats) {}

    /// The next node, null at the end.
    Node* next();

private:
    struct Level {
        const ChildRow* row;
        std::size_t slot;
    };

    bool isRepeat(const Node& node);
    void descend(const Node& node);

    Node* top_;  ///< Null once it was handed out.
    Repeats repeats_;
    std::vector<Level> levels_;
    boost::unordered_set<const Node*> seen_;
};

}  // namespace vantorix::scene
