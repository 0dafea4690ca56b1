#pragma once

#include <array>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {

class IGeometry;
class InstanceGeometry;
class IPrimitive;
class Node;

/// Where a ray meets a face.
struct PickHit {
    float distance = 0.0f;               ///< From the ray's origin, in world units.
    Eigen::Vector3f position;            ///< In world space.
    Eigen::Vector3f barycentric;         ///< Weights of the corners of the triangle that was hit.
    boost::shared_ptr<IPrimitive> face;  ///< In world space, as the octree holds it.
    /// The corners of the face that make the triangle: 0, 1, 2 for a triangle, 0, k, k + 1 in the
    /// fan of a polygon.
    std::array<unsigned int, 3> corners{};
    unsigned int primitiveIndex = 0;  ///< Of the mesh primitive in its mesh.
    unsigned int faceIndex = 0;       ///< In that primitive.
    boost::shared_ptr<IGeometry> geometry;
    boost::shared_ptr<Node> node;
    boost::shared_ptr<InstanceGeometry> instance;  ///< Of the geometry, at the node.
};

}  // namespace vantorix::scene
