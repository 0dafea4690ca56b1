#include "scene/graph/TreeSnapshot.h"

#include <algorithm>
#include <utility>

#include <boost/unordered/unordered_map.hpp>

#include "core/utils/Fetch.h"
#include "scene/graph/ChildRow.h"
#include "scene/graph/Node.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t placesAhead = 8;

}  // namespace

TreeSnapshot::TreeSnapshot(boost::shared_ptr<Node> top, Keeping keeping) {
    places_.push_back(Place{top.get(), Range{0, 0}});
    kept_.push_back(std::move(top));
    boost::unordered_map<const Node*, std::size_t> met;
    for (std::size_t place = 0; place < places_.size(); ++place) {
        if (place + placesAhead < places_.size()) {
            __builtin_prefetch(&node(place + placesAhead).children_);
        }
        hasExtras_ = hasExtras_ || node(place).extras_;
        if (node(place).attachments_ > 1) {
            const auto earlier = met.emplace(&node(place), place);
            if (!earlier.second) {
                places_[place].children = children(earlier.first->second);
                continue;
            }
        }
        appendChildren(place);
    }
    if (keeping == KEEP || hasExtras_) keepNodes();
}

const std::string& TreeSnapshot::idOf(std::size_t place) const { return node(place).id_; }

void TreeSnapshot::fetch(std::size_t place) const {
    const Node& node = *places_[place].node;
    // A copy computes the matrices in between anew.
    core::utils::fetchLines(&node, &node.worldMatrix_);
    core::utils::fetchLines(&node.translation_, &node + 1);
}

void TreeSnapshot::appendChildren(std::size_t place) {
    const auto first = places_.size();
    if (const auto* const row = node(place).children_.get()) {
        for (auto slot = row->nextSlot(0); slot != ChildRow::npos; slot = row->nextSlot(slot + 1)) {
            places_.push_back(Place{row->inSlot(slot).get(), Range{0, 0}});
        }
    }
    places_[place].children = Range{first, places_.size()};
}

// Right after the places were listed: the rows still hold the same.
void TreeSnapshot::keepNodes() {
    kept_.reserve(places_.size());
    for (const auto& place : places_) {
        const auto* const row = place.node->children_.get();
        if (!row) continue;
        for (auto slot = row->nextSlot(0); slot != ChildRow::npos; slot = row->nextSlot(slot + 1)) {
            row->fetch(slot + placesAhead);
            kept_.push_back(row->inSlot(slot));
        }
    }
}

}  // namespace vantorix::scene
