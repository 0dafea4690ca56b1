#pragma once

#include <cstdint>
#include <vector>

#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

/// The channels of a clip as they travel, column by column: of each channel the keys of positions,
/// rotations and scales follow each other.
struct ClipColumns {
    ClipColumns() = default;
    explicit ClipColumns(const std::vector<ModelChannel>& channels);

    /// @throws RefusedError when the columns do not fit each other.
    std::vector<ModelChannel> toChannels() const;

    std::vector<std::uint32_t> nodes;
    std::vector<std::uint32_t> counts;  ///< Three per channel.
    std::vector<float> times;
    std::vector<float> values;
};

}  // namespace vantorix::apps::import
