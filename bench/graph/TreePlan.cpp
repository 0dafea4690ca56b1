#include "bench/graph/TreePlan.h"

#include <algorithm>
#include <random>

namespace vantorix::bench {
namespace {

constexpr int chainLength = 1000;

int childrenPerNode(Shape shape, int count) { return shape == TREE8 ? 8 : count; }

// Of nodes that are numbered level by level.
int parentOf(int node, Shape shape, int count) {
    if (shape == CHAIN) return (node - 1) % chainLength == 0 ? 0 : node - 1;
    return (node - 1) / childrenPerNode(shape, count);
}

std::vector<int> depthFirstParents(Shape shape, int count) {
    std::vector<std::vector<int>> children(static_cast<std::size_t>(count));
    for (int node = count - 1; node > 0; --node) {
        children[static_cast<std::size_t>(parentOf(node, shape, count))].push_back(node);
    }
    struct Pending {
        int node;
        int parent;
    };
    std::vector<Pending> pending{{0, -1}};
    std::vector<int> parents;
    while (!pending.empty()) {
        const auto next = pending.back();
        pending.pop_back();
        const int number = static_cast<int>(parents.size());
        parents.push_back(next.parent);
        for (const int child : children[static_cast<std::size_t>(next.node)]) {
            pending.push_back({child, number});
        }
    }
    return parents;
}

float radians(float degrees) { return degrees * 3.14159265f / 180.0f; }

}  // namespace

const char* nameOf(Shape shape) {
    const char* const names[] = {"tree8", "flat", "chain"};
    return names[shape];
}

Pose::Pose(const Eigen::Vector3f& itsPosition, const Eigen::Vector3f& itsDegrees)
    : position(itsPosition),
      degrees(itsDegrees),
      rotation(Eigen::AngleAxisf(radians(degrees.z()), Eigen::Vector3f::UnitZ()) *
               Eigen::AngleAxisf(radians(degrees.y()), Eigen::Vector3f::UnitY()) *
               Eigen::AngleAxisf(radians(degrees.x()), Eigen::Vector3f::UnitX())),
      rotationMatrix((Eigen::Translation3f::Identity() * rotation).matrix()),
      matrix((Eigen::Translation3f(position) * rotation).matrix()) {}

TreePlan::TreePlan(Shape shape, int count) : parents(depthFirstParents(shape, count)) {
    unsigned int seed = 1;
    const auto next = [&seed] {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
    };
    for (int node = 0; node < count; ++node) {
        ids.push_back("n" + std::to_string(node));
        names.push_back("name" + std::to_string(node));
        poses.emplace_back(Eigen::Vector3f{next(), next(), next()},
                           Eigen::Vector3f{90 * next(), 80 * next(), 90 * next()});
    }
}

std::vector<int> TreePlan::pathFromNearRoot(int node) const {
    std::vector<int> path;
    for (; node > 0; node = parents[static_cast<std::size_t>(node)]) path.push_back(node);
    if (path.size() == 1) path.push_back(0);
    std::reverse(path.begin(), path.end());
    return path;
}

std::vector<std::string> askedIDs(const TreePlan& plan, Question question) {
    if (question == LAST) return std::vector<std::string>(1000, plan.ids.back());
    auto ids = plan.ids;
    if (question == MISSING) {
        for (auto& id : ids) id += "x";
    }
    std::shuffle(ids.begin(), ids.end(), std::minstd_rand());
    return ids;
}

std::vector<Eigen::Matrix4f> worldMatrices(const TreePlan& plan, const Eigen::Vector3f& offset) {
    std::vector<Eigen::Matrix4f> worlds;
    for (std::size_t node = 0; node < plan.parents.size(); ++node) {
        Eigen::Matrix4f local = plan.poses[node].matrix;
        local.topRightCorner<3, 1>() += offset;
        if (node > 0) local = worlds[static_cast<std::size_t>(plan.parents[node])] * local;
        worlds.push_back(local);
    }
    return worlds;
}

float differenceOf(const Eigen::Matrix4f& left, const Eigen::Matrix4f& right) {
    return (left - right).cwiseAbs().maxCoeff() / std::max(1.0f, right.cwiseAbs().maxCoeff());
}

}  // namespace vantorix::bench
