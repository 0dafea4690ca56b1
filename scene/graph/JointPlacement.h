#pragma once

#include <vector>

#include <Eigen/Core>
#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {

class Node;
class Skin;

/// Gives @p joint the translation that brings its origin to @p position, in world space, or as near
/// as its parent's matrix allows; rotation and scale stay. Sends what Node::setTransformations
/// does, also when the joint is there already.
void placeJoint(Node& joint, const Eigen::Vector3f& position);

/// Writes the inverse bind matrices of the joints that the skin names by their IDs, and resets its
/// bind shape matrix.
void bindSkin(Skin& skin, const std::vector<boost::shared_ptr<Node>>& joints);

}  // namespace vantorix::scene
