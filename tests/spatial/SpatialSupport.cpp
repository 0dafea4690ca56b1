#include "tests/spatial/SpatialSupport.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "core_api/logger/Logger.h"

#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::test {

using namespace vantorix::scene;

float RandomScene::between(float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random_);
}

Eigen::Vector3f RandomScene::vector(float extent) {
    const float x = between(-extent, extent);
    const float y = between(-extent, extent);
    return {x, y, between(-extent, extent)};
}

void RandomScene::fill(RecordedScene& scene, int nodes) {
    std::vector<boost::shared_ptr<Node>> all = {scene->getRoot()};
    for (int i = 0; i < nodes; ++i) {
        const auto node = scene.makeNode("n" + std::to_string(i));
        const auto parent = all[below(static_cast<unsigned int>(all.size()))];
        parent->addNode(node);
        const Eigen::Vector3f move = vector(4);
        node->addTranslation(move.x(), move.y(), move.z());
        const Eigen::AngleAxisf turn(between(0, 6), vector(1).normalized());
        node->rotate(turn.toRotationMatrix());
        if (below(3) == 0) node->scale(vector(2));
        all.push_back(node);
        if (below(3) == 0) {
            quietly([&] { meshes_.push_back(makeMesh("m" + std::to_string(i))); });
        }
        if (!meshes_.empty()) {
            place(meshes_[below(static_cast<unsigned int>(meshes_.size()))], *node);
        }
    }
}

boost::shared_ptr<Mesh> RandomScene::makeMesh(const std::string& id) {
    const unsigned int count = 3 + below(40);
    std::vector<float> positions;
    for (unsigned int i = 0; i < 3 * count; ++i) {
        // Some on a grid, so that faces lie in the planes between the boxes.
        positions.push_back(below(4) == 0 ? static_cast<float>(below(3)) - 1 : between(-1, 1));
    }
    const auto mesh = makePositions(id, positions);
    if (meshes_.size() % 4 == 3) mesh->setType(IGeometry::CONVEX_MESH);  // As good as any mesh.
    std::vector<unsigned int> indices(3 * (1 + below(60)));
    for (auto& index : indices) index = below(count);
    addTriangles(mesh, indices);
    if (below(3) == 0) addPolygons(mesh, {0, 1, 2, 1, 0}, {4, 0, 2, 3, 3, 1});
    return mesh;
}

boost::shared_ptr<Mesh> makePositions(const std::string& id, const std::vector<float>& positions) {
    const auto stream = boost::make_shared<Stream>("positions", 3, false);
    stream->values = positions;
    stream->count = static_cast<int>(positions.size() / 3);
    const auto mesh = boost::make_shared<Mesh>(id, "");
    mesh->addStream(stream);
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    return mesh;
}

void addTriangles(const boost::shared_ptr<Mesh>& mesh, const std::vector<unsigned int>& indices) {
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, indices));
}

void addPolygons(const boost::shared_ptr<Mesh>& mesh, const std::vector<unsigned int>& indices,
                 const std::vector<unsigned int>& polygons) {
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
    mesh->addPrimitive(boost::make_shared<PolygonMeshPrimitive>(mesh, mappings, indices, polygons));
}

boost::shared_ptr<InstanceGeometry> place(const boost::shared_ptr<Mesh>& mesh, Node& node) {
    const auto instance = boost::make_shared<InstanceGeometry>(mesh, boost::shared_ptr<Material>());
    node.addInstanceGeometry(instance);
    return instance;
}

void quietly(const std::function<void()>& action) {
    core::logger::Logger::active = false;
    ::testing::internal::CaptureStdout();
    action();
    ::testing::internal::GetCapturedStdout();
    core::logger::Logger::active = true;
}

}  // namespace vantorix::test
