#include "scene/transform/TransformationElement.h"

#include <utility>

namespace vantorix::scene {

TransformationElement::TransformationElement(Type type, bool updated)
    : type_(type), updatedFlag_(updated) {}

ITransformation::Type TransformationElement::getType() const { return type_; }

bool TransformationElement::updated() { return std::exchange(updatedFlag_, false); }

void TransformationElement::setSid(std::string sid) { sid_ = std::move(sid); }

std::string TransformationElement::getSid() const { return sid_; }

void TransformationElement::markUpdated() { updatedFlag_ = true; }

}  // namespace vantorix::scene
