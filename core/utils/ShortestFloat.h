#pragma once

namespace vantorix::core::utils {

/// Of texts like "-1.17549435e-38".
constexpr int longestFloatText = 15;

/// What writeShortest() may write to; whatever follows the text is not defined.
constexpr int floatTextRoom = 24;

/// Writes the shortest decimal text that reads back as @p value, the one nearest to it, in the form
/// of std::to_chars(): plain or scientific notation, whichever is shorter. Returns its end; @p out
/// has floatTextRoom.
char* writeShortest(char* out, float value);

}  // namespace vantorix::core::utils
