#include "core_api/utils/Matrix.h"

#include <algorithm>
#include <stdexcept>

#include "core/utils/MatrixText.h"

namespace vantorix::core::utils {
namespace {

std::size_t checked(int index) {
    if (index < 0 || index > 15) throw std::out_of_range("invalid vector<T> subscript");
    return static_cast<std::size_t>(index);
}

}  // namespace

Matrix::Matrix(bool identity) : elements_{} {
    for (std::size_t i = 0; identity && i < 16; i += 5) elements_[i] = 1.0f;
}

Matrix::Matrix(const float* elements) : Matrix(true) {
    if (elements) std::copy_n(elements, elements_.size(), elements_.begin());
}

Matrix::~Matrix() = default;

const float& Matrix::operator[](int index) const { return elements_[checked(index)]; }

float& Matrix::operator[](int index) { return elements_[checked(index)]; }

std::string Matrix::toEventDataString() const { return matrixText(elements_.data()); }

bool Matrix::fromEventDataString(const std::string& text, Matrix& matrix) {
    return readMatrixText(text, matrix.elements_);
}

Matrix Matrix::fromEventDataString(const std::string& text) {
    Matrix matrix(true);
    fromEventDataString(text, matrix);
    return matrix;
}

}  // namespace vantorix::core::utils
