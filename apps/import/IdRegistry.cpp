#include "apps/import/IdRegistry.h"

#include <algorithm>

#include "apps/import/ImportReport.h"

namespace vantorix::apps::import {
namespace {

bool isUnsafe(unsigned char c) { return c == ',' || c == '/' || c < 0x20 || c == 0x7f; }

}  // namespace

std::string IdRegistry::take(const std::string& name, const std::string& unwanted) {
    std::string base = name.empty() ? kind_ : name;
    const auto isBad = [&unwanted](char c) {
        return isUnsafe(static_cast<unsigned char>(c)) || unwanted.find(c) != std::string::npos;
    };
    std::replace_if(base.begin(), base.end(), isBad, '_');
    const std::string id = unused(base);
    taken_.insert(id);
    if (name.empty()) {
        report_.add(kind_ + " without a name: its id is \"" + id + "\"");
    } else if (id != name) {
        report_.add(kind_ + " \"" + name + "\": its id is \"" + id + "\"");
    }
    return id;
}

std::string IdRegistry::unused(const std::string& base) {
    if (taken_.count(base) == 0) return base;
    auto& suffix = lastSuffixes_.emplace(base, 1).first->second;
    std::string id;
    do {
        id = base + "_" + std::to_string(++suffix);
    } while (taken_.count(id) > 0);
    return id;
}

}  // namespace vantorix::apps::import
