#pragma once

#include <malloc.h>

namespace vantorix::bench {

/// Bytes of this process that are allocated at the moment.
inline double heapBytes() {
    const auto heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

}  // namespace vantorix::bench
