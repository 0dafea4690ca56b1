#pragma once

#include <utility>
#include <vector>

#include <Eigen/Core>
#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::scene {

class IGeometry;
class Node;

/// World-space box around everything that a sub-tree shows, (0,0,0)-(0,0,0) when it shows nothing.
class NodeBounds {
public:
    explicit NodeBounds(const Node& top);

    const Eigen::Vector3f& min() const { return min_; }
    const Eigen::Vector3f& max() const { return max_; }

private:
    void placeGeometriesOf(const Node& node);
    void addBox(const Eigen::Matrix4f& world, const Eigen::Vector3f& low,
                const Eigen::Vector3f& high);
    void addPoint(const Eigen::Vector3f& point);

    using PlacedGeometry = std::pair<Eigen::Matrix4f, boost::shared_ptr<IGeometry>>;
    std::vector<PlacedGeometry> placed_;  ///< With the world matrix of the node that shows it.
    Eigen::Vector3f min_ = Eigen::Vector3f::Zero();
    Eigen::Vector3f max_ = Eigen::Vector3f::Zero();
    bool empty_ = true;
};

}  // namespace vantorix::scene
