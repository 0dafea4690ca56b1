#include "scene/geometry/Polygon.h"

#include <iostream>
#include <utility>

namespace vantorix::scene {

Polygon::Polygon() = default;

Polygon::Polygon(const Polygon& other) = default;

Polygon& Polygon::operator=(const Polygon& other) = default;

Polygon::~Polygon() = default;

Eigen::Vector3f Polygon::getFaceNormal() {
    std::cout << "Polygon::getFaceNormal() not implemented yet!\n";
    return Eigen::Vector3f::Zero();
}

void Polygon::applyTransform(const Eigen::Matrix4f&) {
    std::cout << "Polygon::applyTransform() not implemented yet!\n";
}

std::vector<boost::shared_ptr<Vertex>> Polygon::getVertexArray() { return vertices_; }

bool Polygon::intersects(const Eigen::Vector3f&, const Eigen::Vector3f&) {
    std::cout << "Polygon::intersects() not implemented yet!\n";
    return false;
}

bool Polygon::intersects(boost::shared_ptr<Ray>) {
    std::cout << "Polygon::intersects() not implemented yet!\n";
    return false;
}

void Polygon::addVertex(boost::shared_ptr<Vertex> vertex) {
    if (vertex) vertices_.push_back(std::move(vertex));
}

unsigned int Polygon::getVertexCount() const { return static_cast<unsigned int>(vertices_.size()); }

boost::shared_ptr<Vertex> Polygon::getVertexAt(unsigned int index) const {
    return index < vertices_.size() ? vertices_[index] : boost::shared_ptr<Vertex>();
}

std::vector<boost::shared_ptr<Vertex>> Polygon::getVertices() const { return vertices_; }

void Polygon::print() const {}

}  // namespace vantorix::scene
