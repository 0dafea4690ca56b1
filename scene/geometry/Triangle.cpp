#include "scene/geometry/Triangle.h"

#include <cstdint>
#include <iostream>
#include <mutex>
#include <utility>

#include <Eigen/Geometry>

#include "scene/geometry/PackedCorners.h"
#include "scene/geometry/TriangleBoxOverlap.h"
#include "scene/geometry/TriangleMath.h"
#include "scene/geometry/Vertex.h"
#include "scene/spatial/Ray.h"

namespace vantorix::scene {
namespace {

using Vector = Eigen::Vector3f;

/// A few locks for all triangles: each is held only while vertices are made.
std::mutex& lockFor(const Triangle* triangle) {
    static std::array<std::mutex, 16> locks;
    return locks[(reinterpret_cast<std::uintptr_t>(triangle) >> 6) % locks.size()];
}

Vector positionOf(const boost::shared_ptr<Vertex>& vertex) {
    return vertex ? vertex->getPositionVector() : Vector::Zero();
}

}  // namespace

Triangle::Triangle(boost::shared_ptr<Vertex> a, boost::shared_ptr<Vertex> b,
                   boost::shared_ptr<Vertex> c)
    : vertices_{std::move(a), std::move(b), std::move(c)}, packed_(nullptr) {
    updateCache();
}

Triangle::Triangle(PackedCorners& corners, const std::array<Vector, 3>& positions)
    : packed_(&corners) {
    cachePositions(positions);
}

Triangle::Triangle(const Triangle& other)
    : IPrimitive(other),
      vertices_(other.getVertices()),
      packed_(nullptr),
      p1_(other.p1_),
      p2_(other.p2_),
      p3_(other.p3_),
      edge1_(other.edge1_),
      edge2_(other.edge2_),
      edge3_(other.edge3_) {}

Triangle& Triangle::operator=(const Triangle& other) {
    vertices_ = other.getVertices();
    packed_ = nullptr;
    p1_ = other.p1_;
    p2_ = other.p2_;
    p3_ = other.p3_;
    edge1_ = other.edge1_;
    edge2_ = other.edge2_;
    edge3_ = other.edge3_;
    return *this;
}

Triangle::~Triangle() = default;

Eigen::Vector3f Triangle::getFaceNormal() { return unpadded(faceNormal(edge1_, edge2_)); }

void Triangle::applyTransform(const Eigen::Matrix4f& matrix) {
    auto* const packed = packed_.load(std::memory_order_acquire);
    if (packed) {
        const std::array<Vector, 3> moved = {transformedPosition(matrix, p1_),
                                             transformedPosition(matrix, p2_),
                                             transformedPosition(matrix, p3_)};
        if (packed->setPositions(moved)) return cachePositions(moved);
    }
    for (const auto& vertex : getVertices()) {
        if (!vertex) continue;
        const Vector moved = transformedPosition(matrix, vertex->getPositionVector());
        vertex->setPosition(moved.x(), moved.y(), moved.z());
    }
    updateCache();
}

std::vector<boost::shared_ptr<Vertex>> Triangle::getVertexArray() {
    const auto& corners = getVertices();
    return {corners.begin(), corners.end()};
}

bool Triangle::intersects(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) {
    const TriangleBoxOverlap overlap(p1_, p2_, p3_, (minimum + maximum) * 0.5f,
                                     (maximum - minimum) * 0.5f);
    return !overlap.isApartOnBoxAxes() && overlap.overlapsOnOtherAxes();
}

bool Triangle::intersects(boost::shared_ptr<Ray> ray) {
    if (!ray) return false;
    const Vector direction = ray->getDirection();
    const Vector pvec = direction.cross(edge2_);
    const float det = edge1_.dot(pvec);
    if (det == 0.0f) return false;  // Exact on purpose: an epsilon changes which faces are hit.
    const float inverse = 1.0f / det;
    const Vector tvec = ray->getOrigin() - p1_;
    const float u = tvec.dot(pvec) * inverse;
    if (u < 0.0f || u > 1.0f) return false;
    const float v = direction.dot(tvec.cross(edge1_)) * inverse;
    // No test of u + v and of the distance: the whole parallelogram counts, on both sides.
    return !(v < 0.0f || v > 1.0f);
}

boost::shared_ptr<Vertex> Triangle::getVertexAt(unsigned int index) const {
    const auto& corners = getVertices();
    return index < corners.size() ? corners[index] : boost::shared_ptr<Vertex>();
}

void Triangle::print() const {
    std::cout << "Triangle:\n";
    unsigned int number = 0;
    for (const auto& vertex : getVertices()) {
        std::cout << " Vertex " << ++number << ": ";
        if (vertex) vertex->print();
    }
}

void Triangle::updateCache() {
    const auto& corners = getVertices();
    cachePositions({positionOf(corners[0]), positionOf(corners[1]), positionOf(corners[2])});
}

void Triangle::cachePositions(const std::array<Eigen::Vector3f, 3>& positions) {
    p1_ = positions[0];
    p2_ = positions[1];
    p3_ = positions[2];
    edge1_ = usableEdge(p1_, p2_);
    edge2_ = usableEdge(p1_, p3_);
    edge3_ = usableEdge(p3_, p2_);
}

const std::array<boost::shared_ptr<Vertex>, 3>& Triangle::getVertices() const {
    if (packed_.load(std::memory_order_acquire)) unpack();
    return vertices_;
}

void Triangle::unpack() const {
    const std::lock_guard<std::mutex> lock(lockFor(this));
    const auto* const packed = packed_.load(std::memory_order_relaxed);
    if (!packed) return;  // Another reader came first.
    vertices_ = packed->makeVertices();
    packed_.store(nullptr, std::memory_order_release);
}

}  // namespace vantorix::scene
