#pragma once

#include <Eigen/Core>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// A line with an origin and a direction, which is kept as given and not normalised.
class VANTORIX_SCENE_EXPORT Ray {
public:
    /// Origin and direction (0, 0, 0).
    Ray();
    Ray(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction);
    Ray(const Ray& other);
    Ray& operator=(const Ray& other);
    virtual ~Ray();

    Eigen::Vector3f getOrigin() const;
    Eigen::Vector3f getDirection() const;

private:
    Eigen::Vector3f origin_;
    Eigen::Vector3f direction_;
};

}  // namespace vantorix::scene
