#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace vantorix::apps::import {

class ImportReport;

/// Turns names of a model file into ids of one kind of scene object: unique, not empty, and free
/// of ',' (separates the values of an event), '/' (separates id and element of an animation's
/// target) and control characters. A usable name stays as it is; every other one is reported.
class IdRegistry {
public:
    /// @p kind ("node") names the objects in the report and those without a name.
    IdRegistry(const std::string& kind, ImportReport& report) : kind_(kind), report_(report) {}

    /// Keeps @p id from being given: the scene has it already.
    void reserve(const std::string& id) { taken_.insert(id); }

    /// A new id for an object called @p name, also free of the characters @p unwanted. Constant
    /// time on average, also for equal names.
    std::string take(const std::string& name, const std::string& unwanted = "");

private:
    std::string unused(const std::string& base);

    std::string kind_;
    ImportReport& report_;
    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, std::uint64_t> lastSuffixes_;
};

}  // namespace vantorix::apps::import
