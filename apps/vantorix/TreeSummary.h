#pragma once

#include <vector>

#include "apps/vantorix/ModelSummary.h"

namespace vantorix::scene {
class Node;
}

namespace vantorix::apps::cli {

/// The tree below @p root, depth first, in time linear in its size. A node that stands in several
/// rows is listed once.
std::vector<NodeSummary> summarizeTree(const scene::Node& root);

/// The box between two corners when it is one.
BoxSummary boxBetween(const Eigen::Vector3f& least, const Eigen::Vector3f& most);

}  // namespace vantorix::apps::cli
