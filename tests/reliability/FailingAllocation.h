#pragma once

namespace vantorix::test {

/// Replaces the operators new and delete of the program. From here on, allocation number @p number
/// of the calling thread fails, and only that one.
void failAllocation(long number);

/// Whether it has come to that since.
bool hasAllocationFailed();

/// The same; and no allocation fails any more.
bool endFailing();

}  // namespace vantorix::test
