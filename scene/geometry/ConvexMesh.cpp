#include "scene/geometry/ConvexMesh.h"

#include <typeinfo>
#include <utility>

#include <boost/make_shared.hpp>

namespace vantorix::scene {
namespace {

const ConvexMesh* asConvexMesh(const IGeometry* geometry) {
    return dynamic_cast<const ConvexMesh*>(geometry);
}

}  // namespace

ConvexMesh::ConvexMesh(const std::string& id, const std::string& name) : Mesh(id, name) {
    setType(CONVEX_MESH);
}

ConvexMesh::ConvexMesh(const ConvexMesh& other) = default;

ConvexMesh& ConvexMesh::operator=(const ConvexMesh& other) {
    const auto hull = isReachedFrom(other.convexHullOf_.get()) ? nullptr : other.convexHullOf_;
    Mesh::operator=(other);
    convexHullOf_ = hull;
    return *this;
}

ConvexMesh::~ConvexMesh() {
    // A long chain of hulls is released in a loop, not each from the destructor before it.
    auto next = std::move(convexHullOf_);
    while (next.use_count() == 1) {
        auto* const convex = dynamic_cast<ConvexMesh*>(next.get());
        if (!convex) break;
        auto following = std::move(convex->convexHullOf_);
        next = std::move(following);
    }
}

boost::shared_ptr<IGeometry> ConvexMesh::clone() {
    const auto copy = boost::make_shared<ConvexMesh>(getID(), getName());
    cloneContentsTo(copy);
    copy->convexHullOf_ = convexHullOf_;
    return copy;
}

Eigen::Vector3f ConvexMesh::getBVCenter() {
    const auto bounds = findBounds();
    return bounds ? bounds->getBVCenter() : Mesh::getBVCenter();
}

Eigen::Vector3f ConvexMesh::getBVMin() {
    const auto bounds = findBounds();
    return bounds ? bounds->getBVMin() : Mesh::getBVMin();
}

Eigen::Vector3f ConvexMesh::getBVMax() {
    const auto bounds = findBounds();
    return bounds ? bounds->getBVMax() : Mesh::getBVMax();
}

void ConvexMesh::setConvexHullOf(boost::shared_ptr<IGeometry> geometry) {
    if (geometry && !isReachedFrom(geometry.get())) convexHullOf_ = std::move(geometry);
}

boost::shared_ptr<IGeometry> ConvexMesh::getConvexHullOf() const { return convexHullOf_; }

bool ConvexMesh::isReachedFrom(const IGeometry* geometry) const {
    while (geometry != this) {
        const auto* const convex = asConvexMesh(geometry);
        if (!convex) return false;
        geometry = convex->convexHullOf_.get();
    }
    return true;
}

boost::shared_ptr<IGeometry> ConvexMesh::findBounds() const {
    // Plain convex meshes only pass the question on: followed in a loop, a chain can be long.
    auto hull = convexHullOf_;
    for (const auto* convex = asConvexMesh(hull.get());
         convex && convex->convexHullOf_ && typeid(*convex) == typeid(ConvexMesh);
         convex = asConvexMesh(hull.get())) {
        hull = convex->convexHullOf_;
    }
    return hull;
}

}  // namespace vantorix::scene
