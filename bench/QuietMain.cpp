// The main function of every benchmark: no log line is written while time is taken.

#include <benchmark/benchmark.h>

#include "core_api/logger/Logger.h"

int main(int argc, char** argv) {
    vantorix::core::logger::Logger::active = false;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
