#include "scene/graph/NodeBounds.h"

#include <utility>

#include "scene/geometry/IGeometry.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeExtras.h"
#include "scene/graph/NodeWalk.h"
#include "scene/material/InstanceGeometry.h"

namespace vantorix::scene {

NodeBounds::NodeBounds(const Node& top) {
    NodeWalk walk(const_cast<Node&>(top), NodeWalk::SKIP_REPEATS);
    while (const Node* const node = walk.next()) placeGeometriesOf(*node);
    // Asked after the walk: a geometry of the caller's own class may edit the tree when it is.
    for (const auto& [world, geometry] : placed_) {
        addBox(world, geometry->getBVMin(), geometry->getBVMax());
    }
    placed_.clear();
}

void NodeBounds::placeGeometriesOf(const Node& node) {
    const auto& instances = node.readExtras().geometries;
    if (instances.empty()) return;
    const Eigen::Matrix4f world = node.getCombinedTransformations();
    for (const auto& instance : instances) {
        auto geometry = instance->getGeometry();
        if (geometry) placed_.emplace_back(world, std::move(geometry));
    }
}

void NodeBounds::addBox(const Eigen::Matrix4f& world, const Eigen::Vector3f& low,
                        const Eigen::Vector3f& high) {
    for (int corner = 0; corner < 8; ++corner) {
        const Eigen::Vector4f point((corner & 1) ? high.x() : low.x(),
                                    (corner & 2) ? high.y() : low.y(),
                                    (corner & 4) ? high.z() : low.z(), 1.0f);
        addPoint((world * point).head<3>());
    }
}

void NodeBounds::addPoint(const Eigen::Vector3f& point) {
    for (Eigen::Index axis = 0; axis < 3; ++axis) {
        // As written, not std::min and std::max: the comparisons decide what a NaN does.
        if (empty_ || !(max_[axis] > point[axis])) max_[axis] = point[axis];
        if (empty_ || !(point[axis] > min_[axis])) min_[axis] = point[axis];
    }
    empty_ = false;
}

Eigen::Vector3f Node::getBVMin() const { return NodeBounds(*this).min(); }

Eigen::Vector3f Node::getBVMax() const { return NodeBounds(*this).max(); }

Eigen::Vector3f Node::getBVCenter() const {
    const NodeBounds bounds(*this);
    return bounds.min() + (bounds.max() - bounds.min()) * 0.5f;
}

}  // namespace vantorix::scene
