#include "tests/geometry/GeometrySupport.h"

#include <cstring>

#include "core_api/logger/Logger.h"

#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {

QuietTest::QuietTest() { core::logger::Logger::active = false; }

QuietTest::~QuietTest() { core::logger::Logger::active = true; }

boost::shared_ptr<Stream> makeStream(const std::string& name, int stride, const Floats& values) {
    const auto stream = boost::make_shared<Stream>(name, stride, false);
    stream->values = values;
    stream->count = stride > 0 ? static_cast<int>(values.size()) / stride : 0;
    return stream;
}

boost::shared_ptr<Mesh> makeMesh(const Floats& positions) {
    const auto mesh = boost::make_shared<Mesh>("mesh", "a mesh");
    const auto stream = makeStream("positions", 3, positions);
    mesh->addStream(stream);
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    return mesh;
}

boost::shared_ptr<Vertex> makeVertex(const Eigen::Vector3f& position) {
    const auto vertex = boost::make_shared<Vertex>();
    vertex->setPosition(position.x(), position.y(), position.z());
    return vertex;
}

boost::shared_ptr<Vertex> makeVertex(const Eigen::Vector3f& position,
                                     const Eigen::Vector3f& normal) {
    const auto vertex = makeVertex(position);
    vertex->setNormal(normal.x(), normal.y(), normal.z());
    return vertex;
}

boost::shared_ptr<Triangle> makeTriangle(const Eigen::Vector3f& a, const Eigen::Vector3f& b,
                                         const Eigen::Vector3f& c) {
    return boost::make_shared<Triangle>(makeVertex(a), makeVertex(b), makeVertex(c));
}

boost::shared_ptr<Triangle> makeRightTriangle() {
    return makeTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
}

Eigen::Vector3f minimumOf(IMeshPrimitive& primitive) {
    const auto corner = primitive.getBVMin();
    return {corner[0], corner[1], corner[2]};
}

Eigen::Vector3f maximumOf(IMeshPrimitive& primitive) {
    const auto corner = primitive.getBVMax();
    return {corner[0], corner[1], corner[2]};
}

Floats floatsOf(const boost::shared_ptr<VertexElement>& element) {
    return element ? Floats(element->values, element->values + element->size) : Floats();
}

std::vector<std::vector<std::pair<StreamSemantic, Floats>>> contentsOf(IPrimitive& face) {
    std::vector<std::vector<std::pair<StreamSemantic, Floats>>> contents;
    for (const auto& vertex : face.getVertexArray()) {
        contents.emplace_back();
        for (const auto& element : vertex->getElements()) {
            contents.back().emplace_back(element->semantic, floatsOf(element));
        }
    }
    return contents;
}

bool haveSameBytes(const Floats& left, const Floats& right) {
    return left.size() == right.size() &&
           (left.empty() ||
            std::memcmp(left.data(), right.data(), left.size() * sizeof(float)) == 0);
}

std::string outputOf(const std::function<void()>& action) {
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

std::string logOf(const std::function<void()>& action) {
    ::testing::internal::CaptureStderr();
    action();
    return ::testing::internal::GetCapturedStderr();
}

}  // namespace vantorix::scene
