#include "scene/graph/SceneIdentifiers.h"

namespace vantorix::scene {
namespace {

constexpr const char* prefix = "OID";

}  // namespace

std::string SceneIdentifiers::generate() {
    auto id = prefix + std::to_string(next_++);
    while (used_.count(id) > 0) id = prefix + std::to_string(next_++);
    return id;
}

void SceneIdentifiers::record(const std::string& id) {
    if (id.compare(0, 3, prefix) == 0) used_.insert(id);
}

}  // namespace vantorix::scene
