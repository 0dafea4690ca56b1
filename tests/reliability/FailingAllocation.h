#pragma once

#include <algorithm>
#include <new>

namespace vantorix::test {

/// Replaces the operators new and delete of the program. From here on, allocation number @p number
/// of the calling thread fails, and only that one; for 0 none does.
void failAllocation(long number);

/// What the calling thread has allocated since then.
long allocationsSinceThen();

/// Whether it has come to that since.
bool hasAllocationFailed();

/// The same; and no allocation fails any more.
bool endFailing();

/// Calls @p action, in which allocation number @p number fails if there are as many.
/// @returns whether it came to that. A std::bad_alloc of another origin goes on.
template <class Action>
bool failAt(long number, Action action) {
    failAllocation(number);
    try {
        action();
    } catch (const std::bad_alloc&) {
        if (!hasAllocationFailed()) throw;
    }
    return endFailing();
}

/// All of the first and of the last of @p total allocations, those between at growing distances.
inline long nextNumber(long number, long total) {
    constexpr long last = 80;
    const long sparse = number + 1 + number / 40;
    return number < total - last ? std::min(sparse, total - last) : number + 1;
}

}  // namespace vantorix::test
