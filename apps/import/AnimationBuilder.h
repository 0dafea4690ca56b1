#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/IdRegistry.h"
#include "apps/import/ModelDocument.h"
#include "apps/import/TransformTrack.h"

namespace vantorix::scene {
class Animation;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Gives nodes the transformation elements that animations need, and adds the animations.
///
/// One animation per clip, with one child per node: a channel onto the node's matrix "transform",
/// or where no clip does more, onto its element "translate" or "scale" as a whole.
class AnimationBuilder {
public:
    /// Refers to @p document and @p report.
    AnimationBuilder(const ModelDocument& document, boost::shared_ptr<scene::SceneManager> scene,
                     ImportReport& report);

    /// Some clip moves the node of that number.
    bool moves(std::size_t node) const { return kinds_.count(static_cast<std::uint32_t>(node)); }

    /// Adds the elements that put @p node, which is that of number @p number, to its rest.
    void addElements(std::size_t number, scene::Node& node) const;

    /// Adds the animations. @p nodes are all nodes, by number.
    void build(const std::vector<boost::shared_ptr<scene::Node>>& nodes);

private:
    void addChannel(const ModelChannel& channel, float duration, scene::Node& node,
                    scene::Animation& animation) const;

    const ModelDocument& document_;
    boost::shared_ptr<scene::SceneManager> scene_;
    IdRegistry ids_;
    std::map<std::uint32_t, TransformTrack::Kind> kinds_;  ///< Of nodes that move, by number.
};

}  // namespace vantorix::apps::import
