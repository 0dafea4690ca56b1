#pragma once

#include <vector>

#include "bench/graph/TreePlan.h"

namespace vantorix::bench {

/// The limit: local and world matrices in arrays, depth first, as TreeCases.h wants them. There is
/// no scene, nothing is cached and nobody hears of anything.
class FlatTree {
public:
    void build(const TreePlan& plan) {
        parents_ = plan.parents;
        for (const auto& pose : plan.poses) locals_.push_back(pose.matrix);
        worlds_.resize(locals_.size());
        update();
    }
    void move(int node, const Eigen::Vector3f& position) {
        locals_[static_cast<std::size_t>(node)].topRightCorner<3, 1>() = position;
    }
    void update() {
        worlds_[0] = locals_[0];
        for (std::size_t node = 1; node < worlds_.size(); ++node) {
            const auto parent = static_cast<std::size_t>(parents_[node]);
            worlds_[node].noalias() = worlds_[parent] * locals_[node];
        }
    }
    const Eigen::Matrix4f& world(int node) const { return worlds_[static_cast<std::size_t>(node)]; }
    const Eigen::Matrix4f& matrix(int node) const { return world(node); }

private:
    std::vector<int> parents_;
    std::vector<Eigen::Matrix4f> locals_;
    std::vector<Eigen::Matrix4f> worlds_;
};

}  // namespace vantorix::bench
