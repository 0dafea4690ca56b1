#pragma once

#include <map>

#include <nlohmann/json_fwd.hpp>

namespace vantorix::scene {
class Node;
}

namespace vantorix::apps::cli {

/// Places of nodes in the list that a dump writes.
using NodeNumbers = std::map<const scene::Node*, std::size_t>;

/// A node with its elements and what it instances; its parent by number.
nlohmann::ordered_json nodeDump(const scene::Node& node, const NodeNumbers& numbers);

}  // namespace vantorix::apps::cli
