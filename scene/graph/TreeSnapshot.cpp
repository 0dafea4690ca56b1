#include "scene/graph/TreeSnapshot.h"

#include <algorithm>
#include <utility>

#include <boost/unordered/unordered_map.hpp>

#include "scene/graph/ChildRow.h"
#include "scene/graph/Node.h"

namespace vantorix::scene {
namespace {

constexpr std::size_t placesAhead = 8;

}  // namespace

TreeSnapshot::TreeSnapshot(boost::shared_ptr<Node> top) {
    places_.push_back(Place{std::move(top), Range{0, 0}});
    boost::unordered_map<const Node*, std::size_t> met;
    for (std::size_t place = 0; place < places_.size(); ++place) {
        if (place + placesAhead < places_.size()) {
            __builtin_prefetch(&node(place + placesAhead).attachments_);
        }
        if (node(place).attachments_ > 1) {
            const auto earlier = met.emplace(&node(place), place);
            if (!earlier.second) {
                places_[place].children = children(earlier.first->second);
                continue;
            }
        }
        appendChildren(place);
    }
}

const std::string& TreeSnapshot::idOf(std::size_t place) const { return node(place).id_; }

void TreeSnapshot::fetch(std::size_t place) const {
    const Node& node = *places_[place].node;
    const auto fetchFrom = [](const void* first, const void* end) {
        constexpr std::size_t cacheLine = 64;
        auto* at = static_cast<const char*>(first);
        for (; at < static_cast<const char*>(end); at += cacheLine) __builtin_prefetch(at);
    };
    // A copy computes the matrices in between anew.
    fetchFrom(&node, &node.worldMatrix_);
    fetchFrom(&node.translation_, &node + 1);
}

void TreeSnapshot::appendChildren(std::size_t place) {
    const auto first = places_.size();
    if (const auto* const row = places_[place].node->children_.get()) {
        for (std::size_t slot = 0; slot < placesAhead; ++slot) row->fetch(slot);
        for (auto slot = row->nextSlot(0); slot != ChildRow::npos; slot = row->nextSlot(slot + 1)) {
            row->fetch(slot + placesAhead);
            places_.push_back(Place{row->inSlot(slot), Range{0, 0}});
        }
    }
    places_[place].children = Range{first, places_.size()};
}

}  // namespace vantorix::scene
