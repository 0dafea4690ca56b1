#include "scene/transform/TransformationLookAt.h"

#include <boost/make_shared.hpp>

namespace vantorix::scene {

using core::utils::Vector;

TransformationLookAt::TransformationLookAt(const Vector<float, 3>& eye,
                                           const Vector<float, 3>& interest,
                                           const Vector<float, 3>& up)
    : TransformationElement(LOOK_AT, true),
      eyePosition_(eye),
      interestPoint_(interest),
      upAxis_(up) {}

boost::shared_ptr<ITransformation> TransformationLookAt::clone() const {
    return boost::make_shared<TransformationLookAt>(*this);
}

Vector<float, 3>& TransformationLookAt::getEyePosition() { return eyePosition_; }

const Vector<float, 3>& TransformationLookAt::getEyePosition() const { return eyePosition_; }

Vector<float, 3>& TransformationLookAt::getInterestPoint() { return interestPoint_; }

const Vector<float, 3>& TransformationLookAt::getInterestPoint() const { return interestPoint_; }

Vector<float, 3>& TransformationLookAt::getUpAxis() { return upAxis_; }

const Vector<float, 3>& TransformationLookAt::getUpAxis() const { return upAxis_; }

void TransformationLookAt::setEyePosition(const Vector<float, 3>& eye) {
    eyePosition_ = eye;
    markUpdated();
}

void TransformationLookAt::setInterestPoint(const Vector<float, 3>& interest) {
    interestPoint_ = interest;
    markUpdated();
}

void TransformationLookAt::setUpAxis(const Vector<float, 3>& up) {
    upAxis_ = up;
    markUpdated();
}

}  // namespace vantorix::scene
