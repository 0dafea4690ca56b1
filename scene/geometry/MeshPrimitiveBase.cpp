#include "scene/geometry/MeshPrimitiveBase.h"

#include <algorithm>
#include <bitset>
#include <limits>
#include <utility>

#include <boost/make_shared.hpp>

#include "scene/geometry/BoxRules.h"
#include "scene/geometry/FaceLayout.h"
#include "scene/geometry/LogWriters.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TupleReader.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {
namespace {

core::utils::Vector<float, 3> toCore(const Eigen::Vector3f& vector) {
    return core::utils::Vector<float, 3>(vector.data());
}

const Stream* findPositions(const Mesh* mesh) {
    if (!mesh) return nullptr;
    for (const auto& mapping : mesh->getVertices()) {
        if (mapping.semantic == POSITION && mapping.stream) return mapping.stream.get();
    }
    return nullptr;
}

/// Slots are read by list position, as everywhere, and not by offset; those outside the record are
/// skipped.
std::vector<std::size_t> findVertexSlots(const std::vector<StreamMapping>& mappings,
                                         std::size_t stride) {
    std::vector<std::size_t> slots;
    for (std::size_t i = 0; i < std::min(mappings.size(), stride); ++i) {
        if (mappings[i].semantic == VERTEX) slots.push_back(i);
    }
    return slots;
}

int countDistinctOffsets(const std::vector<StreamMapping>& mappings) {
    std::vector<int> offsets;
    offsets.reserve(mappings.size());
    for (const auto& mapping : mappings) offsets.push_back(mapping.offset);
    std::sort(offsets.begin(), offsets.end());
    return static_cast<int>(std::unique(offsets.begin(), offsets.end()) - offsets.begin());
}

}  // namespace

MeshPrimitiveBase::MeshPrimitiveBase(boost::shared_ptr<Mesh> mesh,
                                     const std::vector<StreamMapping>& mappings)
    : MeshPrimitiveBase(std::move(mesh), mappings, {}) {}

MeshPrimitiveBase::MeshPrimitiveBase(boost::shared_ptr<Mesh> mesh,
                                     const std::vector<StreamMapping>& mappings,
                                     const std::vector<unsigned int>& indexStream)
    : streamMappings_(mappings),
      indexStream_(indexStream),
      type_(TRIANGLES),
      keptMesh_(std::move(mesh)),
      mesh_(keptMesh_),
      meshAddress_(keptMesh_.get()),
      materialSymbol_("vantorix_material"),
      bvMin_(Eigen::Vector3f::Constant(std::numeric_limits<float>::max())),
      bvMax_(Eigen::Vector3f::Constant(std::numeric_limits<float>::lowest())) {
    initLogger();
    calculateMinMax();
}

MeshPrimitiveBase::~MeshPrimitiveBase() = default;

void MeshPrimitiveBase::initLogger() {
    addFileWriter(logger_, "SceneManager.log");
    addConsoleWriter(logger_);
}

const std::vector<unsigned int>& MeshPrimitiveBase::getIndexStream() const { return indexStream_; }

int MeshPrimitiveBase::getIndexStreamStride() { return calculateIndexStreamStride(); }

const std::vector<StreamMapping>& MeshPrimitiveBase::getStreamMapping() const {
    return streamMappings_;
}

IMeshPrimitive::Type MeshPrimitiveBase::getType() { return type_; }

core::utils::Vector<float, 3> MeshPrimitiveBase::getBVMin() { return toCore(bvMin_); }

core::utils::Vector<float, 3> MeshPrimitiveBase::getBVMax() { return toCore(bvMax_); }

Eigen::Vector3f MeshPrimitiveBase::getBVCenter() { return bvMin_ + (bvMax_ - bvMin_) * 0.5f; }

void MeshPrimitiveBase::setMaterialSymbol(const std::string& symbol) { materialSymbol_ = symbol; }

std::string MeshPrimitiveBase::getMaterialSymbol() { return materialSymbol_; }

boost::shared_ptr<Mesh> MeshPrimitiveBase::lockMesh() const { return mesh_.lock(); }

Mesh* MeshPrimitiveBase::peekMesh() const { return mesh_.expired() ? nullptr : meshAddress_; }

boost::shared_ptr<Mesh> MeshPrimitiveBase::releaseMesh(const Mesh& mesh) {
    if (keptMesh_.get() != &mesh) return {};
    return std::exchange(keptMesh_, nullptr);
}

int MeshPrimitiveBase::calculateIndexStreamStride() const {
    // Of offsets that are few and small, as they usually are, there is one bit each.
    std::bitset<64> met;
    for (const auto& mapping : streamMappings_) {
        const auto offset = static_cast<unsigned int>(mapping.offset);
        if (offset >= met.size()) return countDistinctOffsets(streamMappings_);
        met[offset] = true;
    }
    return static_cast<int>(met.count());
}

void MeshPrimitiveBase::calculateMinMax() {
    const auto* const positions = findPositions(peekMesh());
    if (!positions) {
        logger_ << "[WARN] could not calculate min/max for MeshPrimitive. No Position semantic.";
        return;
    }
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    const TupleReader reader(*positions);
    const auto slots = findVertexSlots(streamMappings_, stride);
    for (std::size_t record = 0; !slots.empty() && record < indexStream_.size(); record += stride) {
        for (const std::size_t slot : slots) {
            if (record + slot >= indexStream_.size()) break;
            const float* const tuple = reader.find(indexStream_[record + slot]);
            if (!tuple) continue;
            requireSampleSize(reader.size());
            growBox(reader.toVector(tuple));
        }
    }
}

void MeshPrimitiveBase::growBox(const Eigen::Vector3f& sample) {
    extend<LowerBound>(bvMin_, sample);
    extend<UpperBound>(bvMax_, sample);
}

boost::shared_ptr<Stream> MeshPrimitiveBase::getStreamBySemantic(StreamSemantic semantic) const {
    const auto* const mapping = findMapping(semantic);
    return mapping ? mapping->stream : boost::shared_ptr<Stream>();
}

int MeshPrimitiveBase::getStreamMappingIndexForSemantic(StreamSemantic semantic) {
    const auto* const mapping = findSlotMapping(semantic);
    return mapping ? static_cast<int>(mapping - streamMappings_.data()) : -1;
}

int MeshPrimitiveBase::getStreamMappingOffsetForSemantic(StreamSemantic semantic) {
    const auto* const mapping = findSlotMapping(semantic);
    return mapping ? mapping->offset : -1;
}

const StreamMapping* MeshPrimitiveBase::findMapping(StreamSemantic semantic) const {
    const auto* const own = findBySemantic(streamMappings_, semantic);
    return own ? own : findSharedMapping(semantic);
}

const StreamMapping* MeshPrimitiveBase::findSharedMapping(StreamSemantic semantic) const {
    const auto* const mesh = peekMesh();
    return mesh ? findBySemantic(mesh->getVertices(), semantic) : nullptr;
}

const StreamMapping* MeshPrimitiveBase::findSlotMapping(StreamSemantic semantic) {
    const StreamMapping* vertexMapping = nullptr;
    for (const auto& mapping : streamMappings_) {
        if (mapping.semantic == semantic) return &mapping;
        if (mapping.semantic == VERTEX) vertexMapping = &mapping;
    }
    if (!vertexMapping) {
        // The text names the triangles for every kind of primitive; the leading blank belongs to
        // it.
        logger_ << " [ERROR] Found a TriangleMeshPrimitive with no VERTEX stream mapping.";
        return nullptr;
    }
    return findSharedMapping(semantic) ? vertexMapping : nullptr;
}

boost::shared_ptr<Stream> MeshPrimitiveBase::validateStreamStateForVertexElement(
    boost::shared_ptr<VertexElement> element, bool deduplicate) {
    if (!element || !peekMesh()) return {};
    return prepareStream(element->semantic, element->size, deduplicate);
}

boost::shared_ptr<Stream> MeshPrimitiveBase::prepareStream(StreamSemantic semantic, int size,
                                                           bool deduplicate) {
    if (auto present = getStreamBySemantic(semantic)) return present;
    if (semantic == POSITION) {
        addPositionStreams(size, deduplicate);
        return {};  // Callers look the position stream up again.
    }
    const auto stream = boost::make_shared<Stream>(streamSemanticToString(semantic) + "_stream",
                                                   size, !deduplicate);
    const int nextSlot = getIndexStreamStride();
    streamMappings_.reserve(streamMappings_.size() + 1);  // No stream without its mapping.
    peekMesh()->addStream(stream);
    streamMappings_.emplace_back(semantic, stream, nextSlot);
    return stream;
}

void MeshPrimitiveBase::addPositionStreams(int size, bool deduplicate) {
    auto& mesh = *peekMesh();
    // The way to the positions first: where they are found, nobody asks for it any more.
    if (!getStreamBySemantic(VERTEX)) {
        // Only carries the indirection to the vertices mappings, so the mesh does not list it.
        const auto placeholder =
            boost::make_shared<Stream>(mesh.getVerticesID(), size, !deduplicate);
        streamMappings_.emplace_back(VERTEX, placeholder, 0);
    }
    if (!mesh.getVertices().empty()) return;
    const auto stream = boost::make_shared<Stream>("position_stream", size, !deduplicate);
    mesh.addStream(stream);
    try {
        mesh.addVerticesMapping(StreamMapping(POSITION, stream, 0));
    } catch (...) {
        mesh.removeStream(stream);
        throw;
    }
}

}  // namespace vantorix::scene
