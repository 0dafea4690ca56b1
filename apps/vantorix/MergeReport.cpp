#include "apps/vantorix/MergeReport.h"

#include <set>

#include <boost/shared_ptr.hpp>

#include "apps/vantorix/TreeSummary.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

namespace vantorix::apps::cli {
namespace {

using IDs = std::vector<std::string>;
using Taken = std::set<std::string>;

constexpr int discardGeometries = 0x01;
constexpr int discardLayers = 0x08;
constexpr int discardNodes = 0x10;

template <class Library>
IDs idsIn(const Library& library) {
    IDs ids;
    for (const auto& item : library) ids.push_back(item->getID());
    return ids;
}

bool isRenaming(const std::string& newId, const std::string& id) {
    return newId.rfind(id + "__renamed_", 0) == 0;
}

/// Of a library that grows at its end, in the order in which items come in.
std::vector<ItemFate> listFates(const IDs& before, const IDs& incoming, const IDs& after) {
    const Taken taken(before.begin(), before.end());
    std::vector<ItemFate> fates;
    std::size_t next = before.size();
    for (const auto& id : incoming) {
        if (taken.count(id) == 0) {
            fates.push_back({id, ItemFate::ADDED, ""});
            ++next;
        } else if (next < after.size() && isRenaming(after[next], id)) {
            fates.push_back({id, ItemFate::RENAMED, after[next++]});
        } else {
            fates.push_back({id, ItemFate::DISCARDED, ""});
        }
    }
    return fates;
}

/// Of a table under IDs: a clone whose new ID is taken as well does not come in.
std::vector<ItemFate> tableFates(const IDs& before, const IDs& incoming, bool discards) {
    const Taken taken(before.begin(), before.end());
    std::vector<ItemFate> fates;
    for (const auto& id : incoming) {
        const std::string newId = id + "__renamed__";
        if (taken.count(id) == 0) {
            fates.push_back({id, ItemFate::ADDED, ""});
        } else if (discards) {
            fates.push_back({id, ItemFate::DISCARDED, ""});
        } else if (taken.count(newId) > 0) {
            fates.push_back({id, ItemFate::LOST, ""});
        } else {
            fates.push_back({id, ItemFate::RENAMED, newId});
        }
    }
    return fates;
}

/// The ID of the node that takes the children of a node; empty for a discarded one.
std::string placeOf(const ItemFate& fate) {
    if (fate.kind == ItemFate::DISCARDED) return "";
    return fate.newId.empty() ? fate.id : fate.newId;
}

}  // namespace

const char* fateName(ItemFate::Kind kind) {
    switch (kind) {
        case ItemFate::ADDED:
            return "added";
        case ItemFate::RENAMED:
            return "renamed";
        case ItemFate::DISCARDED:
            return "discarded";
        case ItemFate::MERGED:
            return "merged";
        case ItemFate::LOST:
            return "lost";
    }
    return "";
}

MergeReport::Libraries::Libraries(const scene::SceneManager& scene)
    : geometries(scene.getGeometryManager()->getIDs()),
      images(idsIn(scene.getImageLibrary())),
      effects(idsIn(scene.getEffectLibrary())) {
    for (const auto& material : scene.getMaterialList()) {
        materials.push_back(material->getMaterialID());
    }
    for (int id = 0; !scene.getLayerManager()->getLayerName(id).empty(); ++id) {
        layers.push_back(scene.getLayerManager()->getLayerName(id));
    }
}

MergeReport::MergeReport(scene::SceneManager& target, scene::SceneManager& source)
    : target_(target),
      before_(target),
      incoming_(source),
      nodesBefore_(summarizeTree(*target.getRoot())),
      incomingNodes_(summarizeTree(*source.getRoot())),
      watcher_(target.getEventManager()) {
    watcher_.registerHandler(core::event::EventType("NodeNewChild"),
                             [this](const core::event::Event& event) {
                                 attached_.push_back(event.getEventData().toString());
                             });
}

std::vector<LibraryFates> MergeReport::conclude(int options, const std::string& into) const {
    const Libraries after(target_);
    return {
        {"geometries",
         tableFates(before_.geometries, incoming_.geometries, (options & discardGeometries) != 0)},
        {"images", listFates(before_.images, incoming_.images, after.images)},
        {"effects", listFates(before_.effects, incoming_.effects, after.effects)},
        {"materials", listFates(before_.materials, incoming_.materials, after.materials)},
        {"layers", tableFates(before_.layers, incoming_.layers, (options & discardLayers) != 0)},
        {"nodes", nodeFates(options, into)}};
}

std::vector<ItemFate> MergeReport::nodeFates(int options, const std::string& into) const {
    Taken taken;
    for (const auto& node : nodesBefore_) taken.insert(node.id);
    std::vector<ItemFate> fates;
    IDs here;  // Where the children of each node belong; empty for those that are discarded.
    auto next = attached_.begin();
    for (const auto& node : incomingNodes_) {
        const auto parent = node.parent < 0 ? into : here[static_cast<std::size_t>(node.parent)];
        const bool isTaken = taken.count(node.id) > 0;
        const auto prefix = parent + ",";
        ItemFate fate{node.id, ItemFate::MERGED, ""};
        if (parent.empty() || (isTaken && (options & discardNodes) != 0)) {
            fate.kind = ItemFate::DISCARDED;
        } else if (!isTaken) {
            fate.kind = ItemFate::ADDED;
        } else if (next != attached_.end() && isRenaming(*next, prefix + node.id)) {
            fate.kind = ItemFate::RENAMED;
            fate.newId = next->substr(prefix.size());
        }
        const bool isCopied = fate.kind == ItemFate::ADDED || fate.kind == ItemFate::RENAMED;
        if (isCopied && next != attached_.end()) ++next;
        here.push_back(placeOf(fate));
        taken.insert(here.back());
        fates.push_back(std::move(fate));
    }
    return fates;
}

}  // namespace vantorix::apps::cli
