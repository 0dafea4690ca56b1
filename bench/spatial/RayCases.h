#pragma once

#include <cstddef>

#include <benchmark/benchmark.h>

#include "bench/spatial/TorusRays.h"

namespace vantorix::bench {

/// Measures @p findHit, which says whether a ray hits anything after it has looked for the nearest
/// hit. Items are rays.
template <typename FindHit>
void measureHits(benchmark::State& state, const FindHit& findHit) {
    const auto rays = makeRays();
    std::size_t hits = 0;
    for (const auto& ray : rays) hits += findHit(ray) ? 1 : 0;
    if (hits < rays.size() * 7 / 10 || hits > rays.size() * 8 / 10) {
        return state.SkipWithError("wrong number of hits");
    }
    std::size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(findHit(rays[next++ % rays.size()]));
    state.SetItemsProcessed(state.iterations());
}

}  // namespace vantorix::bench
