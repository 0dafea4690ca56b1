#pragma once

#include <nlohmann/json_fwd.hpp>

namespace vantorix::apps::cli {

struct ModelSummary;

/// The whole summary as one object. The tree is a list: each node names the position of its
/// parent, so that trees of any depth can be read.
nlohmann::ordered_json summaryJson(const ModelSummary& summary);

}  // namespace vantorix::apps::cli
