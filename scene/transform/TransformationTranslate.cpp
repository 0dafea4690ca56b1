#include "scene/transform/TransformationTranslate.h"

#include <boost/make_shared.hpp>

namespace vantorix::scene {

using core::utils::Vector;

TransformationTranslate::TransformationTranslate()
    : TransformationElement(TRANSLATE, true), translation_(0.0f, 0.0f, 0.0f) {}

TransformationTranslate::TransformationTranslate(const Vector<float, 3>& translation)
    : TransformationElement(TRANSLATE, false), translation_(translation) {}

boost::shared_ptr<ITransformation> TransformationTranslate::clone() const {
    return boost::make_shared<TransformationTranslate>(*this);
}

Vector<float, 3>& TransformationTranslate::getTranslation() { return translation_; }

const Vector<float, 3>& TransformationTranslate::getTranslation() const { return translation_; }

void TransformationTranslate::setTranslation(const Vector<float, 3>& translation) {
    translation_ = translation;
    markUpdated();
}

}  // namespace vantorix::scene
