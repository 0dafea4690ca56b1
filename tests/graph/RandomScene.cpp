#include "tests/graph/RandomScene.h"

#include <algorithm>
#include <sstream>

#include <boost/make_shared.hpp>

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::test {

using namespace scene;

namespace {

using Lines = std::vector<std::string>;
using Materials = std::vector<boost::shared_ptr<Material>>;

void fillLibraries(SceneManager& scene, RandomChoices& random) {
    std::vector<boost::shared_ptr<Image>> images;
    for (unsigned int i = random.below(4); i > 0; --i) {
        images.push_back(boost::make_shared<Image>(random.id("i", 3), random.id("f", 2), "n"));
    }
    scene.setImageLibrary(images);
    for (unsigned int i = random.below(4); i > 0; --i) {
        scene.addEffect(boost::make_shared<Effect>(random.id("e", 3), random.id("f", 2), "n"));
    }
    const auto shared = boost::make_shared<MaterialParameter>("s", "texture", random.id("i", 3));
    for (unsigned int i = random.below(5); i > 0; --i) {
        const auto material = boost::make_shared<Material>(random.id("m", 4), random.id("e", 3));
        material->setTechnique("toon");
        if (random.chance(50)) material->setMaterialParameters({shared, nullptr});
        material->addMaterialParameter(boost::make_shared<MaterialParameter>(
            "p", random.chance(70) ? "texture" : "Texture", random.id("i", 3)));
        scene.addMaterial(material);
    }
    for (unsigned int i = random.below(4); i > 0; --i) {
        scene.getGeometryManager()->addGeometry(
            boost::make_shared<Mesh>(random.id("g", 4), "mesh"));
    }
    scene.getGeometryManager()->addGeometry(boost::make_shared<Mesh>("", "is found for no ID"));
    for (unsigned int i = random.below(4); i > 0; --i) {
        scene.getLayerManager()->addLayer(random.id("l", 4));
    }
}

boost::shared_ptr<InstanceGeometry> makeInstance(SceneManager& scene, RandomChoices& random) {
    auto geometry = scene.getGeometryManager()->getGeometry(random.id("g", 4));
    if (!geometry) geometry = boost::make_shared<Mesh>(random.id("g", 5), "not in the library");
    std::map<std::string, boost::shared_ptr<Material>> materials;
    if (random.chance(10)) geometry.reset();
    materials["x"] = random.of(scene.getMaterialList());
    materials["y"] = random.chance(10) ? nullptr : random.of(scene.getMaterialList());
    return boost::make_shared<InstanceGeometry>(geometry, materials);
}

boost::shared_ptr<Node> makeRandomNode(const boost::shared_ptr<SceneManager>& scene,
                                       unsigned int nodeIDs, RandomChoices& random) {
    const auto node = boost::make_shared<Node>(scene);
    node->setID(random.id("n", nodeIDs));
    node->setName(random.id("name", 5));
    node->addTranslation(static_cast<float>(random.below(5)), 1, 2);
    if (random.chance(40)) {
        node->rotate(Eigen::AngleAxisf(0.5f, Eigen::Vector3f::UnitY()).toRotationMatrix());
        node->setScale({2, 3, static_cast<float>(random.below(3))});
    }
    while (random.chance(40)) node->addToLayer(static_cast<int>(random.below(9)));
    while (random.chance(50)) node->addInstanceGeometry(makeInstance(*scene, random));
    return node;
}

/// Where @p item stands in the list: "#2", or "-".
template <class Item>
std::string placeOf(const boost::shared_ptr<Item>& item,
                    const std::vector<boost::shared_ptr<Item>>& list) {
    const auto found = std::find(list.begin(), list.end(), item);
    return found == list.end() ? "-" : "#" + std::to_string(found - list.begin());
}

std::string nameOf(const boost::shared_ptr<Material>& material, const Materials& own,
                   const Materials& others) {
    if (!material) return "none";
    return material->getMaterialID() + placeOf(material, own) + placeOf(material, others);
}

void describeLibraries(SceneManager& scene, SceneManager& other, Lines& lines) {
    lines.push_back(scene.effectLibraryToString());
    for (const auto& image : scene.getImageLibrary()) {
        lines.push_back("image " + image->getID() + " " + image->getFilename() + image->getName());
    }
    std::vector<boost::shared_ptr<MaterialParameter>> shared;
    for (const auto& material : other.getMaterialList()) {
        const auto parameters = material->getMaterialParameters();
        shared.insert(shared.end(), parameters.begin(), parameters.end());
    }
    for (const auto& material : scene.getMaterialList()) {
        lines.push_back(material->toString() + material->getTechnique());
        for (const auto& parameter : material->getMaterialParameters()) {
            lines.back() += placeOf(parameter, shared);
        }
    }
    const auto& geometries = *scene.getGeometryManager();
    for (const auto& id : geometries.getIDs()) {
        const auto geometry = geometries.getGeometry(id);
        const bool isShared = geometry == other.getGeometryManager()->getGeometry(id);
        lines.push_back("geometry " + id + "=" + geometry->getID() + (isShared ? " shared" : ""));
    }
    for (int layer = 0; layer < 40; ++layer) {
        lines.push_back(scene.getLayerManager()->getLayerName(layer));
    }
}

void describeNode(Node& node, const std::string& indent, const Materials& own,
                  const Materials& others, Lines& lines) {
    std::ostringstream line;
    line << indent << node.getID() << " '" << node.getName() << "' layers";
    for (const int layer : node.getLayers()) line << ' ' << layer;
    line << '\n' << node.getTransformations();
    for (const auto& instance : node.getInstancedGeometries()) {
        const auto geometry = instance->getGeometry();
        line << "\n shows " << (geometry ? geometry->getID() : "nothing");
        for (const auto& [symbol, material] : instance->getMaterialMap()) {
            line << ' ' << symbol << '=' << nameOf(material, own, others);
        }
    }
    lines.push_back(line.str());
    for (unsigned int i = 0; i < node.getChildCount(); ++i) {
        describeNode(*node.getChildNode(i), indent + "  ", own, others, lines);
    }
}

}  // namespace

void fillRandomly(const boost::shared_ptr<SceneManager>& scene, unsigned int nodeIDs,
                  RandomChoices& random) {
    fillLibraries(*scene, random);
    scene->setRoot(makeRandomNode(scene, nodeIDs, random));
    std::vector<boost::shared_ptr<Node>> nodes{scene->getRoot()};
    const bool isFlat = random.chance(50);
    for (unsigned int i = random.below(isFlat ? 24 : 14); i > 0; --i) {
        const auto& parent = isFlat && random.chance(80) ? nodes.front() : random.of(nodes);
        const auto node = makeRandomNode(scene, nodeIDs, random);
        parent->addNode(node);
        nodes.push_back(node);
    }
    if (random.chance(30)) random.of(nodes)->addNode(random.of(nodes));
}

Lines describe(SceneManager& scene, SceneManager& other) {
    Lines lines;
    describeLibraries(scene, other, lines);
    describeNode(*scene.getRoot(), "", scene.getMaterialList(), other.getMaterialList(), lines);
    return lines;
}

}  // namespace vantorix::test
