#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace vantorix::scene {

/// Generates the identifiers "OID0", "OID1", ... of one scene, without those that were recorded.
class SceneIdentifiers {
public:
    static constexpr char prefix[] = "OID";

    std::string generate();
    /// The number of the identifier that generate would return.
    std::uint32_t generateNumber();
    void record(const std::string& id);

private:
    std::uint32_t next_ = 0;
    std::set<std::string> used_;
};

}  // namespace vantorix::scene
