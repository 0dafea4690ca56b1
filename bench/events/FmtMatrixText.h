#pragma once

#include <iterator>
#include <string>

#include <fmt/compile.h>
#include <fmt/format.h>

namespace vantorix::bench {

/// Sixteen floats, each the shortest text that reads back as it, with a blank between two.
inline std::string fmtMatrixText(const float* elements) {
    fmt::memory_buffer buffer;
    for (int i = 0; i < 16; ++i) {
        if (i > 0) buffer.push_back(' ');
        fmt::format_to(std::back_inserter(buffer), FMT_COMPILE("{}"), elements[i]);
    }
    return fmt::to_string(buffer);
}

}  // namespace vantorix::bench
