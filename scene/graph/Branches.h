#pragma once

#include <vector>

namespace vantorix::scene {

class Node;

/// The children of one node, if more than one, on whose cached world matrices others depend.
/// An array, since its nodes can be fetched side by side, where those of a linked list come one
/// after the other.
struct Branches {
    std::vector<Node*> nodes;  ///< Each knows its place; in no particular order.
    Branches* next = nullptr;  ///< The list to be emptied after this one, while that goes on.
};

}  // namespace vantorix::scene
