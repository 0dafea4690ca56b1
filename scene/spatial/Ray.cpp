#include "scene/spatial/Ray.h"

namespace vantorix::scene {

Ray::Ray() : Ray(Eigen::Vector3f::Zero(), Eigen::Vector3f::Zero()) {}

Ray::Ray(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction)
    : origin_(origin), direction_(direction) {}

Ray::Ray(const Ray& other) = default;

Ray& Ray::operator=(const Ray& other) = default;

Ray::~Ray() = default;

Eigen::Vector3f Ray::getOrigin() const { return origin_; }

Eigen::Vector3f Ray::getDirection() const { return direction_; }

}  // namespace vantorix::scene
