#pragma once

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

}  // namespace vantorix::test
