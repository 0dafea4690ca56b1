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

/// What is left of the children, by six bits: those of x, y and z for the lower interval that a
/// triangle does not reach, then those for the upper one.
constexpr std::array<std::uint8_t, 64> makeReached() {
    std::array<std::uint8_t, 64> reached{};
    for (unsigned int apart = 0; apart < reached.size(); ++apart) {
        unsigned int children = allChildren;
        for (unsigned int axis = 0; axis < 3; ++axis) {
            if (apart >> axis & 1u) children &= ~lowerChildren[axis];
            if (apart >> axis & 8u) children &= lowerChildren[axis];
        }
        reached[apart] = static_cast<std::uint8_t>(children);
    }
    return reached;
}
constexpr auto reachedChildren = makeReached();

using Mask __attribute__((vector_size(16))) = std::int32_t;

/// The or of all four.
unsigned int joined(Mask bits) {
    bits |= __builtin_shufflevector(bits, bits, 2, 3, 0, 1);
    bits |= __builtin_shufflevector(bits, bits, 1, 0, 3, 2);
    return static_cast<unsigned int>(bits[0]);
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
            // Larger ones hold nothing for sure: low and high cannot both be beyond the middle.
            const bool isPlain = half[child].maxCoeff() <= largestPlainHalf;
            plainCenter[child] = padded(center[child]);
            plainHalf[child] = padded(isPlain ? half[child] : Eigen::Vector3f::Constant(-1.0f));
        }
        axisCenter = {padded(center[0]), padded(center[childCount - 1])};
        axisHalf = {padded(half[0]), padded(half[childCount - 1])};
    }

    /// Those that no box axis separates from a triangle. Four children each share an interval of
    /// an axis, so two tests per axis decide for all eight.
    unsigned int reachedBy(const Corners& corners) const {
        unsigned int apart = 0;
        for (int axis = 0; axis < 3; ++axis) {
            if (isApart(corners, axis, 0)) apart |= 1u << axis;
            if (isApart(corners, axis, childCount - 1)) apart |= 8u << axis;
        }
        return reachedChildren[apart];
    }

    bool isApart(const Corners& corners, int axis, unsigned int child) const {
        const float middle = center[child][axis];
        return TriangleBoxOverlap::isApartOnAxis(corners[0][axis] - middle,
                                                 corners[1][axis] - middle,
                                                 corners[2][axis] - middle, half[child][axis]);
    }

    /// The same: rounding is monotonic, so the lowest and highest corner speak for all three.
    /// Without a branch, since no processor could tell where the next triangle lies.
    unsigned int reachedBy(const Bounds& bounds) const {
        constexpr Mask lowerBits = {1, 2, 4, 0};
        constexpr Mask upperBits = {8, 16, 32, 0};
        return reachedChildren[joined((isApart(bounds, axisCenter[0], axisHalf[0]) & lowerBits) |
                                      (isApart(bounds, axisCenter[1], axisHalf[1]) & upperBits))];
    }

    /// On which axes they are.
    static Mask isApart(const Bounds& bounds, PaddedVector boxCenter, PaddedVector boxHalf) {
        return (bounds.low - boxCenter > boxHalf) | (bounds.high - boxCenter < -boxHalf);
    }

    /// A triangle all of whose corners lie in the box passes every later test: rounding is
    /// monotonic, so no projection of a corner is rounded past the radius of the box.
    bool holds(const Bounds& bounds, unsigned int child) const {
        return joined((bounds.high - plainCenter[child] > plainHalf[child]) |
                      (bounds.low - plainCenter[child] < -plainHalf[child])) == 0;
    }

    bool overlaps(const Corners& corners, unsigned int child) const {
        return TriangleBoxOverlap(corners[0], corners[1], corners[2], center[child], half[child])
            .overlapsOnOtherAxes();
    }

    std::array<Eigen::Vector3f, childCount> minimum, maximum, center, half;
    std::array<PaddedVector, 2> axisCenter, axisHalf;  // Of the first child and of the last.
    std::array<PaddedVector, childCount> plainCenter, plainHalf;
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
        bounds_[i] = {padded(corners[0].cwiseMin(corners[1]).cwiseMin(corners[2])),
                      padded(corners[0].cwiseMax(corners[1]).cwiseMax(corners[2]))};
        kinds_[i] = isFinite(corners) ? FINITE_TRIANGLE : TRIANGLE;
    }
}

void OctreeBuilder::build(OctreeNode& node, int depth) {
    buffer_.resize(faces_.size());
    std::iota(buffer_.begin(), buffer_.end(), Face{0});
    distribute(node, depth, 0, buffer_.size());
}

void OctreeBuilder::distribute(OctreeNode& node, int depth, std::size_t first, std::size_t end) {
    if (isLeaf(node, depth, end - first)) return fill(node, first, end);
    node.subDivide();
    const Split split(node);
    if (bits_.size() < end) bits_.resize(end);
    for (std::size_t i = first; i < end; ++i) {
        bits_[i] = childrenOf(buffer_[i], split);
    }
    for (unsigned int child = 0; child < Split::childCount; ++child) {
        const std::size_t most = end + (end - first);
        if (buffer_.size() < most) buffer_.resize(most);
        std::size_t childEnd = end;
        for (std::size_t i = first; i < end; ++i) {
            buffer_[childEnd] = buffer_[i];  // Counts if the child gets it.
            childEnd += bits_[i] >> child & 1u;
        }
        distribute(*node.getChildAt(child), depth + 1, end, childEnd);
    }
}

bool OctreeBuilder::isLeaf(const OctreeNode& node, int depth, std::size_t count) const {
    // Unsigned: a negative limit is above every count.
    const auto most = static_cast<std::uint64_t>(std::int64_t{maxPrimitives_});
    if (node.getPrimitives().size() + count <= most || depth > maxDepth_) return true;
    return depth > deepestSplit || isIndivisible(node.getBVMin(), node.getBVMax());
}

void OctreeBuilder::fill(OctreeNode& node, std::size_t first, std::size_t end) const {
    node.primitives_.reserve(node.primitives_.size() + end - first);
    for (std::size_t i = first; i < end; ++i) {
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
