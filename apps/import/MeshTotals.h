#pragma once

#include <cstdint>

namespace vantorix::apps::import {

struct ImportLimits;
struct ModelMesh;

/// What several meshes hold together.
struct MeshTotals {
    void add(const ModelMesh& mesh);

    /// @throws LimitError that names the first number above @p limits.
    void requireWithin(const ImportLimits& limits) const;

    std::uint64_t vertices = 0;
    std::uint64_t faces = 0;
    std::uint64_t corners = 0;  ///< Of all faces.
    std::uint64_t bones = 0;
    std::uint64_t influences = 0;  ///< Of bones on vertices.
};

}  // namespace vantorix::apps::import
