#pragma once

#include <string>
#include <vector>

#include "core_api/event/EventBase.h"

#include "apps/vantorix/ModelSummary.h"

namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::apps::cli {

/// What a merge made of one item of the incoming scene.
struct ItemFate {
    /// A node is merged when its children go to a node that was there; an item is lost when the
    /// name that it was to get is taken, too.
    enum Kind { ADDED, RENAMED, DISCARDED, MERGED, LOST };

    std::string id;
    Kind kind;
    std::string newId;  ///< For renamed items.
};

/// "added", "renamed", ...
const char* fateName(ItemFate::Kind kind);

/// The items of one library, or of the tree, in the order in which they came.
struct LibraryFates {
    const char* name;
    std::vector<ItemFate> items;
};

/// Watches one merge: takes down what both scenes hold before, hears which nodes are attached, and
/// concludes from what is there afterwards.
class MergeReport {
public:
    MergeReport(scene::SceneManager& target, scene::SceneManager& source);

    /// To be called after the merge. @param into the ID of the node that the tree came under.
    std::vector<LibraryFates> conclude(int options, const std::string& into) const;

private:
    using IDs = std::vector<std::string>;
    struct Libraries {
        explicit Libraries(const scene::SceneManager& scene);
        IDs geometries, images, effects, materials, layers;
    };

    std::vector<ItemFate> nodeFates(int options, const std::string& into) const;

    scene::SceneManager& target_;
    Libraries before_;
    Libraries incoming_;
    std::vector<NodeSummary> nodesBefore_;
    std::vector<NodeSummary> incomingNodes_;
    IDs attached_;  ///< "parent,child", one by one.
    core::event::EventBase watcher_;
};

}  // namespace vantorix::apps::cli
