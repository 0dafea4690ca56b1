// How faces are stored: values into streams, their indices into records.

#include <algorithm>

#include "scene/geometry/BoxRules.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

namespace vantorix::scene {
namespace {

Eigen::Vector3f toSample(const VertexElement& position) {
    const auto size = static_cast<std::size_t>(std::max(position.size, 0));
    requireSampleSize(size);
    Eigen::Vector3f sample = Eigen::Vector3f::Zero();
    std::copy_n(position.values, size, sample.data());
    return sample;
}

}  // namespace

bool MeshPrimitiveBase::appendFace(const Corners& corners, bool deduplicate) {
    const auto mesh = lockMesh();
    if (!mesh) return false;
    Inputs inputs;
    for (const auto& corner : corners) {
        if (!corner || !findInputs(*corner, inputs)) return false;
    }
    // All offsets must be fixed before the first record: they determine its length.
    for (const auto& corner : corners) {
        if (!prepareStreams(*corner, deduplicate, inputs)) return false;
    }
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    for (const auto& corner : corners) {
        if (!appendRecord(*corner, stride, inputs)) return false;  // No rollback: others stay.
    }
    return true;
}

MeshPrimitiveBase::Input* MeshPrimitiveBase::findInput(Inputs& inputs, StreamSemantic semantic) {
    for (auto& input : inputs) {
        if (input.semantic == semantic) return &input;
    }
    return nullptr;
}

bool MeshPrimitiveBase::findInputs(const Vertex& corner, Inputs& inputs) const {
    for (const auto& element : corner.getElements()) {
        if (element->size > 0 && !element->values) return false;
        if (findInput(inputs, element->semantic)) continue;
        const auto* const mapping = findMapping(element->semantic);
        auto* const stream = mapping ? mapping->stream.get() : nullptr;
        if (!stream && !canAddStreamFor(element->semantic)) return false;
        inputs.push_back({element->semantic, stream, Input::unknownSlot});
    }
    return true;
}

// Not when a mapping without a stream comes before that of a new stream, which nobody would find.
bool MeshPrimitiveBase::canAddStreamFor(StreamSemantic semantic) const {
    if (findBySemantic(streamMappings_, semantic)) return false;
    return semantic != POSITION || peekMesh()->getVertices().empty();
}

bool MeshPrimitiveBase::prepareStreams(const Vertex& corner, bool deduplicate, Inputs& inputs) {
    for (const auto& element : corner.getElements()) {
        auto* const input = findInput(inputs, element->semantic);
        if (!input->stream) {
            validateStreamStateForVertexElement(element, deduplicate);
            input->stream = getStreamBySemantic(element->semantic).get();
        }
        if (input->stream && input->stream->stride != element->size) return false;
    }
    return true;
}

bool MeshPrimitiveBase::appendRecord(const Vertex& corner, std::size_t stride, Inputs& inputs) {
    IndexRecord record;
    for (std::size_t slot = 0; slot < stride; ++slot) record.push_back(0u);
    for (const auto& element : corner.getElements()) {
        if (element->semantic == POSITION) growBox(toSample(*element));
        auto* const input = findInput(inputs, element->semantic);
        if (!input || !input->stream || !storeElement(*element, *input, record)) return false;
    }
    indexStream_.insert(indexStream_.end(), record.begin(), record.end());
    return true;
}

bool MeshPrimitiveBase::storeElement(const VertexElement& element, Input& input,
                                     IndexRecord& record) {
    const int tuple = input.stream->insertValue(element.size, element.values);
    if (input.slot == Input::unknownSlot) {
        // Streams that keep duplicates share the VERTEX slot, where the last element written wins.
        input.slot = getStreamMappingOffsetForSemantic(
            input.stream->allowDuplicates ? VERTEX : element.semantic);
    }
    if (input.slot < 0 || static_cast<std::size_t>(input.slot) >= record.size()) {
        // The leading blank belongs to the text.
        logger_ << " [ERROR] Invalid stream mapping index for this vertex semantic.";
        return false;
    }
    if (tuple < 0) return false;
    record[static_cast<std::size_t>(input.slot)] = static_cast<unsigned int>(tuple);
    return true;
}

}  // namespace vantorix::scene
