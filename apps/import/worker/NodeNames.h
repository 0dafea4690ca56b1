#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/optional.hpp>

#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

/// Finds nodes by the names with which Assimp refers to them.
class NodeNames {
public:
    explicit NodeNames(const std::vector<ModelNode>& nodes);

    /// The first node of that name.
    boost::optional<std::uint32_t> find(const std::string& name) const;

private:
    std::unordered_map<std::string, std::uint32_t> numbers_;
};

}  // namespace vantorix::apps::import
