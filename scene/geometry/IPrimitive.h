#pragma once

#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Ray;
class Vertex;

/// A face that stands on its own, for reading, transforming and picking.
class VANTORIX_SCENE_EXPORT IPrimitive {
public:
    virtual Eigen::Vector3f getFaceNormal() = 0;
    /// Moves the face: positions become matrix * (x, y, z, 1), without a division by w.
    virtual void applyTransform(const Eigen::Matrix4f& matrix) = 0;
    virtual std::vector<boost::shared_ptr<Vertex>> getVertexArray() = 0;
    /// Overlap with the axis-aligned box between the corners @p minimum and @p maximum.
    virtual bool intersects(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) = 0;
    /// False for an empty pointer.
    virtual bool intersects(boost::shared_ptr<Ray> ray) = 0;
    virtual ~IPrimitive();
};

}  // namespace vantorix::scene
