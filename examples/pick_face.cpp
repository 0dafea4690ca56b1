// Tells which face of which node a ray hits first: what lies under the mouse.

#include <cmath>
#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

using namespace vantorix::scene;
using Eigen::Vector3f;

namespace {

/// A square of two triangles in the plane y = 0, made from ready arrays: a stream of positions,
/// the meaning of it, and three indices per triangle.
boost::shared_ptr<Mesh> makeSquare() {
    const auto positions = boost::make_shared<Stream>("positions", 3, true);
    positions->values = std::vector<float>{-1, 0, -1, 1, 0, -1, 1, 0, 1, -1, 0, 1};
    positions->count = 4;
    const auto mesh = boost::make_shared<Mesh>("square", "");
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, positions, 0)},
        std::vector<unsigned int>{0, 3, 2, 0, 2, 1}));
    return mesh;
}

void addShelf(const boost::shared_ptr<SceneManager>& scene, const std::string& id, float height) {
    const auto node = boost::make_shared<Node>(scene);
    node->setID(id);
    const auto square = scene->getGeometryManager()->getGeometry("square");
    node->addInstanceGeometry(
        boost::make_shared<InstanceGeometry>(square, scene->getMaterialWithID("defaultMaterial")));
    scene->getRoot()->addNode(node);
    node->addTranslation(0, height, 0);
}

}  // namespace

int main() {
    const auto events = boost::make_shared<vantorix::core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    scene->getGeometryManager()->addGeometry(makeSquare());
    addShelf(scene, "lower shelf", 1);
    addShelf(scene, "upper shelf", 2);

    // The octree is a snapshot: gather and calculate again after the scene has changed.
    Octree octree;
    octree.setSceneNode(scene->getRoot());
    octree.calculate(4, 8);  // at most four levels, leaves of up to eight faces

    const auto hit = octree.pick(Ray(Vector3f(0.5f, 5, -0.5f), Vector3f(0, -1, 0)));
    const auto all = octree.pickAll(Ray(Vector3f(0.5f, 5, -0.5f), Vector3f(0, -1, 0)));
    const auto none = octree.pick(Ray(Vector3f(0.5f, 5, -0.5f), Vector3f(0, 1, 0)));
    scene->stop();
    if (!hit || none) return EXIT_FAILURE;

    std::cout << "face " << hit->faceIndex << " of " << hit->node->getID() << ", " << hit->distance
              << " away, at " << hit->position.transpose() << "; the ray goes through "
              << all.size() << " faces in all\n";
    const bool isRight = hit->node->getID() == "upper shelf" && hit->faceIndex == 1 &&
                         std::abs(hit->distance - 3) < 1e-4f && all.size() == 2;
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
