#pragma once

#include <array>
#include <string>

#include "core_api/CoreExport.h"

namespace vantorix::core::utils {

/// A 4x4 matrix for column vectors, stored column by column: index = 4 * column + row. The
/// translation of an affine matrix lies at 12, 13 and 14.
class VANTORIX_CORE_EXPORT Matrix {
public:
    /// The identity, or all zeros when @p identity is false.
    explicit Matrix(bool identity);

    /// Copies 16 floats in storage order; a null pointer gives the identity.
    explicit Matrix(const float* elements);

    Matrix(const Matrix&) = default;
    Matrix& operator=(const Matrix&) = default;
    virtual ~Matrix();

    /// The 16 floats.
    const float* getMatrix() const { return elements_.data(); }
    float* getMatrix() { return elements_.data(); }

    /// @throws std::out_of_range unless @p index is in 0 to 15.
    const float& operator[](int index) const;
    float& operator[](int index);

    /// The 16 floats in storage order, joined with single blanks, each as the shortest decimal
    /// text that reads back as the same float ("0", "-0.25", "1e-09", "inf", "nan").
    std::string toEventDataString() const;

    /// Reads what toEventDataString() writes. Returns false, leaving @p matrix as it is, for a
    /// text that is not exactly 16 numbers joined with single blanks.
    static bool fromEventDataString(const std::string& text, Matrix& matrix);

    /// The same, with the identity for such a text.
    static Matrix fromEventDataString(const std::string& text);

private:
    std::array<float, 16> elements_;
};

}  // namespace vantorix::core::utils
