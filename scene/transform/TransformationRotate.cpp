#include "scene/transform/TransformationRotate.h"

#include <algorithm>
#include <cmath>

#include <boost/make_shared.hpp>

#include "core_api/utils/Matrix.h"
#include "core_api/utils/Quaternion.h"

namespace vantorix::scene {

using core::utils::Matrix;
using core::utils::Quaternion;
using core::utils::Vector;

namespace {

Vector<float, 3> negated(Vector<float, 3> axis) {
    for (std::size_t i = 0; i < axis.size(); ++i) axis[i] *= -1.0f;
    return axis;
}

/// In radians. Rounding may leave the domain of the arc cosine, which must not end in NaN.
float angleOf(const float* m) {
    return std::acos(std::clamp((m[0] + m[5] + m[10] - 1.0f) * 0.5f, -1.0f, 1.0f));
}

}  // namespace

TransformationRotate::TransformationRotate() : TransformationElement(ROTATE, true), angle_(0.0f) {}

TransformationRotate::TransformationRotate(const Vector<float, 3>& axis, float angle)
    : TransformationElement(ROTATE, false), rotationAxis_(axis), angle_(angle) {}

boost::shared_ptr<ITransformation> TransformationRotate::clone() const {
    return boost::make_shared<TransformationRotate>(*this);
}

Vector<float, 3>& TransformationRotate::getRotationAxis() { return rotationAxis_; }

const Vector<float, 3>& TransformationRotate::getRotationAxis() const { return rotationAxis_; }

float TransformationRotate::getAngle() const { return angle_; }

void TransformationRotate::setRotationAxis(const Vector<float, 3>& axis) {
    rotationAxis_ = axis;
    markUpdated();
}

void TransformationRotate::setRotationAxis(float x, float y, float z) {
    setRotationAxis(Vector<float, 3>(x, y, z));
}

void TransformationRotate::setAngle(float angle) {
    angle_ = angle;
    markUpdated();
}

void TransformationRotate::rotateBy(const Vector<float, 3>& axis, float angle) {
    // The negated axis is deliberate: turning about the element's own axis subtracts.
    const auto turned = Quaternion(rotationAxis_, angle_) * Quaternion(negated(axis), angle);
    const auto axisAngle = turned.toAxisAngle();
    angle_ = axisAngle[3];
    setRotationAxis(axisAngle[0], axisAngle[1], axisAngle[2]);
}

void TransformationRotate::setFromMatrix(const Matrix& matrix) {
    const float* const m = matrix.getMatrix();
    const float angle = angleOf(m);
    const float sine = std::sin(angle);
    if (sine == 0.0f) {  // Exactly 0 on purpose: small turns keep their axis.
        angle_ = 0.0f;
        setRotationAxis(1.0f, 0.0f, 0.0f);
        return;
    }
    const float k = 0.5f / sine;
    angle_ = angle;  // In radians on purpose, unlike the degrees that the setters take.
    setRotationAxis((m[6] - m[9]) * k, (m[8] - m[2]) * k, (m[1] - m[4]) * k);
}

}  // namespace vantorix::scene
