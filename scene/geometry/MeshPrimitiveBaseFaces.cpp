// How faces are stored: values into streams, their indices into records.

#include <algorithm>

#include "scene/geometry/BoxRules.h"
#include "scene/geometry/FaceLayout.h"
#include "scene/geometry/FaceRows.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {
namespace {

Eigen::Vector3f toSample(const float* values, std::size_t size) {
    requireSampleSize(size);
    Eigen::Vector3f sample = Eigen::Vector3f::Zero();
    std::copy_n(values, size, sample.data());
    return sample;
}

Eigen::Vector3f toSample(const VertexValue& position) {
    return toSample(position.values, static_cast<std::size_t>(std::max(position.size, 0)));
}

/// Vertices often lie far apart in memory: all of them are asked for at once, from end to end.
template <typename Corners>
void fetchVertices(const Corners& corners) {
    for (const auto& corner : corners) {
        if (!corner) continue;
        __builtin_prefetch(corner.get());
        __builtin_prefetch(reinterpret_cast<const std::byte*>(corner.get() + 1) - 1);
    }
}

using FaceIndices = boost::container::small_vector<int, 16>;

}  // namespace

bool MeshPrimitiveBase::appendFace(const Corners& corners, bool deduplicate) {
    fetchVertices(corners);
    FaceRows rows;
    const bool isUsual = rows.read(corners);
    if (isUsual && appendUsual(rows)) return true;
    const auto mesh = lockMesh();  // Stays meanwhile, if it is still there.
    Inputs inputs;
    for (const auto& corner : corners) {
        if (!corner || !findInputs(*corner, inputs)) return false;
    }
    // All offsets must be fixed before the first record: they determine its length.
    for (const auto& corner : corners) {
        if (!prepareStreams(*corner, deduplicate, inputs)) return false;
    }
    if (isUsual && appendUsual(rows)) return true;
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
    for (const auto& value : VertexValues::of(corner)) {
        if (value.size > 0 && !value.values) return false;
        if (findInput(inputs, value.semantic)) continue;
        const auto* const mapping = findMapping(value.semantic);
        auto* const stream = mapping ? mapping->stream.get() : nullptr;
        if (!stream && !canAddStreamFor(value.semantic)) return false;
        inputs.push_back({value.semantic, stream, Input::unknownSlot});
    }
    return true;
}

// Not when a mapping without a stream comes before that of a new stream, which nobody would find.
bool MeshPrimitiveBase::canAddStreamFor(StreamSemantic semantic) const {
    if (findBySemantic(streamMappings_, semantic)) return false;
    const auto* const mesh = peekMesh();
    return mesh && (semantic != POSITION || mesh->getVertices().empty());
}

bool MeshPrimitiveBase::prepareStreams(const Vertex& corner, bool deduplicate, Inputs& inputs) {
    for (const auto& value : VertexValues::of(corner)) {
        auto* const input = findInput(inputs, value.semantic);
        if (!input->stream) {
            prepareStream(value.semantic, value.size, deduplicate);
            input->stream = getStreamBySemantic(value.semantic).get();
        }
        if (input->stream && input->stream->stride != value.size) return false;
    }
    return true;
}

int MeshPrimitiveBase::findSlot(StreamSemantic semantic, const Stream& stream) {
    // Streams that keep duplicates share the VERTEX slot, where the last element written wins.
    return getStreamMappingOffsetForSemantic(stream.allowDuplicates ? VERTEX : semantic);
}

bool MeshPrimitiveBase::appendUsual(const FaceRows& rows) {
    const auto* const layout = findLayout(rows.shape());
    if (layout) appendRows(*layout, rows);
    return layout;
}

const FaceLayout* MeshPrimitiveBase::findLayout(std::uint64_t shape) {
    const auto* const mesh = peekMesh();
    if (layout_ && layout_->isFor(shape, streamMappings_, mesh)) return layout_.get();
    // Without it a slot may be missing, which is logged when its value's turn comes.
    if (!findBySemantic(streamMappings_, VERTEX)) return nullptr;
    const auto stride = static_cast<std::size_t>(calculateIndexStreamStride());
    auto layout = std::make_unique<FaceLayout>(shape, streamMappings_, mesh, stride);
    for (auto rest = shape; rest != 0; rest >>= VertexValues::bitsPerValue) {
        const auto semantic = VertexValues::semanticIn(rest);
        const auto* const mapping = findMapping(semantic);
        auto* const stream = mapping ? mapping->stream.get() : nullptr;
        const int slot = stream ? findSlot(semantic, *stream) : -1;
        if (slot < 0 || static_cast<std::size_t>(slot) >= stride) return nullptr;
        const bool isPosition = semantic == POSITION;
        if (!layout->add(*stream, static_cast<std::size_t>(slot), isPosition)) return nullptr;
    }
    layout_ = std::move(layout);
    return layout_.get();
}

void MeshPrimitiveBase::appendRows(const FaceLayout& layout, const FaceRows& rows) {
    const std::size_t count = rows.count();
    FaceIndices keys(count, boost::container::default_init);
    FaceIndices tuples(count, boost::container::default_init);
    for (const auto& column : layout.columns()) {
        if (column.isPosition()) growBox(rows, column.start(), column.size());
    }
    const std::size_t first = indexStream_.size();
    const std::size_t stride = layout.stride();
    indexStream_.resize(first + count * stride);
    const auto insert = [&](const FaceColumn& column, int* indices, const int* equalKeys) {
        const bool hasNew = column.insert(rows, indices, equalKeys);
        unsigned int* index = indexStream_.data() + first + column.slot();
        for (std::size_t i = 0; i < count; ++i, index += stride) {
            *index = static_cast<unsigned int>(indices[i]);
        }
        return hasNew;
    };
    const auto& columns = layout.columns();
    const bool hasNew = insert(columns.front(), keys.data(), nullptr);
    // Corners with equal values in the first column often have equal ones in the others.
    const int* const equalKeys = columns.front().allowsDuplicates() ? nullptr : keys.data();
    for (std::size_t i = 1; hasNew && equalKeys && i < columns.size(); ++i) {
        columns[i].fetch(rows, equalKeys);
    }
    for (std::size_t i = 1; i < columns.size(); ++i) insert(columns[i], tuples.data(), equalKeys);
}

void MeshPrimitiveBase::growBox(const FaceRows& rows, std::size_t place, std::size_t size) {
    Eigen::Vector3f low = bvMin_, high = bvMax_;
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const float* const value = rows[i] + place;
        const Eigen::Vector3f sample =
            size == 3 ? Eigen::Vector3f(value[0], value[1], value[2]) : toSample(value, size);
        extend<LowerBound>(low, sample);
        extend<UpperBound>(high, sample);
    }
    bvMin_ = low;
    bvMax_ = high;
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
        growBox(toSample(positions + i * size, size));
    }
}

bool MeshPrimitiveBase::appendRecord(const Vertex& corner, std::size_t stride, Inputs& inputs) {
    IndexRecord record;
    for (std::size_t slot = 0; slot < stride; ++slot) record.push_back(0u);
    for (const auto& value : VertexValues::of(corner)) {
        if (value.semantic == POSITION) growBox(toSample(value));
        auto* const input = findInput(inputs, value.semantic);
        if (!input || !input->stream || !storeValue(value, *input, record)) return false;
    }
    indexStream_.insert(indexStream_.end(), record.begin(), record.end());
    return true;
}

bool MeshPrimitiveBase::storeValue(const VertexValue& value, Input& input, IndexRecord& record) {
    const int tuple = input.stream->insertValue(value.size, value.values);
    if (input.slot == Input::unknownSlot) input.slot = findSlot(value.semantic, *input.stream);
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
