#pragma once

namespace vantorix::bench {

/// @name The most memory that the program held at once since restartPeak(), in bytes above what it
/// held then
/// @{
/// Returns false where the system does not say.
bool restartPeak();
double peakBytes();
/// @}

}  // namespace vantorix::bench
