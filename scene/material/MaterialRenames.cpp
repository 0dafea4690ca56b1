#include "scene/material/MaterialRenames.h"

#include <atomic>

namespace vantorix::scene {
namespace {

std::atomic<std::uint64_t> renameCount{0};

}  // namespace

std::uint64_t materialRenames() { return renameCount; }

void countMaterialRename() { ++renameCount; }

}  // namespace vantorix::scene
