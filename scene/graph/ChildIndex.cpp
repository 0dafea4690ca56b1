#include "scene/graph/ChildIndex.h"

#include "scene/graph/ChildRow.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeIndex.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t shortRow = 8;  // Children that are searched faster than indexed.

}  // namespace

void ChildIndex::Row::forget() {
    covered = 0;
    holdsForeigners = false;
    first.clear();
}

boost::shared_ptr<Node> ChildIndex::find(const boost::shared_ptr<Node>& parent,
                                         const std::string& id) {
    if (!parent->children_) return {};
    const auto& children = *parent->children_;
    if (children.size() <= shortRow) return search(children, id);
    if (const Node* const only = findOnlyOne(*parent, id)) {
        const Node* const container = only->soleContainer();
        if (container == parent.get()) return children.inSlot(parent->slotOf(*only));
        if (container) return {};
    }
    auto& row = rows_[parent.get()];
    row.parent = parent;  // Kept alive: the address stands for this node.
    for (;;) {
        catchUp(row, children);
        if (row.holdsForeigners) return search(children, id);
        const auto found = row.first.find(id);
        if (found == row.first.end()) return {};
        const auto slot = children.findTicket(found->second.child, found->second.ticket);
        if (slot != ChildRow::npos) return children.inSlot(slot);
        row.forget();  // It was removed: a namesake may stand behind it.
    }
}

/// The only node of the tree that carries the ID, if @p parent is in the tree and there is one.
Node* ChildIndex::findOnlyOne(const Node& parent, const std::string& id) const {
    auto& index = *scene_.nodeIndex_;
    if (!scene_.root_ || !index.lists(parent)) return nullptr;
    bool isOnly = false;
    Node* const found = index.findByID(*scene_.root_, id, isOnly);
    return isOnly ? found : nullptr;
}

boost::shared_ptr<Node> ChildIndex::search(const ChildRow& children, const std::string& id) {
    for (auto slot = children.nextSlot(0); slot != ChildRow::npos;
         slot = children.nextSlot(slot + 1)) {
        if (children.inSlot(slot)->id_ == id) return children.inSlot(slot);
    }
    return {};
}

void ChildIndex::catchUp(Row& row, const ChildRow& children) const {
    const auto renames = scene_.nodeIndex_->renames();
    if (row.renames != renames || children.nextTicket() < row.covered) row.forget();
    row.renames = renames;
    for (auto slot = children.nextSlot(children.firstFrom(row.covered)); slot != ChildRow::npos;
         slot = children.nextSlot(slot + 1)) {
        const Node& child = *children.inSlot(slot);
        row.holdsForeigners |= child.liveScene() != &scene_;
        row.first.emplace(child.id_, Place{&child, children.ticketOf(slot)});
    }
    row.covered = children.nextTicket();
}

}  // namespace vantorix::scene
