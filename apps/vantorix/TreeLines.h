#pragma once

#include <string>
#include <vector>

namespace vantorix::apps::cli {

/// The branches in front of each line of a tree, for nodes in depth-first order.
/// @param depths of the nodes; the first is 0.
/// @param lineDrawing box-drawing characters instead of ASCII.
/// Beyond forty levels the branches are cut short and the depth is written instead.
std::vector<std::string> treePrefixes(const std::vector<std::size_t>& depths, bool lineDrawing);

}  // namespace vantorix::apps::cli
