#pragma once

#include <map>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Animation;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::test {

/// Plays an animation the slow way, from the public interfaces alone: searches every node, element
/// and key at every call and multiplies whole matrices.
class NaivePlayback {
public:
    struct Pose {
        Eigen::Matrix4f translation = Eigen::Matrix4f::Identity();
        Eigen::Matrix4f rotation = Eigen::Matrix4f::Identity();
        Eigen::Matrix4f scale = Eigen::Matrix4f::Identity();
    };
    using NodePointer = boost::shared_ptr<scene::Node>;
    using Poses = std::map<NodePointer, Pose>;

    explicit NaivePlayback(scene::SceneManager& scene) : scene_(scene) {}

    /// Remembers the products of untargeted elements as they are now.
    void setAnimation(boost::shared_ptr<scene::Animation> animation);

    /// The local matrix of every node that a channel names.
    std::map<NodePointer, Eigen::Matrix4f> localMatrices(float time) const;

private:
    void findTargets(const scene::Animation& animation,
                     std::map<NodePointer, std::vector<std::string>>& targets) const;
    void play(const scene::Animation& animation, float time, Poses& poses) const;
    Eigen::Matrix4f localMatrix(const NodePointer& node, const Pose& pose) const;

    scene::SceneManager& scene_;
    boost::shared_ptr<scene::Animation> animation_;
    std::map<NodePointer, Eigen::Matrix4f> bases_;
};

}  // namespace vantorix::test
