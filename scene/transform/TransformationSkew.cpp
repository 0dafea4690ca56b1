#include "scene/transform/TransformationSkew.h"

#include <boost/make_shared.hpp>

namespace vantorix::scene {

using core::utils::Vector;

TransformationSkew::TransformationSkew(float angle, const Vector<float, 3>& rotation,
                                       const Vector<float, 3>& translation)
    : TransformationElement(SKEW, true),
      angle_(angle),
      rotation_(rotation),
      translation_(translation) {}

boost::shared_ptr<ITransformation> TransformationSkew::clone() const {
    return boost::make_shared<TransformationSkew>(*this);
}

float TransformationSkew::getAngle() const { return angle_; }

Vector<float, 3>& TransformationSkew::getRotation() { return rotation_; }

const Vector<float, 3>& TransformationSkew::getRotation() const { return rotation_; }

Vector<float, 3>& TransformationSkew::getTranslation() { return translation_; }

const Vector<float, 3>& TransformationSkew::getTranslation() const { return translation_; }

void TransformationSkew::setAngle(float angle) {
    angle_ = angle;
    markUpdated();
}

void TransformationSkew::setRotation(const Vector<float, 3>& rotation) {
    rotation_ = rotation;
    markUpdated();
}

void TransformationSkew::setTranslation(const Vector<float, 3>& translation) {
    translation_ = translation;
    markUpdated();
}

}  // namespace vantorix::scene
