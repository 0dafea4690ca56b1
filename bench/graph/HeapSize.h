#pragma once

namespace vantorix::bench {

/// Bytes that the program has from malloc, with what malloc keeps beside each block.
double heapBytes();

/// @name The most memory that the program held at once since restartPeak(), in bytes above what it
/// held then
/// @{
/// Returns false where the system does not say.
bool restartPeak();
double peakBytes();
/// @}

}  // namespace vantorix::bench
