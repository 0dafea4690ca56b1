#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {

class Node;

/// Which nodes a tree held, and in what order, at one moment. Keeps the nodes alive; what they
/// themselves hold is theirs and may change.
///
/// A node that is attached several times stands in several places, whose children are listed once.
class TreeSnapshot {
public:
    /// Places in the snapshot: from first to one before last.
    struct Range {
        std::size_t first;
        std::size_t last;
    };

    explicit TreeSnapshot(boost::shared_ptr<Node> top);

    /// The place of the top.
    static Range top() { return Range{0, 1}; }
    std::size_t size() const { return places_.size(); }
    const Node& node(std::size_t place) const { return *places_[place].node; }
    const std::string& idOf(std::size_t place) const;
    /// Asks for the memory of a node, for when its turn comes.
    void fetch(std::size_t place) const;
    Range children(std::size_t place) const { return places_[place].children; }

private:
    struct Place {
        boost::shared_ptr<Node> node;
        Range children;
    };

    void appendChildren(std::size_t place);

    std::vector<Place> places_;  ///< Breadth first: the children of a place are neighbours.
};

}  // namespace vantorix::scene
