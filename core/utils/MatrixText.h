#pragma once

#include <array>
#include <string>

namespace vantorix::core::utils {

/// The text form of 16 floats, see Matrix::toEventDataString().
std::string matrixText(const float* elements);

/// @p id + "," + matrixText().
std::string joinMatrixText(const std::string& id, const float* elements);

/// Reads the text form; false, leaving @p elements alone, when @p text has another form.
bool readMatrixText(const std::string& text, std::array<float, 16>& elements);

}  // namespace vantorix::core::utils
