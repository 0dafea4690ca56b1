#include "apps/vantorix/TreeSummary.h"

#include <unordered_set>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "apps/render/SkinPose.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::apps::cli {
namespace {

using scene::Node;

void enclose(const BoxSummary& other, BoxSummary& box) {
    if (!other.isKnown) return;
    if (!box.isKnown) box = other;
    box.least = box.least.cwiseMin(other.least);
    box.most = box.most.cwiseMax(other.most);
}

/// The box around the eight corners of a geometry's box as they stand in the world.
BoxSummary placedBox(scene::IGeometry& geometry, const Eigen::Matrix4f& world) {
    const BoxSummary local = boxBetween(geometry.getBVMin(), geometry.getBVMax());
    BoxSummary placed;
    for (int corner = 0; local.isKnown && corner < 8; ++corner) {
        const Eigen::Vector4f point((corner & 1 ? local.most : local.least).x(),
                                    (corner & 2 ? local.most : local.least).y(),
                                    (corner & 4 ? local.most : local.least).z(), 1.0f);
        const Eigen::Vector3f place = (world * point).head<3>();
        enclose(boxBetween(place, place), placed);
    }
    return placed;
}

/// The box around the positions of a geometry as a skin puts them into the world.
BoxSummary posedBox(const scene::Mesh& mesh, const render::SkinPose& pose) {
    BoxSummary box;
    for (const auto& mapping : mesh.getVertices()) {
        if (mapping.semantic != scene::POSITION || !mapping.stream) continue;
        const auto& values = std::as_const(*mapping.stream).values;
        if (mapping.stream->stride != 3) return box;
        for (std::size_t i = 0; i + 2 < values.size(); i += 3) {
            const Eigen::Vector3f position(values[i], values[i + 1], values[i + 2]);
            const Eigen::Vector3f place =
                pose.matrixOf(static_cast<unsigned int>(i / 3)) * position.homogeneous();
            enclose(boxBetween(place, place), box);
        }
    }
    return box;
}

InstanceSummary summarizeInstance(scene::InstanceGeometry& instance) {
    InstanceSummary summary;
    const auto geometry = instance.getGeometry();
    if (geometry) summary.geometryId = geometry->getID();
    for (const auto& [symbol, material] : instance.getMaterialMap()) {
        summary.materials.emplace_back(symbol, material ? material->getMaterialID() : "");
    }
    return summary;
}

void addInstances(const Node& node, NodeSummary& summary) {
    const auto instances = node.getInstancedGeometries();
    if (instances.empty()) return;
    const Eigen::Matrix4f world = node.getCombinedTransformations();
    for (const auto& instance : instances) {
        summary.instances.push_back(summarizeInstance(*instance));
        const auto geometry = instance->getGeometry();
        if (geometry) enclose(placedBox(*geometry, world), summary.box);
    }
}

void addControllers(const Node& node, NodeSummary& summary) {
    const auto manager = node.getSceneManager();
    for (const auto& instance : node.getInstancedControllers()) {
        const auto shown = instance->getInstanceGeometry();
        const auto controller = instance->getController();
        if (!shown || !controller || !manager) continue;
        summary.instances.push_back(summarizeInstance(*shown));
        summary.instances.back().controllerId = controller->getID();
        summary.instances.back().skeletons = instance->getSkeletons();
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(shown->getGeometry());
        const auto skin = controller->getSkin();
        if (!mesh || !skin) continue;
        const render::SkinPose pose(*manager, skin, node.getCombinedTransformations());
        enclose(posedBox(*mesh, pose), summary.box);
    }
}

NodeSummary summarizeNode(const Node& node) {
    NodeSummary summary;
    summary.id = node.getID();
    summary.name = node.getName();
    summary.type = node.getType();
    const auto layers = node.getLayersNames();
    summary.layers.assign(layers.begin(), layers.end());
    addInstances(node, summary);
    addControllers(node, summary);
    for (unsigned int i = 0; i < node.getInstanceCameraCount(); ++i) {
        summary.cameras.push_back(node.getInstanceCamera(i)->getID());
    }
    for (unsigned int i = 0; i < node.getInstanceLightCount(); ++i) {
        summary.lights.push_back(node.getInstanceLight(i)->getID());
    }
    return summary;
}

/// A node that is still to be listed.
struct Waiting {
    boost::shared_ptr<const Node> node;
    int parent;
    std::size_t depth;
};

void queueChildren(const Node& node, int position, std::size_t depth, std::vector<Waiting>& queue) {
    for (unsigned int i = node.getChildCount(); i > 0; --i) {
        queue.push_back({node.getChildNode(i - 1), position, depth + 1});
    }
}

/// Parents stand before their children: from the back, each box is complete when it is passed on.
void passBoxesUp(std::vector<NodeSummary>& nodes) {
    for (std::size_t i = nodes.size(); i > 1; --i) {
        const NodeSummary& child = nodes[i - 1];
        if (child.parent >= 0)
            enclose(child.box, nodes[static_cast<std::size_t>(child.parent)].box);
    }
}

}  // namespace

BoxSummary boxBetween(const Eigen::Vector3f& least, const Eigen::Vector3f& most) {
    const bool isBox =
        least.allFinite() && most.allFinite() && (least.array() <= most.array()).all();
    return {isBox, least, most};
}

std::vector<NodeSummary> summarizeTree(const Node& root) {
    std::vector<NodeSummary> nodes;
    std::unordered_set<const Node*> met;
    std::vector<Waiting> waiting{{root.shared_from_this(), -1, 0}};
    while (!waiting.empty()) {
        const Waiting next = waiting.back();
        waiting.pop_back();
        if (!met.insert(next.node.get()).second) continue;
        nodes.push_back(summarizeNode(*next.node));
        nodes.back().parent = next.parent;
        nodes.back().depth = next.depth;
        queueChildren(*next.node, static_cast<int>(nodes.size()) - 1, next.depth, waiting);
    }
    passBoxesUp(nodes);
    return nodes;
}

}  // namespace vantorix::apps::cli
