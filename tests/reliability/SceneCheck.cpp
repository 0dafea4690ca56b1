#include "tests/reliability/SceneCheck.h"

#include <cmath>
#include <map>
#include <numeric>
#include <set>

#include <boost/make_shared.hpp>

#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Material.h"

namespace vantorix::test {

using namespace vantorix::scene;

namespace {

using Faults = std::vector<std::string>;
using NodePtr = boost::shared_ptr<Node>;

/// A search as its definition reads: depth first, each node at its first place only.
class NaiveTree {
public:
    explicit NaiveTree(const NodePtr& root) { visit(root); }

    std::vector<NodePtr> nodes;
    bool hasCircle = false;

private:
    void visit(const NodePtr& node) {
        if (onPath_.count(node.get()) > 0) hasCircle = true;
        if (!met_.insert(node.get()).second) return;
        nodes.push_back(node);
        onPath_.insert(node.get());
        for (unsigned int i = 0; i < node->getChildCount(); ++i) visit(node->getChildNode(i));
        onPath_.erase(node.get());
    }

    std::set<const Node*> met_, onPath_;
};

template <class Text, class Find>
void checkLookUps(const NaiveTree& tree, Text textOf, Find find, Faults& faults) {
    std::map<std::string, NodePtr> first;
    for (const auto& node : tree.nodes) first.emplace(textOf(*node), node);
    for (const auto& [text, node] : first) {
        if (find(text) != node) faults.push_back("another node is found for '" + text + "'");
    }
    if (find("nobody carries this")) faults.emplace_back("a node is found that is not there");
}

bool isSame(const Eigen::Matrix4f& one, const Eigen::Matrix4f& two) {
    for (Eigen::Index i = 0; i < 16; ++i) {
        if (one(i) != two(i) && !(std::isnan(one(i)) && std::isnan(two(i)))) return false;
    }
    return true;
}

/// The product along the parents; where they form a circle there is nothing to compare with.
bool hasRightWorldMatrix(const NodePtr& node) {
    std::vector<NodePtr> chain;
    std::set<const Node*> met;
    for (auto next = node; next; next = next->getParent()) {
        if (!met.insert(next.get()).second) return true;
        chain.push_back(next);
    }
    Eigen::Matrix4f world = chain.back()->getTransformations();
    for (auto next = chain.rbegin() + 1; next != chain.rend(); ++next) {
        world = (world * (*next)->getTransformations()).eval();
    }
    return isSame(world, node->getCombinedTransformations());
}

void checkMesh(Mesh& mesh, Faults& faults) {
    std::size_t positions = 0;
    for (const auto& stream : mesh.getStreams()) {
        const auto floats = static_cast<std::size_t>(stream->count * stream->stride);
        if (stream->values.size() < floats) faults.push_back(mesh.getID() + ": a short stream");
    }
    for (const auto& mapping : mesh.getVertices()) {
        if (mapping.semantic == POSITION) positions = mapping.stream->values.size() / 3;
    }
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        const auto stride = static_cast<std::size_t>(primitive->getIndexStreamStride());
        const auto& records = primitive->getIndexStream();
        if (stride == 0) continue;
        const bool isOfTriangles = primitive->getType() == IMeshPrimitive::TRIANGLES;
        if (records.size() % (isOfTriangles ? 3 * stride : stride) != 0) {
            faults.push_back(mesh.getID() + ": torn records");
        }
        for (std::size_t i = 0; i < records.size(); i += stride) {
            if (records[i] >= positions) faults.push_back(mesh.getID() + ": a record leads astray");
        }
    }
}

void checkSkin(const Skin& skin, Faults& faults) {
    std::size_t influences = 0;
    for (const auto count : skin.getVCount()) influences += count;
    if (skin.getV().size() != 2 * influences) faults.emplace_back("influences are missing");
    const auto weights = skin.getVertexWeightsInput("WEIGHT");
    for (std::size_t i = 1; weights && i < skin.getV().size(); i += 2) {
        if (static_cast<std::size_t>(skin.getV()[i]) >= weights->values.size()) {
            faults.emplace_back("a weight is missing");
        }
    }
    for (unsigned int vertex = 0; vertex < skin.getVCount().size(); ++vertex) {
        std::vector<int> joints;
        std::vector<float> shares;
        skin.getVertexJointsAndWeights(vertex, joints, shares);
        const float sum = std::accumulate(shares.begin(), shares.end(), 0.0f);
        if (std::abs(sum - 1) > 1e-3f) faults.emplace_back("weights of another vertex");
    }
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(skin.getSourceGeometry());
    for (const auto& mapping : mesh ? mesh->getVertices() : std::vector<StreamMapping>()) {
        const auto vertices = static_cast<std::size_t>(mapping.stream->count);
        if (skin.getVCount().size() != vertices) faults.emplace_back("skin and mesh disagree");
    }
}

template <class Items>
void checkItems(const Items& items, const char* name, Faults& faults) {
    for (const auto& item : items) {
        if (!item) faults.push_back(std::string("an empty entry among the ") + name);
    }
}

}  // namespace

Faults findTreeFaults(SceneManager& scene) {
    Faults faults;
    const NaiveTree tree(scene.getRoot());
    if (tree.hasCircle) faults.emplace_back("the tree has a circle");
    const auto id = [](const Node& node) { return node.getID(); };
    const auto name = [](const Node& node) { return node.getName(); };
    const auto byID = [&](const std::string& text) { return scene.getNodeByID(text); };
    const auto byName = [&](const std::string& text) { return scene.getNodeByName(text); };
    checkLookUps(tree, id, byID, faults);
    checkLookUps(tree, name, byName, faults);
    for (const auto& node : tree.nodes) {
        if (!hasRightWorldMatrix(node)) faults.push_back(node->getID() + ": wrong world matrix");
    }
    return faults;
}

Faults findLibraryFaults(SceneManager& scene) {
    Faults faults;
    checkItems(scene.getImageLibrary(), "images", faults);
    checkItems(scene.getEffectLibrary(), "effects", faults);
    checkItems(scene.getMaterialList(), "materials", faults);
    checkItems(scene.getAnimationsLibrary(), "animations", faults);
    for (const auto& material : scene.getMaterialList()) {
        if (!scene.getMaterialWithID(material->getMaterialID())) faults.emplace_back("no material");
    }
    for (const auto& id : scene.getGeometryManager()->getIDs()) {
        const auto geometry = scene.getGeometryManager()->getGeometry(id);
        if (const auto mesh = boost::dynamic_pointer_cast<Mesh>(geometry)) checkMesh(*mesh, faults);
    }
    for (const auto& controller : scene.getControllersLibrary()) {
        if (const auto skin = controller->getSkin()) checkSkin(*skin, faults);
    }
    return faults;
}

Faults findUseFaults(const boost::shared_ptr<SceneManager>& scene) {
    const auto node = boost::make_shared<Node>(scene);
    node->setID("probe");
    scene->getRoot()->addNode(node);
    if (scene->getNodeByID("probe") != node) return {"a new node is not found"};
    node->setID("moved probe");
    node->addTranslation(1, 2, 3);
    if (scene->getNodeByID("probe")) return {"a renamed node keeps its ID"};
    auto& layers = *scene->getLayerManager();
    for (const char* name : {"props", "limbs"}) {
        if (layers.getLayerName(layers.getLayerID(name)) != name) return {"a layer lost its name"};
    }
    scene->removeNode(node);
    if (scene->getNodeByID("moved probe")) return {"a removed node is found"};
    return {};
}

}  // namespace vantorix::test
