#pragma once

#include <string>
#include <vector>

#include <Eigen/Geometry>

namespace vantorix::bench {

/// tree8: balanced, eight children each. flat: all under one root. chain: chains of 1000 nodes
/// under one root.
enum Shape { TREE8, FLAT, CHAIN };

const char* nameOf(Shape shape);

/// Where a node stands below its parent, in the words of every library.
struct Pose {
    /// Turned about x, then y, then z, then moved.
    Pose(const Eigen::Vector3f& itsPosition, const Eigen::Vector3f& itsDegrees);

    Eigen::Vector3f position;
    Eigen::Vector3f degrees;
    Eigen::Quaternionf rotation;
    Eigen::Matrix4f rotationMatrix;
    Eigen::Matrix4f matrix;
};

/// What a tree shall be, for every library the same. Nodes are numbered depth first, each before
/// its children, as a file is read; node 0 is the root.
struct TreePlan {
    TreePlan(Shape shape, int count);

    int size() const { return static_cast<int>(parents.size()); }
    /// The nodes from below the root to @p node, or from the root itself where that is its parent.
    std::vector<int> pathFromNearRoot(int node) const;

    std::vector<int> parents;
    std::vector<std::string> ids;
    std::vector<std::string> names;
    std::vector<Pose> poses;
};

enum Question { LAST, MISSING, RANDOM };

/// IDs to look up: the last node's over and over, some that no node has, or all in random order.
std::vector<std::string> askedIDs(const TreePlan& plan, Question question);

/// World matrices, one product per node, when every node is moved by @p offset from its pose.
std::vector<Eigen::Matrix4f> worldMatrices(const TreePlan& plan, const Eigen::Vector3f& offset);

/// The greatest difference of an element, relative to the greater ones of the matrix.
float differenceOf(const Eigen::Matrix4f& left, const Eigen::Matrix4f& right);

}  // namespace vantorix::bench
