#include "apps/import/worker/NodeNames.h"

namespace vantorix::apps::import {

NodeNames::NodeNames(const std::vector<ModelNode>& nodes) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        numbers_.emplace(nodes[i].name, static_cast<std::uint32_t>(i));
    }
}

boost::optional<std::uint32_t> NodeNames::find(const std::string& name) const {
    const auto found = numbers_.find(name);
    if (found == numbers_.end()) return boost::none;
    return found->second;
}

}  // namespace vantorix::apps::import
