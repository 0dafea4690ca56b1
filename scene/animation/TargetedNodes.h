#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/unordered/unordered_map.hpp>

namespace vantorix::scene {

class Node;
class SceneManager;

/// The nodes of a scene that carry certain IDs, found once and remembered while no edit of the
/// tree can have changed the answer.
class TargetedNodes {
public:
    /// Forgets IDs and nodes.
    void clear();
    /// The next refresh searches.
    void forgetNodes() { revision_ = 0; }

    /// The slot of @p id, a new one if need be.
    std::size_t addSlot(const std::string& id);
    std::size_t slotCount() const { return ids_.size(); }

    /// Finds the nodes again where they may have changed, and returns whether it did.
    bool refresh(SceneManager& scene);

    /// As of the last refresh: null when no node of the scene carries the slot's ID.
    Node* node(std::size_t slot) const { return nodes_[slot]; }

    /// Whether all nodes were made for the scene itself, which then hears of their edits.
    bool belongToScene() const { return revision_ != 0; }

private:
    std::vector<std::string> ids_;
    boost::unordered_map<std::string, std::size_t> slots_;
    std::vector<Node*> nodes_;
    std::uint64_t revision_ = 0;
};

}  // namespace vantorix::scene
