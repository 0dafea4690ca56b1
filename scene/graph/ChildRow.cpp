#include "scene/graph/ChildRow.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vantorix::scene {

std::uint32_t ChildRow::append(boost::shared_ptr<Node> child) {
    if (nextTicket_ == std::numeric_limits<std::uint32_t>::max()) renumber();
    slots_.push_back(Slot{std::move(child), nextTicket_});
    ++live_;
    return nextTicket_++;
}

void ChildRow::reserve(std::size_t count) {
    const auto wanted = slots_.size() + count;
    if (wanted > slots_.capacity()) slots_.reserve(std::max(wanted, 2 * slots_.capacity()));
}

std::size_t ChildRow::findFirst(const Node* child) const {
    for (std::size_t slot = head_; slot < slots_.size(); ++slot) {
        if (slots_[slot].child.get() == child) return slot;
    }
    return npos;
}

std::size_t ChildRow::firstFrom(std::uint32_t ticket) const {
    if (slots_.empty() || ticket <= slots_.front().ticket) return 0;
    // As long as nothing was closed, tickets count the slots.
    const std::size_t slot = ticket - slots_.front().ticket;
    if (slot < slots_.size() && slots_[slot].ticket == ticket) return slot;
    const auto found =
        std::lower_bound(slots_.begin(), slots_.end(), ticket,
                         [](const Slot& left, std::uint32_t right) { return left.ticket < right; });
    return static_cast<std::size_t>(found - slots_.begin());
}

std::size_t ChildRow::findTicket(const Node* child, std::uint32_t ticket) const {
    const auto slot = firstFrom(ticket);
    if (slot >= slots_.size() || slots_[slot].ticket != ticket) return npos;
    return slots_[slot].child.get() == child ? slot : npos;
}

boost::shared_ptr<Node> ChildRow::take(std::size_t slot) {
    auto child = std::move(slots_[slot].child);
    slots_[slot].child.reset();
    --live_;
    trimEnds();
    if (slots_.size() - head_ > 2 * live_) close();
    return child;
}

const boost::shared_ptr<Node>& ChildRow::at(std::size_t index) {
    if (slots_.size() - head_ != live_) close();
    return slots_[head_ + index].child;
}

std::size_t ChildRow::nextSlot(std::size_t slot) const {
    for (slot = std::max(slot, head_); slot < slots_.size(); ++slot) {
        if (slots_[slot].child) return slot;
    }
    return npos;
}

void ChildRow::trimEnds() {
    while (slots_.size() > head_ && !slots_.back().child) slots_.pop_back();
    while (head_ < slots_.size() && !slots_[head_].child) ++head_;
    if (2 * head_ > slots_.size()) {
        slots_.erase(slots_.begin(), slots_.begin() + static_cast<std::ptrdiff_t>(head_));
        head_ = 0;
    }
}

void ChildRow::close() {
    const auto live =
        std::remove_if(slots_.begin(), slots_.end(), [](const Slot& slot) { return !slot.child; });
    slots_.erase(live, slots_.end());
    head_ = 0;
}

void ChildRow::renumber() {
    // Children keep their old tickets: these lead nowhere or to another child, which findTicket
    // notices, and the slot is then found by a search.
    close();
    nextTicket_ = 0;
    for (auto& slot : slots_) slot.ticket = nextTicket_++;
}

}  // namespace vantorix::scene
