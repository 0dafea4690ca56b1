#include <absl/container/flat_hash_map.h>

#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// One hash probe: the limit of a look-up.
class AbseilFinder {
public:
    explicit AbseilFinder(const TreePlan& plan) {
        for (int node = 0; node < plan.size(); ++node) {
            places_.emplace(plan.ids[static_cast<std::size_t>(node)], node);
        }
    }
    bool contains(const std::string& id) const {
        const auto found = places_.find(id);
        if (found == places_.end()) return false;
        benchmark::DoNotOptimize(found->second);
        return true;
    }

private:
    absl::flat_hash_map<std::string, int> places_;
};

const bool abseilCasesAdded = [] {
    addFindCases<AbseilFinder>("abseilFind");
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
