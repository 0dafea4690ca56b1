#include "scene/transform/TransformationMatrix.h"

#include <boost/make_shared.hpp>

namespace vantorix::scene {

using core::utils::Matrix;

TransformationMatrix::TransformationMatrix() : TransformationElement(MATRIX, true), matrix_(true) {}

TransformationMatrix::TransformationMatrix(const float* values)
    : TransformationElement(MATRIX, false), matrix_(values ? Matrix(values) : Matrix(true)) {}

TransformationMatrix::TransformationMatrix(const Matrix& matrix)
    : TransformationElement(MATRIX, false), matrix_(matrix) {}

boost::shared_ptr<ITransformation> TransformationMatrix::clone() const {
    return boost::make_shared<TransformationMatrix>(*this);
}

Matrix TransformationMatrix::getMatrix() const { return matrix_; }

float TransformationMatrix::getValue(unsigned int a, unsigned int b) const {
    if (a >= 4 || b >= 4) return 0.0f;
    return matrix_.getMatrix()[a * 4 + b];
}

void TransformationMatrix::setMatrix(const float* values) {
    if (values) setMatrix(Matrix(values));
}

void TransformationMatrix::setMatrix(const Matrix& matrix) {
    matrix_ = matrix;
    markUpdated();
}

}  // namespace vantorix::scene
