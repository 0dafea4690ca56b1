#include "scene/geometry/ConvexMesh.h"

#include <typeinfo>
#include <utility>

#include <boost/make_shared.hpp>

namespace vantorix::scene {
namespace {

const ConvexMesh* asConvexMesh(const IGeometry* geometry) {
    return dynamic_cast<const ConvexMesh*>(geometry);
}

ConvexMesh* asConvexMesh(IGeometry* geometry) { return dynamic_cast<ConvexMesh*>(geometry); }

}  // namespace

ConvexMesh::ConvexMesh(const std::string& id, const std::string& name)
    : Mesh(id, name), hullCount_(0) {
    setType(CONVEX_MESH);
}

ConvexMesh::ConvexMesh(const ConvexMesh& other) : Mesh(other), hullCount_(0) {
    replaceHull(other.convexHullOf_);
}

ConvexMesh& ConvexMesh::operator=(const ConvexMesh& other) {
    const auto hull = other.convexHullOf_;
    Mesh::operator=(other);
    replaceHull(isReachedFrom(hull.get()) ? boost::shared_ptr<IGeometry>() : hull);
    return *this;
}

ConvexMesh::~ConvexMesh() {
    // A long chain of hulls is released in a loop, not each from the destructor before it.
    auto next = takeHull();
    while (next.use_count() == 1) {
        auto* const convex = asConvexMesh(next.get());
        if (!convex) break;
        next = convex->takeHull();
    }
}

boost::shared_ptr<IGeometry> ConvexMesh::takeHull() {
    if (auto* const convex = asConvexMesh(convexHullOf_.get())) --convex->hullCount_;
    return std::exchange(convexHullOf_, nullptr);
}

void ConvexMesh::replaceHull(boost::shared_ptr<IGeometry> geometry) {
    const auto old = takeHull();
    convexHullOf_ = std::move(geometry);
    if (auto* const convex = asConvexMesh(convexHullOf_.get())) ++convex->hullCount_;
}

boost::shared_ptr<IGeometry> ConvexMesh::clone() {
    const auto copy = boost::make_shared<ConvexMesh>(getID(), getName());
    cloneContentsTo(copy);
    copy->replaceHull(convexHullOf_);
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
    if (geometry && !isReachedFrom(geometry.get())) replaceHull(std::move(geometry));
}

boost::shared_ptr<IGeometry> ConvexMesh::getConvexHullOf() const { return convexHullOf_; }

bool ConvexMesh::isReachedFrom(const IGeometry* geometry) const {
    // A mesh without hulls cannot be at the end of a chain, however long that is.
    if (hullCount_ == 0) return geometry == this;
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
