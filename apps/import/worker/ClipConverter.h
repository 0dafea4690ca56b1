#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/import/ClipTotals.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ImportReport.h"
#include "apps/import/ModelDocument.h"

struct aiAnimation;
struct aiNodeAnim;

namespace vantorix::apps::import {

class NodeNames;

/// Copies animations, every count and float checked: keys in order, times in seconds.
class ClipConverter {
public:
    /// Refers to @p nodes and @p report.
    ClipConverter(const ImportLimits& limits, const NodeNames& nodes, ImportReport& report)
        : limits_(limits), nodes_(nodes), report_(report) {}

    /// Appends the clip to @p clips unless nothing moves in it.
    /// @throws LimitError when all animations up to this one exceed the limits.
    void convert(const aiAnimation& source, std::vector<ModelClip>& clips);

private:
    void count(const aiAnimation& source);
    void convertChannels(const aiAnimation& source, double ticksPerSecond, ModelClip& clip);
    void note(const ModelClip& clip, const std::string& what);

    ImportLimits limits_;
    const NodeNames& nodes_;
    ImportReport& report_;
    ClipTotals totals_;
};

}  // namespace vantorix::apps::import
