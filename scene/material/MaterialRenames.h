#pragma once

#include <cstdint>

namespace vantorix::scene {

/// How often an existing material of the process was given an ID: whoever keeps materials by their
/// IDs sees by it that the IDs have to be read anew. Safe on any thread.
std::uint64_t materialRenames();
void countMaterialRename();

}  // namespace vantorix::scene
