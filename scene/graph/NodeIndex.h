#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/unordered/unordered_map.hpp>

#include "scene/graph/NodeTable.h"

namespace vantorix::scene {

class Node;
class SceneManager;

/// Answers look-ups by ID and by name in one scene's tree as a depth-first search from the root
/// would, without one where it can.
///
/// Made on demand by the first look-up and then kept up to date by the nodes themselves. A node is
/// listed while it carries the index's generation number: throwing the index away is a new number.
/// A tree that holds nodes of other scenes, whose renames would pass unnoticed, is searched.
class NodeIndex {
public:
    explicit NodeIndex(const SceneManager* scene);

    Node* findByID(Node& root, const std::string& id) {
        if (ids_.built && ids_.table.isSettled()) {
            const auto found = ids_.table.find(id);
            if (found.answer != NodeTable::SEVERAL) return found.node;
        }
        bool isOnly = false;
        return findByID(root, id, isOnly);
    }
    /// The same; @p isOnly tells that no other node of the tree carries the ID.
    Node* findByID(Node& root, const std::string& id, bool& isOnly);
    Node* findByName(Node& root, const std::string& name);

    /// Whether findByID finds a node. Among many additions faster than that.
    bool isCarried(Node& root, const std::string& id);

    /// Ask for the memory that looking up @p id will read, the second some time after the first.
    /// @{
    void fetchEntry(const std::string& id) const {
        if (ids_.built) ids_.table.fetchEntry(id);
    }
    void fetchNode(const std::string& id) const { ids_.table.fetchNode(id); }
    /// @}

    /// Puts into @p nodes what findByID gives for each of @p ids, all of them different, with at
    /// most one search for all.
    void findAllByID(Node& root, const std::vector<std::string>& ids, std::vector<Node*>& nodes);

    /// While this stays the same and is not 0, look-ups by ID give what they gave before.
    std::uint64_t revisionOfIDs() const { return ids_.built ? revision_ : 0; }

    bool lists(const Node& node) const;

    /// To be called after @p child was attached to a listed parent.
    void attached(Node& child);
    /// To be called after @p child lost one of its attachments to a listed parent.
    void detached(Node& child);
    /// To be called for a listed node around the change of its text.
    void beforeRename(Node& node, bool isID);
    void afterRename(Node& node, bool isID);

    /// Makes room for @p count more nodes whose IDs are not carried yet.
    void reserve(std::size_t count);
    void drop();

    /// Counts the renames, by ID, of this scene's nodes that hang anywhere.
    std::uint64_t renames() const { return renames_; }
    void countRename() { ++renames_; }

private:
    struct View {
        NodeTable table;
        bool built = false;
    };

    Node* find(View& view, Node& root, const std::string& text, bool& isOnly);
    /// Makes a change of the tables. Where it gives up, or memory ends, the index goes.
    template <class Change>
    bool changeOrDrop(Change change);
    /// False where the tree has to be searched.
    bool prepare(View& view, Node& root);
    bool build(View& view, Node& root);
    using Wanted = boost::unordered_map<std::string, std::size_t>;
    void searchIDs(Node& root, Wanted& wanted, std::vector<Node*>& nodes);
    bool list(Node& node);
    View& viewOf(bool isID) { return isID ? ids_ : names_; }

    const SceneManager* scene_;
    std::uint64_t generation_;
    std::uint64_t revision_ = 1;
    std::uint64_t renames_ = 0;
    View ids_;
    View names_;
};

}  // namespace vantorix::scene
