#include "scene/spatial/SceneFaces.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMath.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"
#include "scene/material/InstanceGeometry.h"

namespace vantorix::scene {
namespace {

using FanPositions = std::vector<Eigen::Vector3f>;

/// The mesh of a geometry that says that it is one.
boost::shared_ptr<Mesh> meshOf(const boost::shared_ptr<IGeometry>& geometry) {
    if (!geometry || geometry->getType() >= IGeometry::SPLINE) return {};
    return boost::dynamic_pointer_cast<Mesh>(geometry);
}

/// Corners of a polygon, read from the streams: polygons that are handed out have none.
FanPositions polygonPositions(const FaceAssembler& reader, std::size_t first, std::size_t corners,
                              std::size_t stride, std::size_t indexCount) {
    FanPositions positions;
    for (std::size_t i = 0; i < corners; ++i) {
        const std::size_t start = first + i * stride;
        if (start + stride > indexCount) break;
        positions.push_back(reader.position(start));
    }
    return positions;
}

bool isTriangle(IPrimitive& face) {
    // Nearly all are no more than that, and the question what else one may be takes long.
    return typeid(face) == typeid(Triangle) || dynamic_cast<Triangle*>(&face);
}

FanPositions vertexPositions(IPrimitive& face) {
    FanPositions positions;
    for (const auto& vertex : face.getVertexArray()) {
        positions.push_back(vertex ? vertex->getPositionVector() : Eigen::Vector3f::Zero());
    }
    return positions;
}

std::vector<boost::shared_ptr<Node>> nodesBelow(Node& top) {
    std::vector<boost::shared_ptr<Node>> nodes;
    NodeWalk walk(top, NodeWalk::VISIT_REPEATS);
    while (Node* const node = walk.next()) nodes.push_back(node->shared_from_this());
    return nodes;
}

}  // namespace

const SceneFaces::Source& SceneFaces::sourceOf(std::size_t face) const {
    const auto after = std::upper_bound(
        sources.begin(), sources.end(), face,
        [](std::size_t wanted, const Source& source) { return wanted < source.firstFace; });
    return *std::prev(after);
}

void FaceGatherer::gather(Node& top) {
    // Listed before: primitives of the caller's own classes may edit the tree as they are read.
    for (const auto& node : nodesBelow(top)) gatherNode(node);
}

void FaceGatherer::gatherNode(const boost::shared_ptr<Node>& node) {
    for (unsigned int i = 0; i < node->getInstanceGeometryCount(); ++i) {
        gatherInstance(node, node->getInstanceGeometry(i));
    }
}

void FaceGatherer::gatherInstance(const boost::shared_ptr<Node>& node,
                                  const boost::shared_ptr<InstanceGeometry>& instance) {
    const auto geometry = instance->getGeometry();
    const auto mesh = meshOf(geometry);
    if (!mesh) return;
    const Eigen::Matrix4f toWorld = node->getCombinedTransformations();
    SceneFaces::Faces faces;
    const auto primitives = mesh->getMeshPrimitives();
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        scene_.sources.push_back(
            {scene_.faces.size(), static_cast<unsigned int>(i), instance, node});
        gatherPrimitive(*primitives[i], *mesh, toWorld, faces);
    }
    perInstance_.emplace_back(geometry, std::move(faces));
}

void FaceGatherer::gatherPrimitive(IMeshPrimitive& primitive, const Mesh& mesh,
                                   const Eigen::Matrix4f& toWorld, SceneFaces::Faces& faces) {
    const std::size_t firstFace = scene_.faces.size();
    auto made = primitive.getPrimitives();
    made.erase(std::remove(made.begin(), made.end(), nullptr), made.end());
    const std::size_t size = firstFace + made.size();
    if (size > scene_.faces.capacity()) {
        scene_.faces.reserve(std::max(size, 2 * scene_.faces.capacity()));
    }
    for (const auto& face : made) {
        face->applyTransform(toWorld);
        scene_.faces.push_back(face);  // While it is next to the processor.
    }
    if (faces.empty()) {
        faces = std::move(made);
    } else {
        faces.insert(faces.end(), made.begin(), made.end());
    }
    addFans(primitive, mesh, toWorld, firstFace);
}

void FaceGatherer::addFans(IMeshPrimitive& primitive, const Mesh& mesh,
                           const Eigen::Matrix4f& toWorld, std::size_t firstFace) {
    auto* const polygons = dynamic_cast<PolygonMeshPrimitive*>(&primitive);
    if (!polygons) {
        for (std::size_t face = firstFace; face < scene_.faces.size(); ++face) {
            auto& object = *scene_.faces[face];
            if (!isTriangle(object)) addFan(face, vertexPositions(object));
        }
        return;
    }
    const auto& indices = polygons->getIndexStream();
    const auto& list = polygons->getPolygonStream();
    const auto stride = static_cast<std::size_t>(polygons->getIndexStreamStride());
    const FaceAssembler reader(polygons->getStreamMapping(), &mesh, indices, stride);
    const std::size_t count = std::min(list.size() / 2, scene_.faces.size() - firstFace);
    for (std::size_t i = 0; stride > 0 && i < count; ++i) {
        auto positions =
            polygonPositions(reader, list[2 * i + 1], list[2 * i], stride, indices.size());
        for (auto& position : positions) position = transformedPosition(toWorld, position);
        addFan(firstFace + i, positions);
    }
}

void FaceGatherer::addFan(std::size_t face, const FanPositions& positions) {
    for (std::size_t k = 1; k + 1 < positions.size(); ++k) {
        scene_.fans.push_back({static_cast<std::uint32_t>(face),
                               static_cast<std::uint32_t>(k),
                               {positions[0], positions[k], positions[k + 1]}});
    }
}

}  // namespace vantorix::scene
