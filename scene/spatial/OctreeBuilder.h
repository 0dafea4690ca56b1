#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/PaddedVector.h"

namespace vantorix::scene {

class IPrimitive;
class OctreeNode;

/// Sorts faces into an octree. Every child gets the faces that its own box test would give it, in
/// the same order; what the tests of the eight children have in common is calculated once, on plain
/// arrays, and lists of faces in the making lie one after the other in a single buffer.
class OctreeBuilder {
public:
    OctreeBuilder(const std::vector<boost::shared_ptr<IPrimitive>>& faces, int maxDepth,
                  int maxPrimitives);

    /// Sorts all faces into @p node, which stands at @p depth.
    void build(OctreeNode& node, int depth);

private:
    using Face = std::uint32_t;
    using Corners = std::array<Eigen::Vector3f, 3>;
    struct Bounds {
        PaddedVector low, high;
    };
    enum Kind : std::uint8_t { OTHER, TRIANGLE, FINITE_TRIANGLE };
    struct Split;

    /// The faces that stand in the buffer from @p first to @p end go into @p node; what stands
    /// behind them is overwritten.
    void distribute(OctreeNode& node, int depth, std::size_t first, std::size_t end);
    bool isLeaf(const OctreeNode& node, int depth, std::size_t count) const;
    void fill(OctreeNode& node, std::size_t first, std::size_t end) const;
    /// A bit for each child that the face goes to.
    std::uint8_t childrenOf(Face face, const Split& split) const;
    /// The same by the face's own test.
    std::uint8_t childrenByItself(Face face, const Split& split) const;

    const std::vector<boost::shared_ptr<IPrimitive>>& faces_;
    int maxDepth_;
    int maxPrimitives_;
    std::vector<Corners> corners_;    // Of the triangles; those of other faces are not used.
    std::vector<Bounds> bounds_;      // Of the finite ones.
    std::vector<Kind> kinds_;         // Others are asked themselves.
    std::vector<Face> buffer_;        // The lists of the nodes from the top to the one at hand.
    std::vector<std::uint8_t> bits_;  // Children of each face in the buffer.
};

}  // namespace vantorix::scene
