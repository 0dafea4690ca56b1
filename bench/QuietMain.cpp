// The main function of every benchmark. No log line is written while time is taken, and freed
// memory stays with the process: what the kernel takes to hand out empty pages again, after a large
// case and not after a small one, counts for nobody.

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <climits>

#include "core_api/logger/Logger.h"

int main(int argc, char** argv) {
    vantorix::core::logger::Logger::active = false;
    mallopt(M_TRIM_THRESHOLD, INT_MAX);
    mallopt(M_MMAP_MAX, 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
