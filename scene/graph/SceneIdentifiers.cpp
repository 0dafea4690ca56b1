#include "scene/graph/SceneIdentifiers.h"

#include <cstddef>
#include <cstring>

#include "scene/graph/NumberedID.h"

namespace vantorix::scene {
namespace {

constexpr char prefix[] = "OID";
constexpr std::size_t prefixSize = sizeof(prefix) - 1;

}  // namespace

std::string SceneIdentifiers::generate() {
    auto id = numberedID(prefix, next_++);
    while (used_.count(id) > 0) id = numberedID(prefix, next_++);
    return id;
}

void SceneIdentifiers::record(const std::string& id) {
    if (id.size() < prefixSize || std::memcmp(id.data(), prefix, prefixSize) != 0) return;
    used_.insert(id);
}

}  // namespace vantorix::scene
