#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {

/// Nested nodes with random poses, meshes of random triangles, and now and then polygons. Two nodes
/// in three share one of few meshes.
class RandomScene {
public:
    explicit RandomScene(unsigned int seed) : random_(seed) {}

    /// @p nodes nodes below the root of @p scene.
    void fill(RecordedScene& scene, int nodes);

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }
    float between(float low, float high);
    Eigen::Vector3f vector(float extent);

private:
    boost::shared_ptr<scene::Mesh> makeMesh(const std::string& id);

    std::mt19937 random_;
    std::vector<boost::shared_ptr<scene::Mesh>> meshes_;
};

/// A mesh whose positions are reached through VERTEX, without faces.
boost::shared_ptr<scene::Mesh> makePositions(const std::string& id,
                                             const std::vector<float>& positions);
void addTriangles(const boost::shared_ptr<scene::Mesh>& mesh,
                  const std::vector<unsigned int>& indices);
/// @param polygons corner count and first index of each.
void addPolygons(const boost::shared_ptr<scene::Mesh>& mesh,
                 const std::vector<unsigned int>& indices,
                 const std::vector<unsigned int>& polygons);

/// Places @p mesh at @p node and returns the instance.
boost::shared_ptr<scene::InstanceGeometry> place(const boost::shared_ptr<scene::Mesh>& mesh,
                                                 scene::Node& node);

/// Keeps the lines that @p action writes, polygons' ones above all, out of the log of the tests.
void quietly(const std::function<void()>& action);

}  // namespace vantorix::test
