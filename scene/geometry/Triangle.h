#pragma once

#include <array>
#include <atomic>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/IPrimitive.h"

namespace vantorix::scene {

class FaceAssembler;
class PackedCorners;

/// Three vertices with a cache of their positions and edges.
///
/// The cache is taken at construction and by applyTransform; a position that is set on a vertex
/// later does not reach it. A missing vertex or position counts as (0, 0, 0).
/// Ownership: the vertices are shared, also between copies.
/// Threads: any number of threads may read one triangle; changes need a lock of the caller's.
class VANTORIX_SCENE_EXPORT Triangle : public IPrimitive {
public:
    Triangle(boost::shared_ptr<Vertex> a, boost::shared_ptr<Vertex> b, boost::shared_ptr<Vertex> c);
    Triangle(const Triangle& other);
    Triangle& operator=(const Triangle& other);

    /// The cross product of the two normalised edges that leave the first vertex.
    /// Deliberate: not normalised again, its length is the sine of the angle between them.
    Eigen::Vector3f getFaceNormal() override;

    /// Sets new three-component positions on the shared vertices: every holder sees the change.
    void applyTransform(const Eigen::Matrix4f& matrix) override;

    std::vector<boost::shared_ptr<Vertex>> getVertexArray() override;

    /// The separating-axis test of Akenine-Moeller, "Fast 3D Triangle-Box Overlap Testing" (2001).
    /// Deliberate: of the plane test only the half against the nearest corner is made, so a box
    /// wholly behind the triangle overlaps it once all other axes have passed.
    bool intersects(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) override;

    /// The test of Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection" (1997).
    /// Deliberate: hits the whole parallelogram of the two edges at the first vertex, on either
    /// side of the ray's origin.
    bool intersects(boost::shared_ptr<Ray> ray) override;

    ~Triangle() override;

    /// Vertex 0, 1 or 2; an empty pointer otherwise.
    boost::shared_ptr<Vertex> getVertexAt(unsigned int index) const;

    /// All three, for as long as the triangle stays as it is.
    const std::array<boost::shared_ptr<Vertex>, 3>& getVertices() const;

    /// Writes "Triangle:", a line end, and the positions of the three vertices to standard output.
    void print() const;

protected:
    /// Takes positions and edges from the vertices; an edge of length 0 gets 0.001 added to its x.
    void updateCache();

private:
    friend class FaceAssembler;
    friend class FaceCorners;

    Triangle(PackedCorners& corners, const std::array<Eigen::Vector3f, 3>& positions);
    void cachePositions(const std::array<Eigen::Vector3f, 3>& positions);
    void unpack() const;

    mutable std::array<boost::shared_ptr<Vertex>, 3> vertices_;
    // Values of the corners whose vertices nobody has asked for yet, in the triangle's own block.
    mutable std::atomic<PackedCorners*> packed_;
    Eigen::Vector3f p1_, p2_, p3_;
    Eigen::Vector3f edge1_, edge2_, edge3_;  // p2 - p1, p3 - p1, p2 - p3
};

}  // namespace vantorix::scene
