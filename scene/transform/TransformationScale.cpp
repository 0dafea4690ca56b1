#include "scene/transform/TransformationScale.h"

#include <boost/make_shared.hpp>

namespace vantorix::scene {

using core::utils::Vector;

TransformationScale::TransformationScale()
    : TransformationElement(SCALE, true), scale_(1.0f, 1.0f, 1.0f) {}

TransformationScale::TransformationScale(const Vector<float, 3>& scale)
    : TransformationElement(SCALE, false), scale_(scale) {}

TransformationScale::TransformationScale(float x, float y, float z)
    : TransformationElement(SCALE, false), scale_(x, y, z) {}

boost::shared_ptr<ITransformation> TransformationScale::clone() const {
    return boost::make_shared<TransformationScale>(*this);
}

Vector<float, 3>& TransformationScale::getScale() { return scale_; }

const Vector<float, 3>& TransformationScale::getScale() const { return scale_; }

void TransformationScale::setScale(const Vector<float, 3>& scale) {
    scale_ = scale;
    markUpdated();
}

float TransformationScale::getScaleX() const { return scale_[0]; }

float TransformationScale::getScaleY() const { return scale_[1]; }

float TransformationScale::getScaleZ() const { return scale_[2]; }

void TransformationScale::setScaleX(float x) {
    scale_[0] = x;
    markUpdated();
}

void TransformationScale::setScaleY(float y) {
    scale_[1] = y;
    markUpdated();
}

void TransformationScale::setScaleZ(float z) {
    scale_[2] = z;
    markUpdated();
}

}  // namespace vantorix::scene
