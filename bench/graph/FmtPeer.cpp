#include "bench/events/FmtMatrixText.h"
#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// The poses of a tree as text, and nothing else.
void fmtPoses(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    std::size_t length = 0;
    for (auto _ : state) {
        for (const auto& pose : plan.poses) length += fmtMatrixText(pose.matrix.data()).size();
    }
    if (length < 32 * static_cast<std::size_t>(state.iterations() * plan.size())) {
        state.SkipWithError("too short a text");
    }
    countItems(state, plan.size());
}

const bool fmtCasesAdded = [] {
    addCases("fmtPoses", fmtPoses, {TREE8}, {10000});
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
