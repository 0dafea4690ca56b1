// How smooth normals are calculated and stored.

#include <algorithm>

#include <boost/make_shared.hpp>

#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMath.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

namespace vantorix::scene {
namespace {

/// The tuple counter of the position stream, which a caller may have set above all reason.
std::size_t countPositions(const Stream& positions) {
    const auto count = static_cast<std::size_t>(std::max(positions.count, 0));
    return std::min(count, positions.values.size());
}

/// Non-finite where no face has contributed, and where faces cancel each other out.
std::vector<Eigen::Vector3f> normalized(const std::vector<PaddedVector>& sums) {
    std::vector<Eigen::Vector3f> normals(sums.size());
    for (std::size_t i = 0; i < sums.size(); ++i) {
        const auto sum = unpadded(sums[i]);
        normals[i] = sum * (1.0f / sum.norm());
    }
    return normals;
}

/// The records of a primitive.
struct Records {
    const std::vector<unsigned int>& indices;
    std::size_t stride;
    std::size_t positionSlot;
};

/// Adds up the face normals at each of @p count positions. @p positionAt is called with the place
/// of a record.
template <typename PositionAt>
std::vector<PaddedVector> addFaceNormals(const Records& records, std::size_t count,
                                         const PositionAt& positionAt) {
    std::vector<PaddedVector> sums(count, PaddedVector{});
    const std::size_t stride = records.stride;
    const std::size_t faceSize = stride * 3;
    for (std::size_t start = 0; start + faceSize <= records.indices.size(); start += faceSize) {
        const auto first = positionAt(start);
        const auto normal = faceNormal(usableEdge(first, positionAt(start + stride)),
                                       usableEdge(first, positionAt(start + 2 * stride)));
        for (std::size_t record = start; record < start + faceSize; record += stride) {
            const std::size_t position = records.indices[record + records.positionSlot];
            if (position < count) sums[position] += normal;
        }
    }
    return sums;
}

void setValues(Stream& stream, const std::vector<Eigen::Vector3f>& normals) {
    // The stream's count stays as it was.
    static_assert(sizeof(Eigen::Vector3f) == 3 * sizeof(float));
    stream.values.clear();
    if (!normals.empty()) stream.values.append(normals.front().data(), 3 * normals.size());
}

}  // namespace

void TriangleMeshPrimitive::recalculateVertexNormals() {
    const auto mesh = lockMesh();
    const auto* const positions = mesh ? findBySemantic(mesh->getVertices(), POSITION) : nullptr;
    const auto* const vertex = findBySemantic(streamMappings_, VERTEX);
    if (!positions || !positions->stream || !vertex) return;
    const std::size_t slot = listPosition(vertex);
    if (slot >= static_cast<std::size_t>(calculateIndexStreamStride())) return;
    storeNormals(*mesh, slot, calculateNormals(*mesh, slot, countPositions(*positions->stream)));
}

std::size_t TriangleMeshPrimitive::listPosition(const StreamMapping* mapping) const {
    return static_cast<std::size_t>(mapping - streamMappings_.data());
}

TriangleMeshPrimitive::Normals TriangleMeshPrimitive::calculateNormals(const Mesh& mesh,
                                                                       std::size_t positionSlot,
                                                                       std::size_t count) const {
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const FaceAssembler faces(streamMappings_, &mesh, indexStream_, stride);
    const Records records{indexStream_, stride, positionSlot};
    if (const auto positions = faces.plainPositions(positionSlot)) {
        return normalized(addFaceNormals(records, count, [&](std::size_t record) {
            const float* const found = positions->find(records.indices[record + positionSlot]);
            return found ? positions->toVector(found) : Eigen::Vector3f::Zero();
        }));
    }
    return normalized(addFaceNormals(
        records, count, [&faces](std::size_t record) { return faces.position(record); }));
}

void TriangleMeshPrimitive::storeNormals(Mesh& mesh, std::size_t positionSlot,
                                         const Normals& normals) {
    const auto* const own = findBySemantic(streamMappings_, NORMAL);
    if (const auto* const shared = findBySemantic(mesh.getVertices(), NORMAL)) {
        if (shared->stream) setValues(*shared->stream, normals);
    } else if (own) {
        replaceOwnNormals(mesh, positionSlot, listPosition(own), normals);
    } else {
        const auto stream = boost::make_shared<Stream>("VT_Calculated_Normals", 3, false);
        mesh.addStream(stream);
        mesh.addVerticesMapping(StreamMapping(NORMAL, stream, 0));
        setValues(*stream, normals);
    }
}

void TriangleMeshPrimitive::replaceOwnNormals(Mesh& mesh, std::size_t positionSlot,
                                              std::size_t normalSlot, const Normals& normals) {
    const auto old = streamMappings_[normalSlot].stream;
    const auto stream = boost::make_shared<Stream>(old ? old->name : "NORMAL_stream", 3, false);
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    std::vector<int> indices(normals.size(), -1);  // Each position's normal is stored once.
    const bool isReadable = positionSlot < stride;
    for (std::size_t record = 0; isReadable && record + positionSlot < indexStream_.size();
         record += stride) {
        const std::size_t position = indexStream_[record + positionSlot];
        if (position >= normals.size()) continue;
        int& index = indices[position];
        if (index < 0) index = stream->insertValue(3, normals[position].data());
        const std::size_t place = record + normalSlot;
        if (normalSlot >= stride || place >= indexStream_.size()) continue;
        indexStream_[place] = static_cast<unsigned int>(index);
    }
    if (old) mesh.removeStream(old);
    mesh.addStream(stream);
    streamMappings_[normalSlot].stream = stream;
}

}  // namespace vantorix::scene
