#include "scene/spatial/OctreeBuilder.h"

#include <numeric>
#include <typeinfo>

#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleBoxOverlap.h"
#include "scene/spatial/FaceCorners.h"
#include "scene/spatial/OctreeNode.h"

namespace vantorix::scene {
namespace {

/// Children in the lower half of x, y and z; the upper ones are those that are left.
constexpr unsigned int lowerChildren[] = {0x55, 0x0f, 0x33};
constexpr unsigned int allChildren = 0xff;

/// Above this, products of three extents leave the range of floats.
constexpr float largestPlainHalf = 1e9f;

/// A triangle all of whose corners lie in the box passes every later test: rounding is monotonic,
/// so no projection of a corner is rounded past the radius of the box.
bool isInside(const std::array<Eigen::Vector3f, 3>& corners, const Eigen::Vector3f& center,
              const Eigen::Vector3f& half) {
    for (const auto& corner : corners) {
        if (!((corner - center).array().abs() <= half.array()).all()) return false;
    }
    return half.maxCoeff() <= largestPlainHalf;
}

/// Further than any box of floats can be halved.
constexpr int deepestSplit = 512;

/// Whether no axis of the box can be halved: its middle is one of its ends. One child would be the
/// same box again, for ever.
bool isIndivisible(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) {
    const Eigen::Vector3f center = (minimum + maximum) * 0.5f;
    return center.allFinite() &&
           (center.array() == minimum.array() || center.array() == maximum.array()).all();
}

}  // namespace

/// The boxes of the children of one node.
struct OctreeBuilder::Split {
    static constexpr unsigned int childCount = OctreeNode::childCount;

    explicit Split(const OctreeNode& node) {
        for (unsigned int child = 0; child < childCount; ++child) {
            const auto& box = *node.getChildAt(child);
            minimum[child] = box.getBVMin();
            maximum[child] = box.getBVMax();
            center[child] = (minimum[child] + maximum[child]) * 0.5f;
            half[child] = (maximum[child] - minimum[child]) * 0.5f;
        }
    }

    /// Those that no box axis separates from a triangle. Four children each share an interval of
    /// an axis, so two tests per axis decide for all eight.
    unsigned int reachedBy(const std::array<Eigen::Vector3f, 3>& corners) const {
        unsigned int reached = allChildren;
        for (int axis = 0; axis < 3; ++axis) {
            const unsigned int lower = lowerChildren[axis];
            if (isApart(corners, axis, 0)) reached &= ~lower;
            if (isApart(corners, axis, childCount - 1)) reached &= lower;
        }
        return reached;
    }

    bool isApart(const std::array<Eigen::Vector3f, 3>& corners, int axis,
                 unsigned int child) const {
        const float middle = center[child][axis];
        return TriangleBoxOverlap::isApartOnAxis(corners[0][axis] - middle,
                                                 corners[1][axis] - middle,
                                                 corners[2][axis] - middle, half[child][axis]);
    }

    bool overlaps(const std::array<Eigen::Vector3f, 3>& corners, unsigned int child) const {
        if (isInside(corners, center[child], half[child])) return true;
        return TriangleBoxOverlap(corners[0], corners[1], corners[2], center[child], half[child])
            .overlapsOnOtherAxes();
    }

    std::array<Eigen::Vector3f, childCount> minimum, maximum, center, half;
};

OctreeBuilder::OctreeBuilder(const std::vector<boost::shared_ptr<IPrimitive>>& faces, int maxDepth,
                             int maxPrimitives)
    : faces_(faces), maxDepth_(maxDepth), maxPrimitives_(maxPrimitives) {
    corners_.resize(faces.size());
    isTriangle_.resize(faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i) {
        // A class derived from Triangle may have a test of its own.
        const IPrimitive* const face = faces[i].get();
        if (!face || typeid(*face) != typeid(Triangle)) continue;
        isTriangle_[i] = true;
        corners_[i] = FaceCorners::of(static_cast<const Triangle&>(*face));
    }
}

void OctreeBuilder::build(OctreeNode& node, int depth) {
    buffer_.resize(faces_.size());
    std::iota(buffer_.begin(), buffer_.end(), Face{0});
    distribute(node, depth, 0);
}

void OctreeBuilder::distribute(OctreeNode& node, int depth, std::size_t first) {
    const std::size_t end = buffer_.size();
    if (isLeaf(node, depth, end - first)) return fill(node, first);
    node.subDivide();
    const Split split(node);
    bits_.resize(end);
    for (std::size_t i = first; i < end; ++i) {
        bits_[i] = childrenOf(buffer_[i], split);
    }
    for (unsigned int child = 0; child < Split::childCount; ++child) {
        for (std::size_t i = first; i < end; ++i) {
            if (bits_[i] >> child & 1u) buffer_.push_back(buffer_[i]);
        }
        distribute(*node.getChildAt(child), depth + 1, end);
        buffer_.resize(end);
    }
}

bool OctreeBuilder::isLeaf(const OctreeNode& node, int depth, std::size_t count) const {
    // Unsigned: a negative limit is above every count.
    const auto most = static_cast<std::uint64_t>(std::int64_t{maxPrimitives_});
    if (node.getPrimitives().size() + count <= most || depth > maxDepth_) return true;
    return depth > deepestSplit || isIndivisible(node.getBVMin(), node.getBVMax());
}

void OctreeBuilder::fill(OctreeNode& node, std::size_t first) const {
    node.primitives_.reserve(node.primitives_.size() + buffer_.size() - first);
    for (std::size_t i = first; i < buffer_.size(); ++i) {
        node.primitives_.push_back(faces_[buffer_[i]]);
    }
}

std::uint8_t OctreeBuilder::childrenOf(Face face, const Split& split) const {
    unsigned int bits = 0;
    const auto& corners = corners_[face];
    const unsigned int reached = isTriangle_[face] ? split.reachedBy(corners) : allChildren;
    for (unsigned int child = 0; child < Split::childCount; ++child) {
        if (!(reached >> child & 1u)) continue;
        const bool overlaps = isTriangle_[face]
                                  ? split.overlaps(corners, child)
                                  : faces_[face] && faces_[face]->intersects(split.minimum[child],
                                                                             split.maximum[child]);
        if (overlaps) bits |= 1u << child;
    }
    return static_cast<std::uint8_t>(bits);
}

}  // namespace vantorix::scene
