#pragma once

#include <functional>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"

namespace vantorix::scene {

using Indices = std::vector<unsigned int>;
using Floats = std::vector<float>;

/// Switches logging off while a test runs that is not about log lines.
struct QuietTest : ::testing::Test {
    QuietTest();
    ~QuietTest() override;
};

boost::shared_ptr<Stream> makeStream(const std::string& name, int stride, const Floats& values);

/// A mesh whose vertices mappings hold a position stream with @p positions, three floats each.
boost::shared_ptr<Mesh> makeMesh(const Floats& positions);

/// A vertex with a position, and a normal where @p normal is given.
boost::shared_ptr<Vertex> makeVertex(const Eigen::Vector3f& position);
boost::shared_ptr<Vertex> makeVertex(const Eigen::Vector3f& position,
                                     const Eigen::Vector3f& normal);

boost::shared_ptr<Triangle> makeTriangle(const Eigen::Vector3f& a, const Eigen::Vector3f& b,
                                         const Eigen::Vector3f& c);

/// The triangle (0,0,0), (1,0,0), (0,1,0).
boost::shared_ptr<Triangle> makeRightTriangle();

Eigen::Vector3f minimumOf(IMeshPrimitive& primitive);
Eigen::Vector3f maximumOf(IMeshPrimitive& primitive);

Floats floatsOf(const boost::shared_ptr<VertexElement>& element);

/// Semantics and bytes of all elements of all vertices, in order.
std::vector<std::vector<std::pair<StreamSemantic, Floats>>> contentsOf(IPrimitive& face);

/// Equal bytes: tells NaN from NaN and -0 from 0.
bool haveSameBytes(const Floats& left, const Floats& right);

std::string outputOf(const std::function<void()>& action);
/// What loggers write to the console.
std::string logOf(const std::function<void()>& action);

}  // namespace vantorix::scene
