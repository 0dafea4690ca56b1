#pragma once

#include <deque>

#include "scene/spatial/OctreeNode.h"

namespace vantorix::scene {

/// The nodes of one tree, at addresses that stay.
class OctreeNodes {
public:
    OctreeNode* add(OctreeNode* parent, const Eigen::Vector3f& minimum,
                    const Eigen::Vector3f& maximum) {
        return &nodes_.emplace_back(parent, minimum, maximum);
    }

private:
    std::deque<OctreeNode> nodes_;
};

}  // namespace vantorix::scene
