#include "apps/render/PosedMesh.h"

#include <utility>

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <boost/make_shared.hpp>

#include "apps/render/SkinPose.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::apps::render {
namespace {

boost::shared_ptr<scene::Stream> posedPositions(const scene::Stream& positions,
                                                const SkinPose& pose,
                                                const Eigen::Matrix4f& fromWorld) {
    const auto posed = positions.clone();
    std::vector<float> values = positions.values;
    for (std::size_t i = 0; i + 2 < values.size(); i += 3) {
        Eigen::Map<Eigen::Vector3f> position(&values[i]);
        const Eigen::Vector3f place =
            pose.matrixOf(static_cast<unsigned int>(i / 3)) * position.homogeneous();
        position = (fromWorld * place.homogeneous()).head<3>();
    }
    posed->values = values;
    return posed;
}

}  // namespace

boost::shared_ptr<scene::Mesh> posedMesh(scene::Mesh& mesh, const SkinPose& pose,
                                         const Eigen::Matrix4f& world) {
    const Eigen::Matrix4f fromWorld = world.inverse();
    if (!fromWorld.allFinite()) return {};
    auto vertices = mesh.getVertices();
    for (auto& mapping : vertices) {
        if (mapping.semantic != scene::POSITION || !mapping.stream) continue;
        if (mapping.stream->stride != 3) return {};
        mapping.stream = posedPositions(*mapping.stream, pose, fromWorld);
    }
    const auto posed = boost::make_shared<scene::Mesh>(mesh.getID(), mesh.getName());
    posed->setVertices(vertices);
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        posed->addPrimitive(primitive->clone(posed));
    }
    return posed;
}

}  // namespace vantorix::apps::render
