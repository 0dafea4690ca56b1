#include "scene/transform/TransformationElement.h"

#include <utility>

#include "scene/transform/EditCounter.h"

namespace vantorix::scene {

TransformationElement::TransformationElement(Type type, bool updated)
    : type_(type), updatedFlag_(updated) {}

TransformationElement::TransformationElement(const TransformationElement& other) = default;

TransformationElement& TransformationElement::operator=(const TransformationElement& other) {
    sid_ = other.sid_;
    type_ = other.type_;
    updatedFlag_ = other.updatedFlag_;
    elementEdits.note();
    return *this;
}

ITransformation::Type TransformationElement::getType() const { return type_; }

bool TransformationElement::updated() { return std::exchange(updatedFlag_, false); }

void TransformationElement::setSid(std::string sid) {
    sid_ = std::move(sid);
    elementEdits.note();
}

std::string TransformationElement::getSid() const { return sid_; }

void TransformationElement::markUpdated() { updatedFlag_ = true; }

}  // namespace vantorix::scene
