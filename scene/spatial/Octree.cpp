#include "scene/spatial/Octree.h"

#include <boost/make_shared.hpp>

#include "scene/graph/Node.h"
#include "scene/spatial/OctreeBuilder.h"
#include "scene/spatial/OctreeNodes.h"
#include "scene/spatial/OctreePicking.h"
#include "scene/spatial/Ray.h"
#include "scene/spatial/SceneFaces.h"

namespace vantorix::scene {

Octree::Octree() : gathered_(boost::make_shared<SceneFaces>()) {}

Octree::Octree(const Octree& other) = default;

Octree& Octree::operator=(const Octree& other) = default;

Octree::~Octree() = default;

void Octree::setSceneNode(boost::shared_ptr<Node> node) {
    sceneNode_ = node;
    gathered_ = boost::make_shared<SceneFaces>();
    assembleScenePrimitives(std::move(node));
}

void Octree::assembleScenePrimitives(boost::shared_ptr<Node> node) {
    if (!node) return;
    if (gathered_.use_count() > 1) gathered_ = boost::make_shared<SceneFaces>(*gathered_);
    FaceGatherer(*gathered_, geometryPrimitives_).gather(*node);
}

void Octree::calculate(int maxDepth, int maxPrimitives) {
    if (!sceneNode_) return;
    const auto nodes = boost::make_shared<OctreeNodes>();
    auto* const root = nodes->add(nullptr, sceneNode_->getBVMin(), sceneNode_->getBVMax());
    root->owner_ = nodes;
    OctreeBuilder(gathered_->faces, maxDepth, maxPrimitives).build(*root, 0);
    auto picking = boost::make_shared<OctreePicking>(gathered_);
    root_ = boost::shared_ptr<OctreeNode>(nodes, root);
    picking_ = std::move(picking);
}

OctreeNode* Octree::getRoot() const { return root_.get(); }

const Octree::GeometryPrimitives& Octree::getGeometryPrimitives() const {
    return geometryPrimitives_;
}

bool Octree::intersectRay(boost::shared_ptr<Ray> ray) const {
    return ray && root_ && root_->intersectRay(std::move(ray));
}

std::optional<PickHit> Octree::pick(const Ray& ray) const {
    return picking_ ? picking_->pick(ray) : std::optional<PickHit>();
}

std::vector<PickHit> Octree::pickAll(const Ray& ray) const {
    return picking_ ? picking_->pickAll(ray) : std::vector<PickHit>();
}

}  // namespace vantorix::scene
