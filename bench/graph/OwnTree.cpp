#include "bench/graph/OwnTree.h"

#include <utility>

#include <boost/make_shared.hpp>

namespace vantorix::bench {

using scene::Node;

OwnTree::OwnTree(boost::shared_ptr<core::event::EventManager> manager)
    : scene_(boost::make_shared<scene::SceneManager>(std::move(manager))) {}

OwnTree::~OwnTree() {
    if (scene_) scene_->stop();
}

template <class Dress>
void OwnTree::makeNodes(const TreePlan& plan, Dress dress) {
    nodes_.reserve(plan.parents.size());
    for (std::size_t i = 0; i < plan.parents.size(); ++i) {
        auto node = i == 0 ? scene_->getRoot() : boost::make_shared<Node>(scene_);
        nodes_.push_back(node.get());
        dress(*node, i);
        if (i > 0) at(plan.parents[i]).addNode(std::move(node));
    }
}

void OwnTree::build(const TreePlan& plan) {
    makeNodes(plan, [&plan](Node& node, std::size_t i) {
        node.setID(plan.ids[i]);
        node.setName(plan.names[i]);
        const auto& pose = plan.poses[i];
        node.setTransformations(Eigen::Translation3f(pose.position), pose.rotationMatrix);
    });
}

void OwnTree::buildBare(const TreePlan& plan) {
    makeNodes(plan, [](Node&, std::size_t) {});
    scene_->getNodeByID(at(0).getID());
    for (int node = 0; node < plan.size(); ++node) world(node);
}

void OwnTree::holdNodes() {
    for (auto* const node : nodes_) held_.push_back(node->shared_from_this());
}

void OwnTree::remove(int parent, int child) {
    at(parent).removeChild(held_[static_cast<std::size_t>(child)]);
}

}  // namespace vantorix::bench
