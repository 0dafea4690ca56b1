#include "scene/graph/SceneIdentifiers.h"

#include <cstddef>
#include <cstring>

#include "scene/graph/NumberedID.h"

namespace vantorix::scene {

std::string SceneIdentifiers::generate() { return numberedID(prefix, generateNumber()); }

std::uint32_t SceneIdentifiers::generateNumber() {
    auto number = next_++;
    while (!used_.empty() && used_.count(numberedID(prefix, number)) > 0) {
        number = next_++;
    }
    return number;
}

void SceneIdentifiers::record(const std::string& id) {
    constexpr std::size_t prefixSize = sizeof(prefix) - 1;
    if (id.size() < prefixSize || std::memcmp(id.data(), prefix, prefixSize) != 0) return;
    used_.insert(id);
}

}  // namespace vantorix::scene
