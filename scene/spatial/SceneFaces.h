#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {

class IGeometry;
class IMeshPrimitive;
class InstanceGeometry;
class IPrimitive;
class Mesh;
class Node;

/// The faces of a sub-tree in world space, and where each comes from.
struct SceneFaces {
    using Faces = std::vector<boost::shared_ptr<IPrimitive>>;
    using GeometryFaces = std::pair<boost::shared_ptr<IGeometry>, Faces>;

    /// The faces from this one on, up to those of the next source.
    struct Source {
        std::size_t firstFace;
        unsigned int primitiveIndex;
        boost::shared_ptr<InstanceGeometry> instance;
        boost::shared_ptr<Node> node;
    };

    /// One triangle of the fan of a face that is no triangle: its corners 0, k and k + 1.
    struct FanTriangle {
        std::uint32_t face;
        std::uint32_t secondCorner;
        std::array<Eigen::Vector3f, 3> positions;
    };

    /// The source of face @p face.
    const Source& sourceOf(std::size_t face) const;

    Faces faces;
    std::vector<Source> sources;
    std::vector<FanTriangle> fans;
};

/// Gathers faces: nodes depth first, parents before their children, instances, primitives and faces
/// in order.
class FaceGatherer {
public:
    /// What is gathered is appended to both.
    FaceGatherer(SceneFaces& scene, std::vector<SceneFaces::GeometryFaces>& perInstance)
        : scene_(scene), perInstance_(perInstance) {}

    void gather(Node& top);

private:
    void gatherNode(const boost::shared_ptr<Node>& node);
    void gatherInstance(const boost::shared_ptr<Node>& node,
                        const boost::shared_ptr<InstanceGeometry>& instance);
    void gatherPrimitive(IMeshPrimitive& primitive, const Mesh& mesh,
                         const Eigen::Matrix4f& toWorld, SceneFaces::Faces& faces);
    void addFans(IMeshPrimitive& primitive, const Mesh& mesh, const Eigen::Matrix4f& toWorld,
                 std::size_t firstFace);
    void addFan(std::size_t face, const std::vector<Eigen::Vector3f>& positions);

    SceneFaces& scene_;
    std::vector<SceneFaces::GeometryFaces>& perInstance_;
};

}  // namespace vantorix::scene
