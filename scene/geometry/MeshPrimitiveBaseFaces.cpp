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

/// Whether both have elements of the same semantics and sizes, with values, in the same order.
bool isAlike(const Vertex& left, const Vertex& right) {
    const auto& elements = left.getElements();
    const auto& others = right.getElements();
    if (elements.size() != others.size()) return false;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const auto& element = *elements[i];
        const auto& other = *others[i];
        if (element.semantic != other.semantic || element.size != other.size) return false;
        if (!element.values) return false;
    }
    return true;
}

/// Few floats are copied faster one by one than by a call.
float* copyFloats(const float* from, std::size_t count, float* to) {
    if (count > 4) return std::copy_n(from, count, to);
    to[0] = from[0];
    if (count > 1) to[1] = from[1];
    if (count > 2) to[2] = from[2];
    if (count > 3) to[3] = from[3];
    return to + count;
}

/// Faces often lie far apart in memory: all that a face refers to is asked for at once.
template <typename Corners>
void fetchElements(const Corners& corners) {
    for (const auto& corner : corners) __builtin_prefetch(corner.get());
    for (const auto& corner : corners) {
        if (!corner) continue;
        for (const auto& element : corner->getElements()) __builtin_prefetch(element.get());
    }
}

}  // namespace

bool MeshPrimitiveBase::appendFace(const Corners& corners, bool deduplicate) {
    fetchElements(corners);
    if (appendUsual(corners)) return true;
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
    if (appendUsual(corners)) return true;
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

int MeshPrimitiveBase::findSlot(StreamSemantic semantic, const Stream& stream) {
    // Streams that keep duplicates share the VERTEX slot, where the last element written wins.
    return getStreamMappingOffsetForSemantic(stream.allowDuplicates ? VERTEX : semantic);
}

// All corners have the same semantics in the same order, and their streams are there.
bool MeshPrimitiveBase::appendUsual(const Corners& corners) {
    if (corners.count == 0 || !*corners.first) return false;
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    Columns columns;
    if (!findColumns(**corners.first, stride, columns)) return false;
    for (const auto& corner : corners) {
        if (!corner || !isAlike(*corner, **corners.first)) return false;
    }
    std::size_t floats = 0;
    for (const auto& column : columns) floats += column.size();
    boost::container::small_vector<float, 64> values(floats * corners.count,
                                                     boost::container::default_init);
    float* next = values.data();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].values = next;
        for (const auto& corner : corners) {
            next = copyFloats(corner->getElements()[i]->values, columns[i].size(), next);
        }
    }
    appendRecords(columns, corners.count, stride);
    return true;
}

bool MeshPrimitiveBase::findColumns(const Vertex& corner, std::size_t stride, Columns& columns) {
    // Without it a slot may be missing, which is logged when its element's turn comes.
    if (!findBySemantic(streamMappings_, VERTEX)) return false;
    for (const auto& element : corner.getElements()) {
        const auto* const mapping = findMapping(element->semantic);
        auto* const stream = mapping ? mapping->stream.get() : nullptr;
        if (!stream || element->size <= 0 || element->size != stream->stride) return false;
        const bool isPosition = element->semantic == POSITION;
        if (isPosition && element->size > 3) return false;
        const int slot = findSlot(element->semantic, *stream);
        if (slot < 0 || static_cast<std::size_t>(slot) >= stride) return false;
        columns.push_back({stream, static_cast<std::size_t>(slot), isPosition, nullptr});
    }
    return areIndependent(columns);
}

std::size_t MeshPrimitiveBase::Column::size() const {
    return static_cast<std::size_t>(stream->stride);
}

bool MeshPrimitiveBase::areIndependent(const Columns& columns) {
    for (const auto& column : columns) {
        for (const auto* other = &column + 1; other != columns.data() + columns.size(); ++other) {
            if (column.stream == other->stream) return false;
        }
    }
    return true;
}

void MeshPrimitiveBase::appendRecords(const Columns& columns, std::size_t count,
                                      std::size_t stride) {
    boost::container::small_vector<int, 16> keys(count);
    boost::container::small_vector<int, 16> tuples(count);
    const std::size_t first = indexStream_.size();
    for (const auto& column : columns) {
        if (column.isPosition)
            growBox(column.values, static_cast<std::size_t>(column.stream->stride), count);
    }
    indexStream_.resize(first + count * stride);
    // Corners with equal values in the first column often have equal ones in the others.
    const bool hasKeys = !columns.empty() && !columns.front().stream->allowDuplicates;
    for (const auto& column : columns) {
        const bool isFirst = &column == columns.data();
        int* const indices = isFirst ? keys.data() : tuples.data();
        column.stream->insertEach(column.values, count, indices,
                                  hasKeys && !isFirst ? keys.data() : nullptr);
        for (std::size_t i = 0; i < count; ++i) {
            indexStream_[first + i * stride + column.slot] = static_cast<unsigned int>(indices[i]);
        }
    }
}

void MeshPrimitiveBase::growBox(const float* positions, std::size_t size, std::size_t count) {
    if (size == 3) {
        extend<LowerBound>(bvMin_, positions, count);
        extend<UpperBound>(bvMax_, positions, count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        Eigen::Vector3f sample = Eigen::Vector3f::Zero();
        std::copy_n(positions + i * size, size, sample.data());
        growBox(sample);
    }
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
    if (input.slot == Input::unknownSlot) input.slot = findSlot(element.semantic, *input.stream);
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
