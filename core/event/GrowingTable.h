#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

namespace vantorix::core::event {

/// A hash table without removal. Its items never move, so that they are found without a lock while
/// one thread at a time inserts: a trie of the upper bits of the hash, one item per node.
template <class Item>
class GrowingTable {
public:
    GrowingTable() = default;
    GrowingTable(const GrowingTable&) = delete;
    GrowingTable& operator=(const GrowingTable&) = delete;

    ~GrowingTable() { delete root_.load(); }

    /// The item of this hash for which @p matches is true, or null.
    template <class Matches>
    Item* find(std::size_t hash, const Matches& matches) const {
        std::size_t path = firstStep(hash);
        Node* node = root_.load(std::memory_order_acquire);
        while (node && !(node->hash == hash && matches(node->item))) {
            node = node->children[path % fanOut].load(std::memory_order_acquire);
            path /= fanOut;
        }
        return node ? &node->item : nullptr;
    }

    /// Adds an item that is not there yet.
    template <class... Arguments>
    Item& insert(std::size_t hash, Arguments&&... arguments) {
        std::size_t path = firstStep(hash);
        auto* place = &root_;
        while (Node* const node = place->load(std::memory_order_relaxed)) {
            place = &node->children[path % fanOut];
            path /= fanOut;
        }
        auto* const fresh = new Node(hash, std::forward<Arguments>(arguments)...);
        place->store(fresh, std::memory_order_release);
        return fresh->item;
    }

private:
    static constexpr std::size_t fanOut = 4;

    /// The lower bits may be a few values only.
    static std::size_t firstStep(std::size_t hash) { return hash / 65536; }

    struct Node {
        template <class... Arguments>
        explicit Node(std::size_t itsHash, Arguments&&... arguments)
            : hash(itsHash), item(std::forward<Arguments>(arguments)...) {}
        ~Node() {
            for (const auto& child : children) delete child.load();
        }

        const std::size_t hash;
        Item item;
        std::array<std::atomic<Node*>, fanOut> children{};
    };

    std::atomic<Node*> root_{nullptr};
};

}  // namespace vantorix::core::event
