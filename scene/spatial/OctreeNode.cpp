#include "scene/spatial/OctreeNode.h"

#include "scene/spatial/OctreeBuilder.h"
#include "scene/spatial/OctreeNodes.h"

namespace vantorix::scene {
namespace {

/// Bits of a child's index that say that it lies in the upper half of x, y and z.
constexpr unsigned int upperBits[] = {1, 4, 2};

}  // namespace

OctreeNode::OctreeNode(OctreeNode* parent, const Eigen::Vector3f& minimum,
                       const Eigen::Vector3f& maximum)
    : parent_(parent), bvMin_(minimum), bvMax_(maximum) {
    if (parent) owner_ = parent->owner_;
}

OctreeNode::OctreeNode(const OctreeNode& other) = default;

OctreeNode& OctreeNode::operator=(const OctreeNode& other) = default;

OctreeNode::~OctreeNode() = default;

void OctreeNode::calculate(int maxDepth, int maxPrimitives,
                           std::vector<boost::shared_ptr<IPrimitive>>& faces) {
    OctreeBuilder(faces, maxDepth, maxPrimitives).build(*this, getDepth());
}

Eigen::Vector3f OctreeNode::getBVMin() const { return bvMin_; }

Eigen::Vector3f OctreeNode::getBVMax() const { return bvMax_; }

OctreeNode* OctreeNode::getChildAt(unsigned int index) const {
    return index < children_.size() ? children_[index] : nullptr;
}

OctreeNode* OctreeNode::getParent() const { return parent_; }

const std::vector<boost::shared_ptr<IPrimitive>>& OctreeNode::getPrimitives() const {
    return primitives_;
}

bool OctreeNode::intersectRay(boost::shared_ptr<Ray>) const { return false; }

void OctreeNode::subDivide() {
    if (!children_.empty()) return;
    const Eigen::Vector3f center = (bvMin_ + bvMax_) * 0.5f;
    const auto owner = owner_.lock();
    children_.reserve(childCount);
    for (unsigned int child = 0; child < childCount; ++child) {
        Eigen::Vector3f minimum = bvMin_;
        Eigen::Vector3f maximum = center;
        for (int axis = 0; axis < 3; ++axis) {
            if ((child & upperBits[axis]) == 0) continue;
            minimum[axis] = center[axis];
            maximum[axis] = bvMax_[axis];
        }
        children_.push_back(owner ? owner->add(this, minimum, maximum)
                                  : new OctreeNode(this, minimum, maximum));
    }
}

int OctreeNode::getDepth() const {
    int depth = 0;
    for (const auto* node = parent_; node; node = node->parent_) ++depth;
    return depth;
}

}  // namespace vantorix::scene
