#include "scene/geometry/Vertex.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>
#include <utility>

#include "scene/geometry/BlockAllocation.h"
#include "scene/geometry/VertexElement.h"
#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {
namespace {

/// Elements in one block with the floats behind them, handed out one after the other.
class ElementBlock {
public:
    ElementBlock(std::size_t elements, std::size_t floats) : element_(nullptr), floats_(nullptr) {
        const std::size_t size = elements * sizeof(VertexElement) + floats * sizeof(float);
        block_ = makeBlock<VertexElement>(size, [&](void* place, void*) {
            // One element too many is reserved, so that none at all is possible too.
            element_ = new (place) VertexElement[elements + 1];
            floats_ = reinterpret_cast<float*>(element_ + elements + 1);
            return element_;
        });
    }

    boost::shared_ptr<VertexElement> next(const VertexValue& value) {
        element_->semantic = value.semantic;
        element_->size = static_cast<int>(value.size);
        element_->values = floats_;
        floats_ = std::copy_n(value.values, value.size, floats_);
        return boost::shared_ptr<VertexElement>(block_, element_++);
    }

private:
    boost::shared_ptr<VertexElement> block_;
    VertexElement* element_;
    float* floats_;
};

}  // namespace

Vertex::Vertex() : floats_() {}

Vertex::Vertex(const Vertex& other) : floats_() { *this = other; }

Vertex& Vertex::operator=(const Vertex& other) {
    makeElements() = other.getElements();
    return *this;
}

Vertex::~Vertex() { delete elements_.load(std::memory_order_relaxed); }

void Vertex::addElement(boost::shared_ptr<VertexElement> element, bool replace) {
    if (!element) return;
    auto& elements = makeElements();
    for (auto& present : elements) {
        if (present->semantic != element->semantic) continue;
        if (replace) present = std::move(element);
        return;
    }
    elements.push_back(std::move(element));
}

unsigned int Vertex::getElementCount() const {
    return static_cast<unsigned int>(VertexValues::countOf(*this));
}

boost::shared_ptr<VertexElement> Vertex::getElementAt(unsigned int index) const {
    if (index >= getElementCount()) return {};
    return getElements()[index];
}

boost::shared_ptr<VertexElement> Vertex::getElementBySemantic(StreamSemantic semantic) const {
    if (!VertexValues::find(*this, semantic)) return {};
    for (const auto& element : getElements()) {
        if (element->semantic == semantic) return element;
    }
    return {};
}

const Vertex::Elements& Vertex::getElements() const { return makeElements(); }

Vertex::Elements& Vertex::makeElements() const {
    if (auto* const present = elements_.load(std::memory_order_acquire)) return *present;
    auto made = std::make_unique<Elements>();
    if (shape_ != 0) {
        ElementBlock block(VertexValues::countOf(*this), floats_.size());
        VertexValues::forEach(
            *this, [&](const VertexValue& value) { made->push_back(block.next(value)); });
    }
    Elements* present = nullptr;
    if (elements_.compare_exchange_strong(present, made.get(), std::memory_order_acq_rel)) {
        present = made.release();  // Otherwise another reader came first.
    }
    return *present;
}

boost::shared_ptr<VertexElement> Vertex::getPosition() const {
    return getElementBySemantic(POSITION);
}

boost::shared_ptr<VertexElement> Vertex::getColor() const { return getElementBySemantic(COLOR); }

boost::shared_ptr<VertexElement> Vertex::getNormal() const { return getElementBySemantic(NORMAL); }

boost::shared_ptr<VertexElement> Vertex::getBinormal() const {
    return getElementBySemantic(BINORMAL);
}

boost::shared_ptr<VertexElement> Vertex::getTangent() const {
    return getElementBySemantic(TANGENT);
}

boost::shared_ptr<VertexElement> Vertex::getTexCoord(int set) const {
    return getElementBySemantic(textureSemantic(set));
}

boost::shared_ptr<VertexElement> Vertex::getTexCoord(StreamSemantic semantic) const {
    return getElementBySemantic(semantic);
}

Eigen::Vector3f Vertex::getPositionVector() const {
    Eigen::Vector3f position = Eigen::Vector3f::Zero();
    const auto value = VertexValues::find(*this, POSITION);
    if (!value || !value->values) return position;
    for (int i = 0; i < std::min(value->size, 3); ++i) position[i] = value->values[i];
    return position;
}

void Vertex::setPosition(float x, float y) { setValues(POSITION, {x, y}); }

void Vertex::setPosition(float x, float y, float z) { setValues(POSITION, {x, y, z}); }

void Vertex::setPosition(float x, float y, float z, float w) { setValues(POSITION, {x, y, z, w}); }

void Vertex::setPosition(const std::vector<float>& values) { setValues(POSITION, values); }

void Vertex::setColor(float r, float g, float b, float a) { setValues(COLOR, {r, g, b, a}); }

void Vertex::setColor(const std::vector<float>& values) { setValues(COLOR, values); }

void Vertex::setNormal(float x, float y, float z) { setValues(NORMAL, {x, y, z}); }

void Vertex::setNormal(const std::vector<float>& values) { setValues(NORMAL, values); }

void Vertex::setBinormal(float x, float y, float z) { setValues(BINORMAL, {x, y, z}); }

void Vertex::setBinormal(const std::vector<float>& values) { setValues(BINORMAL, values); }

void Vertex::setTangent(float x, float y, float z) { setValues(TANGENT, {x, y, z}); }

void Vertex::setTangent(const std::vector<float>& values) { setValues(TANGENT, values); }

void Vertex::setTextCoord(int set, float s) { setValues(textureSemantic(set), {s}); }

void Vertex::setTextCoord(int set, float s, float t) { setValues(textureSemantic(set), {s, t}); }

void Vertex::setTextCoord(int set, float s, float t, float p) {
    setValues(textureSemantic(set), {s, t, p});
}

void Vertex::setTextCoord(int set, float s, float t, float p, float q) {
    setValues(textureSemantic(set), {s, t, p, q});
}

void Vertex::setTextCoord(int set, const std::vector<float>& values) {
    setValues(textureSemantic(set), values);
}

void Vertex::print() const {
    const auto position = getPositionVector();
    std::cout << position[0] << ", " << position[1] << ", " << position[2];
}

StreamSemantic Vertex::textureSemantic(int set) {
    return set >= 0 && set < 8 ? static_cast<StreamSemantic>(TEXCOORD0 + set) : INVALID;
}

void Vertex::setValues(StreamSemantic semantic, int size, const float* values) {
    if (!values && size > 0) return;
    if (VertexValues::keep(*this, {semantic, size, values})) return;
    addElement(VertexElement::create(semantic, size, values), true);
}

void Vertex::setValues(StreamSemantic semantic, const std::vector<float>& values) {
    setValues(semantic, static_cast<int>(values.size()), values.data());
}

void Vertex::setValues(StreamSemantic semantic, std::initializer_list<float> values) {
    setValues(semantic, static_cast<int>(values.size()), values.begin());
}

}  // namespace vantorix::scene
