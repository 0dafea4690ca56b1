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

/// Further than any box of floats can be halved.
constexpr int deepestSplit = 512;

/// Whether no axis of the box can be halved: its middle is one of its ends. One child would be the
/// same box again, for ever.
bool isIndivisible(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) {
    const Eigen::Vector3f center = (minimum + maximum) * 0.5f;
    return center.allFinite() &&
           (center.array() == minimum.array() || center.array() == maximum.array()).all();
}

bool isFinite(const std::array<Eigen::Vector3f, 3>& corners) {
    return corners[0].allFinite() && corners[1].allFinite() && corners[2].allFinite();
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
            isFinite = isFinite && center[child].allFinite() && half[child].allFinite();
        }
    }

    /// Those that no box axis separates from a triangle. Four children each share an interval of
    /// an axis, so two tests per axis decide for all eight.
    template <typename IsApart>
    static unsigned int reachedUnless(const IsApart& isApart) {
        unsigned int reached = allChildren;
        for (int axis = 0; axis < 3; ++axis) {
            const unsigned int lower = lowerChildren[axis];
            if (isApart(axis, 0)) reached &= ~lower;
            if (isApart(axis, childCount - 1)) reached &= lower;
        }
        return reached;
    }

    unsigned int reachedBy(const Corners& corners) const {
        return reachedUnless([&](int axis, unsigned int child) {
            const float middle = center[child][axis];
            return TriangleBoxOverlap::isApartOnAxis(corners[0][axis] - middle,
                                                     corners[1][axis] - middle,
                                                     corners[2][axis] - middle, half[child][axis]);
        });
    }

    /// The same: rounding is monotonic, so the lowest and highest corner speak for all three.
    unsigned int reachedBy(const Bounds& bounds) const {
        return reachedUnless([&](int axis, unsigned int child) {
            const float middle = center[child][axis];
            return bounds.low[axis] - middle > half[child][axis] ||
                   bounds.high[axis] - middle < -half[child][axis];
        });
    }

    /// A triangle all of whose corners lie in the box passes every later test: rounding is
    /// monotonic, so no projection of a corner is rounded past the radius of the box.
    bool holds(const Bounds& bounds, unsigned int child) const {
        return half[child].maxCoeff() <= largestPlainHalf &&
               ((bounds.high - center[child]).array() <= half[child].array()).all() &&
               ((bounds.low - center[child]).array() >= -half[child].array()).all();
    }

    bool overlaps(const Corners& corners, unsigned int child) const {
        return TriangleBoxOverlap(corners[0], corners[1], corners[2], center[child], half[child])
            .overlapsOnOtherAxes();
    }

    std::array<Eigen::Vector3f, childCount> minimum, maximum, center, half;
    bool isFinite = true;
};

OctreeBuilder::OctreeBuilder(const std::vector<boost::shared_ptr<IPrimitive>>& faces, int maxDepth,
                             int maxPrimitives)
    : faces_(faces), maxDepth_(maxDepth), maxPrimitives_(maxPrimitives) {
    corners_.resize(faces.size());
    bounds_.resize(faces.size());
    kinds_.resize(faces.size(), OTHER);
    for (std::size_t i = 0; i < faces.size(); ++i) {
        // A class derived from Triangle may have a test of its own.
        const IPrimitive* const face = faces[i].get();
        if (!face || typeid(*face) != typeid(Triangle)) continue;
        const auto& corners = corners_[i] = FaceCorners::of(static_cast<const Triangle&>(*face));
        bounds_[i] = {corners[0].cwiseMin(corners[1]).cwiseMin(corners[2]),
                      corners[0].cwiseMax(corners[1]).cwiseMax(corners[2])};
        kinds_[i] = isFinite(corners) ? FINITE_TRIANGLE : TRIANGLE;
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
    if (kinds_[face] == OTHER) return childrenByItself(face, split);
    const bool isPlain = kinds_[face] == FINITE_TRIANGLE && split.isFinite;
    unsigned int bits = isPlain ? split.reachedBy(bounds_[face]) : split.reachedBy(corners_[face]);
    // Mostly one is left: the others are not even looked at.
    for (unsigned int left = bits; left != 0; left &= left - 1) {
        const auto child = static_cast<unsigned int>(__builtin_ctz(left));
        if (isPlain && split.holds(bounds_[face], child)) continue;
        if (!split.overlaps(corners_[face], child)) bits &= ~(1u << child);
    }
    return static_cast<std::uint8_t>(bits);
}

std::uint8_t OctreeBuilder::childrenByItself(Face face, const Split& split) const {
    unsigned int bits = 0;
    for (unsigned int child = 0; faces_[face] && child < Split::childCount; ++child) {
        if (faces_[face]->intersects(split.minimum[child], split.maximum[child])) {
            bits |= 1u << child;
        }
    }
    return static_cast<std::uint8_t>(bits);
}

}  // namespace vantorix::scene
