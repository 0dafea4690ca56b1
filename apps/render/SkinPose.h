#pragma once

#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class SceneManager;
class Skin;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// Where a skin puts the vertices of its geometry, with the joints as they stand in the scene.
///
/// A joint is the node whose ID stands in the skin's joint stream. Its matrix is world matrix *
/// inverse bind matrix (row by row in its stream) * bind shape matrix; a vertex follows the mean
/// of its joints' matrices by weight. A vertex that no joint moves stays with the node that shows
/// the skin.
class SkinPose {
public:
    /// Upper three rows of an affine matrix.
    using Affine = Eigen::Matrix<float, 3, 4>;

    /// Copies the joints' matrices. @p world is that of the node that shows the skin.
    SkinPose(const scene::SceneManager& scene, boost::shared_ptr<const scene::Skin> skin,
             const Eigen::Matrix4f& world);

    /// From the geometry's frame to the world, for the tuple @p vertex of its positions.
    Affine matrixOf(unsigned int vertex) const;

private:
    boost::shared_ptr<const scene::Skin> skin_;
    Affine rest_;
    std::vector<Affine, Eigen::aligned_allocator<Affine>> joints_;
    std::vector<bool> found_;  ///< Whether the joint is a node of the scene.
    mutable std::vector<int> vertexJoints_;
    mutable std::vector<float> vertexWeights_;
};

}  // namespace vantorix::apps::render
