#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <Eigen/Core>

#include "scene/spatial/RayTest.h"

namespace vantorix::scene {

/// Finds the triangles that a ray hits.
///
/// An octree of its own over the middles of the triangles, in which each triangle stands once, with
/// boxes that fit the triangles below them: made from triangles sorted along a Morton curve, after
/// Lauterbach et al., "Fast BVH Construction on GPUs" (2009), with eight children per node as the
/// curve gives them. Boxes are tested so that rounding loses no hit: Ize, "Robust BVH Ray
/// Traversal" (2013).
class PickIndex {
public:
    struct Triangle {
        std::array<Eigen::Vector3f, 3> positions;
        std::uint32_t face = 0;
        std::uint32_t secondCorner = 0;  ///< The corners of the face are 0, this one and the next.
    };
    struct Hit : RayTest::Hit {
        std::uint32_t face = 0;
        std::uint32_t secondCorner = 0;
    };

    PickIndex() = default;
    /// Triangles with non-finite positions are left out.
    explicit PickIndex(std::vector<Triangle> triangles);

    /// The nearest hit, of equally near ones that of the lowest face. False when there is none.
    bool findNearest(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                     Hit& hit) const;
    /// All hits, nearest first, equally near ones in face order.
    std::vector<Hit> findAll(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction) const;

private:
    static constexpr unsigned int width = 8;

    struct Box {
        Eigen::Vector3f minimum, maximum;
    };
    /// The boxes of eight children, component by component; unused ones are inverted.
    struct Node {
        float minimum[3][width];
        float maximum[3][width];
        std::uint32_t first[width];  // A node, or the first triangle of a leaf.
        std::uint32_t count[width];  // Triangles of a leaf; 0 for a node.
    };
    struct Keyed {
        std::uint64_t key;
        std::uint32_t triangle;
    };
    struct Range {
        std::size_t first, end;
        int level;
    };
    struct Step {
        float entry;
        std::uint32_t first, count;
    };
    class Traversal;

    std::vector<Keyed> sortAlongCurve() const;
    void reorder(const std::vector<Keyed>& keys);
    Box build(const std::vector<Keyed>& keys, Range range, std::uint32_t& first,
              std::uint32_t& count);
    Box boxOf(std::size_t first, std::size_t end) const;
    template <typename OnHit>
    void traverse(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                  OnHit onHit) const;

    std::vector<Triangle> triangles_;
    std::vector<Node> nodes_;
    std::uint32_t rootFirst_ = 0;
    std::uint32_t rootCount_ = 0;
};

}  // namespace vantorix::scene
