// How faces are stored: values into streams, their indices into records.

#include "scene/geometry/BoxRules.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {
namespace {

/// Streams that keep duplicates share the VERTEX slot, where the last element written wins.
StreamSemantic slotSemantic(const VertexElement& element, const Stream& stream) {
    return stream.allowDuplicates ? VERTEX : element.semantic;
}

}  // namespace

bool MeshPrimitiveBase::appendFace(const Corners& corners, bool deduplicate) {
    const auto mesh = lockMesh();
    if (!mesh) return false;
    // All offsets must be fixed before the first record: they determine its length.
    for (const auto& corner : corners) {
        if (!corner || !prepareStreams(*corner, deduplicate)) return false;
    }
    for (const auto& corner : corners) {
        if (!appendRecord(*corner)) return false;  // No rollback: earlier corners stay.
    }
    return true;
}

bool MeshPrimitiveBase::prepareStreams(const Vertex& corner, bool deduplicate) {
    for (const auto& element : corner.getElements()) {
        if (element->size > 0 && !element->values) return false;
        const auto* const mapping = findMapping(element->semantic);
        const auto stream =
            mapping && mapping->stream ? mapping->stream : addStreamFor(*element, deduplicate);
        if (stream && stream->stride != element->size) return false;
    }
    return true;
}

bool MeshPrimitiveBase::appendRecord(const Vertex& corner) {
    IndexRecord record(static_cast<std::size_t>(calculateIndexStreamStride()), 0u);
    for (const auto& element : corner.getElements()) {
        if (!storeElement(*element, record)) return false;
    }
    indexStream_.insert(indexStream_.end(), record.begin(), record.end());
    return true;
}

bool MeshPrimitiveBase::storeElement(const VertexElement& element, IndexRecord& record) {
    if (element.semantic == POSITION) growBox(element);
    const auto* const mapping = findMapping(element.semantic);
    if (!mapping || !mapping->stream) return false;
    Stream& stream = *mapping->stream;
    const int tuple = stream.insertValue(element.size, element.values);

    const int slot = getStreamMappingOffsetForSemantic(slotSemantic(element, stream));
    if (slot < 0 || static_cast<std::size_t>(slot) >= record.size()) {
        // The leading blank belongs to the text.
        logger_ << " [ERROR] Invalid stream mapping index for this vertex semantic.";
        return false;
    }
    if (tuple < 0) return false;
    record[static_cast<std::size_t>(slot)] = static_cast<unsigned int>(tuple);
    return true;
}

void MeshPrimitiveBase::growBox(const VertexElement& position) {
    const auto sample = makeSample(position.values, position.size);
    lower(bvMin_, sample);
    raise(bvMax_, sample);
}

}  // namespace vantorix::scene
