#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {

class Node;

/// Which nodes a tree held, and in what order, at one moment. What they themselves hold is theirs
/// and may change.
///
/// A node that is attached several times stands in several places, whose children are listed once.
class TreeSnapshot {
public:
    /// Places in the snapshot: from first to one before last.
    struct Range {
        std::size_t first;
        std::size_t last;
    };

    /// Whether it keeps the nodes alive, or relies on a tree that stays as it is: counting
    /// references costs as much as all else. A tree with instances is kept in any case, since
    /// geometries and controllers may be an application's own.
    enum Keeping { KEEP, BORROW };

    TreeSnapshot(boost::shared_ptr<Node> top, Keeping keeping);

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
        const Node* node;
        Range children;
    };

    void appendChildren(std::size_t place);
    void keepNodes();

    std::vector<Place> places_;  ///< Breadth first: the children of a place are neighbours.
    std::vector<boost::shared_ptr<Node>> kept_;
    bool hasExtras_ = false;
};

}  // namespace vantorix::scene
