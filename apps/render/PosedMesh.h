#pragma once

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Mesh;
}

namespace vantorix::apps::render {

class SkinPose;

/// A mesh with the faces of @p mesh whose positions stand where @p pose puts them, seen from the
/// node with the matrix @p world. Only positions follow; all other streams are shared. Empty when
/// there are no positions of three components, or @p world cannot be inverted.
boost::shared_ptr<scene::Mesh> posedMesh(scene::Mesh& mesh, const SkinPose& pose,
                                         const Eigen::Matrix4f& world);

}  // namespace vantorix::apps::render
