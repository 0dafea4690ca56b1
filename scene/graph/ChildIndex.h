#pragma once

#include <cstdint>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/unordered/unordered_map.hpp>

namespace vantorix::scene {

class ChildRow;
class Node;
class SceneManager;

/// Finds the first child of a node that carries an ID, as a search along its row would, for many
/// IDs and many nodes.
///
/// The rows may change between two calls: children that were added are taken in by the next call, a
/// removal shows when the removed child is looked for, and when any node of the scene was renamed,
/// rows are read anew. IDs that the scene's own index knows of one node only need no row; short
/// rows are searched, and so are those that hold nodes of other scenes, whose renames would pass
/// unnoticed.
class ChildIndex {
public:
    /// @p scene must outlive the index.
    explicit ChildIndex(const SceneManager& scene) : scene_(scene) {}

    boost::shared_ptr<Node> find(const boost::shared_ptr<Node>& parent, const std::string& id);

private:
    struct Place {
        const Node* child;  ///< Only to be used while the ticket still leads to it.
        std::uint32_t ticket;
    };
    struct Row {
        void forget();

        boost::shared_ptr<Node> parent;
        std::uint64_t renames = 0;
        std::uint32_t covered = 0;  ///< Children with lower tickets were taken in.
        bool holdsForeigners = false;
        boost::unordered_map<std::string, Place> first;
    };

    Node* findOnlyOne(const Node& parent, const std::string& id) const;
    static boost::shared_ptr<Node> search(const ChildRow& children, const std::string& id);
    void catchUp(Row& row, const ChildRow& children) const;

    const SceneManager& scene_;
    boost::unordered_map<const Node*, Row> rows_;
};

}  // namespace vantorix::scene
