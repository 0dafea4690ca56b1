// How triangles are subdivided, and the skin of a mesh with them.

#include <optional>

#include "scene/controller/Controller.h"
#include "scene/controller/RefinedInfluences.h"
#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/TriangleSplit.h"

namespace vantorix::scene {

void TriangleMeshPrimitive::subDivide(boost::shared_ptr<Controller> controller) {
    const auto mesh = lockMesh();
    if (!mesh) return;
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const FaceAssembler faces(streamMappings_, mesh.get(), indexStream_, stride);
    TriangleSplit split(faces, getCount());
    const auto skin = controller ? controller->getSkin() : boost::shared_ptr<Skin>();
    std::optional<RefinedInfluences> influences;
    if (skin) influences.emplace(*skin);
    split.run(influences ? &*influences : nullptr, vertexIndices());
    auto mappings = split.makeMappings(mesh->getVerticesID());

    // Everything is prepared: only now do mesh, skin and records change, all of them or none.
    const auto formerStreams = mesh->getStreams();
    const auto formerVertices = mesh->getVertices();
    try {
        split.storeStreams(*mesh);
        if (skin) influences->storeIn(*skin);
    } catch (...) {
        mesh->setStreams(formerStreams);  // Their room is still there.
        mesh->setVertices(formerVertices);
        throw;
    }
    streamMappings_.swap(mappings);
    indexStream_.swap(split.indices());
}

std::vector<unsigned int> TriangleMeshPrimitive::vertexIndices() const {
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const auto* const vertex = findBySemantic(streamMappings_, VERTEX);
    const std::size_t slot = vertex ? listPosition(vertex) : stride;
    std::vector<unsigned int> indices;
    if (stride == 0) return indices;
    indices.reserve(indexStream_.size() / stride);
    for (std::size_t start = 0; start + stride <= indexStream_.size(); start += stride) {
        indices.push_back(slot < stride ? indexStream_[start + slot] : noVertex);
    }
    return indices;
}

}  // namespace vantorix::scene
