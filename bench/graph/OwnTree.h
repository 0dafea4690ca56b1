#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "core_api/event/EventManager.h"

#include "bench/graph/TreePlan.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::bench {

/// A scene of our own as TreeCases.h wants it.
class OwnTree {
public:
    explicit OwnTree(boost::shared_ptr<core::event::EventManager> manager = nullptr);
    ~OwnTree();

    void build(const TreePlan& plan);
    void buildBare(const TreePlan& plan);

    void move(int node, const Eigen::Vector3f& position) {
        at(node).setTranslation(Eigen::Translation3f(position));
    }
    void update() {}
    Eigen::Matrix4f world(int node) const { return at(node).getCombinedTransformations(); }
    Eigen::Matrix4f worldAlong(const std::vector<int>& path) const { return world(path.back()); }
    Eigen::Matrix4f matrix(int node) const { return world(node); }

    void holdNodes();
    void remove(int parent, int child);
    int childCount(int node) const { return static_cast<int>(at(node).getChildCount()); }
    void release() { scene_.reset(); }

    const boost::shared_ptr<scene::SceneManager>& scene() const { return scene_; }
    scene::Node& at(int node) const { return *nodes_[static_cast<std::size_t>(node)]; }

private:
    template <class Dress>
    void makeNodes(const TreePlan& plan, Dress dress);

    boost::shared_ptr<scene::SceneManager> scene_;
    std::vector<scene::Node*> nodes_;
    std::vector<boost::shared_ptr<scene::Node>> held_;
};

}  // namespace vantorix::bench
