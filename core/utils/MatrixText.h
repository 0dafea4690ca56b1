#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "core/utils/ShortestFloat.h"

namespace vantorix::core::utils {

constexpr std::size_t matrixTextRoom = 16 * (longestFloatText + 1) + floatTextRoom;

/// The text form of 16 floats, see Matrix::toEventDataString().
std::string matrixText(const float* elements);

/// Writes it, and returns its end; @p out has matrixTextRoom.
char* writeMatrixText(char* out, const float* elements);

/// Reads the text form; false, leaving @p elements alone, when @p text has another form.
bool readMatrixText(const std::string& text, std::array<float, 16>& elements);

}  // namespace vantorix::core::utils
