#pragma once

#include <boost/container/small_vector.hpp>

namespace vantorix::scene {

class Node;

/// The children of one node that listed themselves since the node's world matrix last changed.
/// An array, since its nodes can be fetched side by side, where those of a linked list come one
/// after the other.
struct Dependents {
    /// Each knows its place; in no particular order. The only one of a chain lies here itself.
    boost::container::small_vector<Node*, 1> nodes;
    Dependents* next = nullptr;  ///< The list to be emptied after this one, while that goes on.
};

}  // namespace vantorix::scene
