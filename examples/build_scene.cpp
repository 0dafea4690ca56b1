// Builds a small scene: a table top with a material, and a lamp that stands on it.
//
// The tree: root - table (the mesh) - lamp (a light), and a camera beside them.

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

boost::shared_ptr<Vertex> corner(float x, float z) {
    const auto vertex = boost::make_shared<Vertex>();
    vertex->setPosition(x, 0, z);
    return vertex;
}

/// Two triangles in the plane y = 0, two units wide.
boost::shared_ptr<Mesh> makeTableTop() {
    const auto a = corner(-1, -1), b = corner(1, -1), c = corner(1, 1), d = corner(-1, 1);
    const auto mesh = boost::make_shared<Mesh>("top", "Table top");
    // Without streams as yet, which it logs: the first triangle brings them.
    const auto faces =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    faces->addTriangle(boost::make_shared<Triangle>(a, d, c), true);  // true: equal corners are
    faces->addTriangle(boost::make_shared<Triangle>(a, c, b), true);  // stored once
    mesh->addPrimitive(faces);
    return mesh;
}

void print(const Node& node, int depth) {
    const Vector3f place = node.getCombinedTransformations().col(3).head<3>();
    std::cout << std::string(static_cast<std::size_t>(2 * depth), ' ') << node.getID() << " at "
              << place.transpose() << '\n';
    for (unsigned int i = 0; i < node.getChildCount(); ++i) print(*node.getChildNode(i), depth + 1);
}

}  // namespace

int main() {
    const auto events = boost::make_shared<vantorix::core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);

    // Libraries first: what nodes show is shared and has a place of its own.
    const auto wood = boost::make_shared<Material>("wood", "defaultEffect");
    scene->addMaterial(wood);
    const auto top = makeTableTop();
    scene->getGeometryManager()->addGeometry(top);

    // Then the tree. A node is placed relative to its parent.
    scene->getRoot()->setID("root");
    const auto table = boost::make_shared<Node>(scene);
    table->setID("table");
    table->addInstanceGeometry(boost::make_shared<InstanceGeometry>(top, wood));
    scene->getRoot()->addNode(table);
    table->addTranslation(0, 0.75f, 0);

    scene->createNewLight(Light::POINT, "bulb", "lamp", "table");
    scene->getNodeByID("lamp")->addTranslation(0.5f, 0.4f, 0);
    scene->createNewCamera(Camera::PERSPECTIVE, "eye", "root");
    scene->getNodeByID("eye")->addTranslation(0, 1, 5);

    print(*scene->getRoot(), 0);
    std::cout << "all of it lies between " << scene->getRoot()->getBVMin().transpose() << " and "
              << scene->getRoot()->getBVMax().transpose() << '\n';

    const Vector3f lamp = scene->getNodeByID("lamp")->getCombinedTransformations().col(3).head<3>();
    const bool isRight = lamp.isApprox(Vector3f(0.5f, 1.15f, 0)) &&
                         scene->getRoot()->getBVMax().isApprox(Vector3f(1, 0.75f, 1));
    scene->stop();  // ends the scene's own thread
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
