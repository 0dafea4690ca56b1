#pragma once

#include <cstdint>

namespace vantorix::apps::import {

struct ImportLimits;
struct ModelClip;

/// What several clips hold together.
struct ClipTotals {
    void add(const ModelClip& clip);

    /// @throws LimitError that names the first number above @p limits.
    void requireWithin(const ImportLimits& limits) const;

    std::uint64_t channels = 0;
    std::uint64_t keys = 0;
};

}  // namespace vantorix::apps::import
