#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/graph/Branches.h"

namespace vantorix::scene {

class Node;

/// The ordered children of one node.
///
/// A removed child leaves an empty slot, so that removals cost no shifting; the row is closed, in
/// order, when somebody reads by position or when too many slots are empty. Tickets ascend along
/// the row and lead from a child back to its slot without a search.
class ChildRow {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// Appends @p child and returns its ticket.
    std::uint32_t append(boost::shared_ptr<Node> child);

    /// Makes room for @p count more, at a cost that many calls share.
    void reserve(std::size_t count);

    /// Slot of the first occurrence of @p child, npos if there is none.
    std::size_t findFirst(const Node* child) const;

    /// First slot whose ticket is @p ticket or a later one; past the row when there is none.
    std::size_t firstFrom(std::uint32_t ticket) const;

    /// Slot that carries @p ticket when it holds @p child, npos otherwise.
    std::size_t findTicket(const Node* child, std::uint32_t ticket) const;

    /// Empties @p slot and returns what it held.
    boost::shared_ptr<Node> take(std::size_t slot);

    /// A row that waits behind this one, where rows are queued for their release.
    std::unique_ptr<ChildRow>& next() { return next_; }

    std::size_t size() const { return live_; }

    /// Child number @p index, counting from 0; @p index must be below size().
    const boost::shared_ptr<Node>& at(std::size_t index);

    /// First occupied slot at or after @p slot, npos at the end: walks the row in order.
    std::size_t nextSlot(std::size_t slot) const;
    const boost::shared_ptr<Node>& inSlot(std::size_t slot) const { return slots_[slot].child; }
    /// Asks for the memory of the child in @p slot, if there is such a slot.
    void fetch(std::size_t slot) const {
        if (slot < slots_.size()) __builtin_prefetch(slots_[slot].child.get());
    }
    std::uint32_t ticketOf(std::size_t slot) const { return slots_[slot].ticket; }

    /// The ticket of the next child to come. It falls when the row was numbered anew.
    std::uint32_t nextTicket() const { return nextTicket_; }

    /// Here, since only nodes with children have some.
    Branches& branches() { return branches_; }

private:
    struct Slot {
        boost::shared_ptr<Node> child;
        std::uint32_t ticket;
    };

    void trimEnds();
    void close();
    void renumber();

    Branches branches_;
    std::vector<Slot> slots_;
    std::size_t head_ = 0;  ///< Slots before it are empty for good.
    std::size_t live_ = 0;
    std::uint32_t nextTicket_ = 0;
    std::unique_ptr<ChildRow> next_;
};

}  // namespace vantorix::scene
