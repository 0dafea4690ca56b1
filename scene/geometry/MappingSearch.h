#pragma once

#include <vector>

#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {

/// The first mapping of @p semantic, or null.
inline const StreamMapping* findBySemantic(const std::vector<StreamMapping>& mappings,
                                           StreamSemantic semantic) {
    for (const auto& mapping : mappings) {
        if (mapping.semantic == semantic) return &mapping;
    }
    return nullptr;
}

}  // namespace vantorix::scene
