#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// One input: a list of calls. Every fuzzer defines it; libFuzzer or ReplayMain.cpp calls it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace vantorix::fuzz {

/// Ends the process, with the broken rule, when a rule does not hold.
inline void require(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "Broken: %s\n", rule);
    std::abort();
}

}  // namespace vantorix::fuzz
