#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/unordered/unordered_map.hpp>

namespace vantorix::scene {

class Node;

/// Finds the nodes of one tree by one of their texts, the ID or the name.
///
/// A text that one node carries stands in an open-addressing table with linear probing that keeps
/// 32 bits of the hash beside the node, so that a text is read only when it is probably the right
/// one, and a byte of them apart: eight places are looked through at once, and a text that no node
/// carries seldom takes more than that. Texts that were ever shared by several nodes are counted
/// apart: which of them comes first in the tree, only a search tells.
class NodeTable {
public:
    using Text = std::string Node::*;

    enum Answer { NONE, ONE, SEVERAL };

    explicit NodeTable(Text text) : text_(text) {}
    const std::string& textOf(const Node& node) const;

    struct Found {
        Answer answer;
        Node* node;  ///< For ONE, that node; null otherwise.
    };
    /// Whether nodes carry @p text. For SEVERAL, the caller has to search, and may rememberFirst
    /// what it finds. The table must be settled.
    Found find(const std::string& text) const;
    /// Whether any node carries @p text. The table need not be settled.
    bool isCarried(const std::string& text) const;
    /// Whether several nodes carry @p text, or did once.
    bool isShared(const std::string& text) const;
    /// Asks for the memory that find will read for @p text: that of its entry and, in a later call,
    /// when that has come, that of the node in it.
    /// @{
    void fetchEntry(const std::string& text) const;
    void fetchNode(const std::string& text) const;
    /// @}
    void rememberFirst(const std::string& text, Node* node);

    /// The entry waits in a queue while its memory comes, and is written some insertions later;
    /// settle writes all that wait.
    /// @{
    void insert(Node* node);
    void settle();
    bool isSettled() const { return queued_ == 0; }
    /// @}
    /// @p node must be in the table under the text that it still carries.
    void erase(Node* node);
    void clear();
    /// Makes room for @p count more nodes with texts of their own.
    void reserve(std::size_t count);

private:
    struct Entry {
        std::uint32_t hash;
        Node* node;
    };
    struct Shared {
        std::size_t count;
        Node* first;  ///< Null while unknown.
    };
    /// Eight tags as one number, the first of them lowest.
    using Group = std::uint64_t;
    static constexpr std::size_t groupSize = sizeof(Group);
    static constexpr std::size_t longestQueue = 8;

    Found findShared(const std::string& text) const;
    void fetchHome(std::uint32_t hash) const;
    void settle(Entry& waiting);
    bool leaveQueue(const Node* node);
    static std::uint32_t hashOf(const std::string& text);
    /// The place of the text's entry, or where it would be inserted.
    std::size_t locate(std::uint32_t hash, const std::string& text) const;
    std::size_t locateFarther(std::uint32_t hash, const std::string& text) const;
    bool carries(const Node& node, const std::string& text) const;
    /// The first place from the home of @p hash on that is free, or of which @p isWanted is true.
    /// That is only asked for places that may hold @p hash.
    template <class IsWanted>
    std::size_t probe(std::uint32_t hash, const IsWanted& isWanted) const;
    Group groupAt(std::size_t position) const;
    void fetchAll(const Node& node) const;
    static bool isRoomFor(std::size_t count, std::size_t size) { return 4 * count <= 3 * size; }
    void growTo(std::size_t size);
    void place(const Entry& entry);
    void eraseEntry(std::size_t position);

    /// What stands for an entry in tags_: eight bits that do not choose its home, never 0.
    static std::uint8_t tagOf(std::uint32_t hash) {
        return static_cast<std::uint8_t>(std::max(hash >> 24, 1u));
    }
    void write(std::size_t position, const Entry& entry);
    void setTag(std::size_t position, std::uint8_t tag);

    Text text_;
    /// A value only where there is a tag: what is not used is not touched.
    std::unique_ptr<Entry[]> entries_;
    std::size_t size_ = 0;  ///< Of the entries: a power of two, at most 3/4 full; 0 at first.
    /// Of the entries; 0 where there is none. The first ones are repeated behind the last.
    std::vector<std::uint8_t> tags_;
    std::size_t used_ = 0;
    boost::unordered_map<std::string, Shared> shared_;

    std::array<Entry, longestQueue> queue_{};  ///< A place without node is free.
    std::size_t queued_ = 0;
    std::size_t turn_ = 0;  ///< The place after the last one taken.
};

}  // namespace vantorix::scene
