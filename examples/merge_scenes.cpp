// Takes one scene into another and reports what had to be renamed on the way.

#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <set>
#include <string>

#include <boost/make_shared.hpp>

using namespace vantorix::scene;
using Names = std::set<std::string>;

namespace {

/// A scene with one piece of furniture: the node @p id shows the geometry "seat" in "wood".
boost::shared_ptr<SceneManager> makeScene(const std::string& id) {
    const auto events = boost::make_shared<vantorix::core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    const auto seat = boost::make_shared<Mesh>("seat", "");
    const auto wood = boost::make_shared<Material>("wood", "defaultEffect");
    scene->getGeometryManager()->addGeometry(seat);
    scene->addMaterial(wood);
    const auto node = boost::make_shared<Node>(scene);
    node->setID(id);
    node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(seat, wood));
    scene->getRoot()->addNode(node);
    return scene;
}

Names namesIn(const SceneManager& scene) {
    Names names;
    for (const auto& node : scene.getNodeArray()) names.insert("node " + node->getID());
    for (const auto& id : scene.getGeometryManager()->getIDs()) names.insert("geometry " + id);
    for (const auto& material : scene.getMaterialList()) {
        names.insert("material " + material->getMaterialID());
    }
    return names;
}

/// What @p after has and @p before lacks and whose name tells that it was another.
Names renamedBetween(const Names& before, const Names& after) {
    Names renamed;
    for (const auto& name : after) {
        if (before.count(name) == 0 && name.find("__renamed_") != std::string::npos) {
            renamed.insert(name.substr(0, name.find("__renamed_")));
            std::cout << "renamed: " << name << '\n';
        }
    }
    return renamed;
}

}  // namespace

int main() {
    const auto room = makeScene("chair");
    const auto delivery = makeScene("chair");
    delivery->getRoot()->setID("delivered");

    // 0x02: a material of the same name and effect is the same material. Geometries and nodes of
    // the same name are different ones here, and get new names.
    const auto before = namesIn(*room);
    room->mergeSceneManager(delivery, 0x02, room->getRoot()->getID());
    const auto renamed = renamedBetween(before, namesIn(*room));

    const auto delivered = room->getNodeByID("delivered")->getChildNode(0);
    const auto shown = delivered->getInstanceGeometry(0)->getGeometry()->getID();
    std::cout << delivered->getID() << " shows " << shown << '\n';

    room->stop();
    delivery->stop();
    const bool isRight =
        renamed == Names{"geometry seat", "node chair"} && shown == "seat__renamed__";
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
