#pragma once

#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class IPrimitive;
class OctreeNodes;
class Ray;

/// A box of an octree: a leaf with faces, or a node with eight children that has none of its own.
///
/// Ownership: owns no children, copied or not. The nodes below a root that an Octree made live as
/// long as that octree, or a copy of it, keeps the tree; whatever is split below any other node
/// belongs to the caller, who deletes it.
/// Threads: not locked; any number of threads may read.
class VANTORIX_SCENE_EXPORT OctreeNode {
public:
    /// A leaf without faces. @p parent is null for a root; it must outlive the node.
    OctreeNode(OctreeNode* parent, const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum);
    OctreeNode(const OctreeNode& other);
    OctreeNode& operator=(const OctreeNode& other);
    virtual ~OctreeNode();

    /// Sorts @p faces into this node: all of them stay here when no more than @p maxPrimitives come
    /// together or the depth of this node is above @p maxDepth, which allows leaves at depth
    /// maxDepth + 1. Otherwise the node is split, and each face goes to every child whose box it
    /// intersects, and on from there. A negative @p maxPrimitives never splits; a box too
    /// small to be halved is not split either.
    /// Cost: each split may multiply a face by the children it touches, up to
    /// 8 ^ (maxDepth + 1) leaves: both limits are the caller's.
    void calculate(int maxDepth, int maxPrimitives,
                   std::vector<boost::shared_ptr<IPrimitive>>& faces);

    Eigen::Vector3f getBVMin() const;
    Eigen::Vector3f getBVMax() const;
    /// Null past the eighth child, and for any child of a leaf. Upper on x where bit 0 of @p index
    /// is set, upper on z for bit 1, upper on y for bit 2.
    OctreeNode* getChildAt(unsigned int index) const;
    OctreeNode* getParent() const;
    /// The faces of a leaf.
    const std::vector<boost::shared_ptr<IPrimitive>>& getPrimitives() const;

    /// False, deliberately, whatever the ray meets: Octree::pick finds what it hits.
    bool intersectRay(boost::shared_ptr<Ray> ray) const;

protected:
    /// Makes the eight children, unless they are there.
    void subDivide();
    /// 0 for the root.
    int getDepth() const;

private:
    static constexpr unsigned int childCount = 8;

    friend class Octree;
    friend class OctreeBuilder;

    OctreeNode* parent_;
    Eigen::Vector3f bvMin_, bvMax_;
    std::vector<boost::shared_ptr<IPrimitive>> primitives_;
    std::vector<OctreeNode*> children_;
    boost::weak_ptr<OctreeNodes> owner_;  // Of the children; empty when that is the caller.
};

}  // namespace vantorix::scene
