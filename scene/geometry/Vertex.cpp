#include "scene/geometry/Vertex.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <utility>

#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {
namespace {

template <std::size_t Size>
boost::shared_ptr<VertexElement> makeElement(StreamSemantic semantic,
                                             const std::array<float, Size>& values) {
    return VertexElement::create(semantic, static_cast<int>(Size), values.data());
}

}  // namespace

Vertex::Vertex() = default;

Vertex::Vertex(const Vertex& other) = default;

Vertex& Vertex::operator=(const Vertex& other) = default;

Vertex::~Vertex() = default;

void Vertex::addElement(boost::shared_ptr<VertexElement> element, bool replace) {
    if (!element) return;
    for (auto& present : elements_) {
        if (present->semantic != element->semantic) continue;
        if (replace) present = std::move(element);
        return;
    }
    elements_.push_back(std::move(element));
}

unsigned int Vertex::getElementCount() const { return static_cast<unsigned int>(elements_.size()); }

boost::shared_ptr<VertexElement> Vertex::getElementAt(unsigned int index) const {
    return index < elements_.size() ? elements_[index] : boost::shared_ptr<VertexElement>();
}

boost::shared_ptr<VertexElement> Vertex::getElementBySemantic(StreamSemantic semantic) const {
    for (const auto& element : elements_) {
        if (element->semantic == semantic) return element;
    }
    return {};
}

const std::vector<boost::shared_ptr<VertexElement>>& Vertex::getElements() const {
    return elements_;
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
    const auto element = getPosition();
    if (!element || !element->values) return position;
    for (int i = 0; i < std::min(element->size, 3); ++i) position[i] = element->values[i];
    return position;
}

void Vertex::setPosition(float x, float y) { addElement(makeElement<2>(POSITION, {x, y}), true); }

void Vertex::setPosition(float x, float y, float z) {
    addElement(makeElement<3>(POSITION, {x, y, z}), true);
}

void Vertex::setPosition(float x, float y, float z, float w) {
    addElement(makeElement<4>(POSITION, {x, y, z, w}), true);
}

void Vertex::setPosition(const std::vector<float>& values) { setValues(POSITION, values); }

void Vertex::setColor(float r, float g, float b, float a) {
    addElement(makeElement<4>(COLOR, {r, g, b, a}), true);
}

void Vertex::setColor(const std::vector<float>& values) { setValues(COLOR, values); }

void Vertex::setNormal(float x, float y, float z) {
    addElement(makeElement<3>(NORMAL, {x, y, z}), true);
}

void Vertex::setNormal(const std::vector<float>& values) { setValues(NORMAL, values); }

void Vertex::setBinormal(float x, float y, float z) {
    addElement(makeElement<3>(BINORMAL, {x, y, z}), true);
}

void Vertex::setBinormal(const std::vector<float>& values) { setValues(BINORMAL, values); }

void Vertex::setTangent(float x, float y, float z) {
    addElement(makeElement<3>(TANGENT, {x, y, z}), true);
}

void Vertex::setTangent(const std::vector<float>& values) { setValues(TANGENT, values); }

void Vertex::setTextCoord(int set, float s) {
    addElement(makeElement<1>(textureSemantic(set), {s}), true);
}

void Vertex::setTextCoord(int set, float s, float t) {
    addElement(makeElement<2>(textureSemantic(set), {s, t}), true);
}

void Vertex::setTextCoord(int set, float s, float t, float p) {
    addElement(makeElement<3>(textureSemantic(set), {s, t, p}), true);
}

void Vertex::setTextCoord(int set, float s, float t, float p, float q) {
    addElement(makeElement<4>(textureSemantic(set), {s, t, p, q}), true);
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
    if (values || size <= 0) addElement(VertexElement::create(semantic, size, values), true);
}

void Vertex::setValues(StreamSemantic semantic, const std::vector<float>& values) {
    setValues(semantic, static_cast<int>(values.size()), values.data());
}

}  // namespace vantorix::scene
