#include "scene/geometry/TriangleMeshPrimitive.h"

#include <iostream>
#include <utility>

#include <boost/make_shared.hpp>

#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Triangle.h"

namespace vantorix::scene {

TriangleMeshPrimitive::TriangleMeshPrimitive(boost::shared_ptr<Mesh> mesh,
                                             const std::vector<StreamMapping>& mappings)
    : MeshPrimitiveBase(std::move(mesh), mappings) {
    type_ = TRIANGLES;
}

TriangleMeshPrimitive::TriangleMeshPrimitive(boost::shared_ptr<Mesh> mesh,
                                             const std::vector<StreamMapping>& mappings,
                                             const std::vector<unsigned int>& indexStream)
    : MeshPrimitiveBase(std::move(mesh), mappings, indexStream) {
    type_ = TRIANGLES;
}

TriangleMeshPrimitive::~TriangleMeshPrimitive() = default;

bool TriangleMeshPrimitive::addTriangle(boost::shared_ptr<Triangle> triangle, bool deduplicate) {
    return triangle && appendFace(triangle->getVertexArray(), deduplicate);
}

unsigned int TriangleMeshPrimitive::getCount() {
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    return stride == 0 ? 0 : static_cast<unsigned int>(indexStream_.size() / stride / 3);
}

boost::shared_ptr<Triangle> TriangleMeshPrimitive::getTriangleAt(unsigned int index) {
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const std::size_t start = index * stride * 3;
    if (stride == 0 || start >= indexStream_.size()) return {};
    const auto mesh = lockMesh();
    return FaceAssembler(streamMappings_, mesh.get(), indexStream_, stride).makeTriangle(start);
}

boost::shared_ptr<IPrimitive> TriangleMeshPrimitive::getPrimitiveAt(unsigned int index) {
    return getTriangleAt(index);
}

std::vector<boost::shared_ptr<IPrimitive>> TriangleMeshPrimitive::getPrimitives() {
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const auto mesh = lockMesh();
    const FaceAssembler assembler(streamMappings_, mesh.get(), indexStream_, stride);
    const std::size_t count = getCount();
    std::vector<boost::shared_ptr<IPrimitive>> triangles;
    triangles.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        triangles.push_back(assembler.makeTriangle(i * stride * 3));
    }
    return triangles;
}

boost::shared_ptr<IMeshPrimitive> TriangleMeshPrimitive::clone(boost::shared_ptr<Mesh> newMesh) {
    // Material symbol and box are those of a new primitive, on purpose.
    return boost::make_shared<TriangleMeshPrimitive>(std::move(newMesh), streamMappings_,
                                                     indexStream_);
}

void TriangleMeshPrimitive::print() {
    std::cout << "Implement me TriangleMeshPrimitive::print()\n";
}

}  // namespace vantorix::scene
