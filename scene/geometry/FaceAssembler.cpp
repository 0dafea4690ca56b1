#include "scene/geometry/FaceAssembler.h"

#include <algorithm>
#include <new>

#include "scene/geometry/BlockAllocation.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PackedCorners.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/Triangle.h"

namespace vantorix::scene {
namespace {

bool isVertexValue(StreamSemantic semantic) { return semantic >= COLOR && semantic <= TANGENT; }

}  // namespace

FaceAssembler::FaceAssembler(const std::vector<StreamMapping>& mappings, const Mesh* mesh,
                             const std::vector<unsigned int>& indexStream, std::size_t stride)
    : indexStream_(indexStream), stride_(stride), blockSize_(sizeof(PackedCorners)) {
    // A list position outside the record reads nothing.
    for (std::size_t slot = 0; slot < std::min(mappings.size(), stride); ++slot) {
        const auto& mapping = mappings[slot];
        if (mapping.semantic == VERTEX) {
            if (mesh) addVertices(slot, *mesh);
        } else if (isVertexValue(mapping.semantic)) {
            // Not POSITION: positions only come from the mesh's vertices mappings.
            addInput(mapping, slot);
        }
    }
}

void FaceAssembler::addVertices(std::size_t slot, const Mesh& mesh) {
    for (const auto& mapping : mesh.getVertices()) {
        if (mapping.semantic == POSITION || isVertexValue(mapping.semantic)) {
            addInput(mapping, slot);
        }
    }
}

void FaceAssembler::addInput(const StreamMapping& mapping, std::size_t slot) {
    if (!mapping.stream) return;
    const Input input{mapping.semantic, slot, TupleReader(*mapping.stream),
                      mapping.stream->isKnownDistinct()};
    const std::size_t size = input.tuples.size();
    if (input.tuples.count() == 0 || size > PackedCorners::mostFloats) return;
    inputs_.push_back(input);
    if (mapping.semantic == POSITION) positions_.insert(positions_.begin(), input);
    blockSize_ += 3 * PackedCorners::wordsFor(size) * sizeof(float);
}

boost::shared_ptr<Triangle> FaceAssembler::makeTriangle(std::size_t start) const {
    return makeBlock<Triangle>(blockSize_, [&](void* place, void* trailing) {
        auto* const corners = new (trailing) PackedCorners;
        const auto first = pack(0, start, *corners);
        const auto second = pack(1, start + stride_, *corners);
        const auto third = pack(2, start + 2 * stride_, *corners);
        return new (place) Triangle(*corners, {first, second, third});
    });
}

FaceAssembler::Value FaceAssembler::value(StreamSemantic semantic, std::size_t start) const {
    for (std::size_t i = inputs_.size(); i-- > 0;) {  // Last first: the last one counts.
        const auto& input = inputs_[i];
        const float* const floats = input.semantic == semantic ? find(input, start) : nullptr;
        if (!floats) continue;
        // Without a stride all tuples are the same.
        const std::size_t tuple = input.tuples.size() == 0 ? 0 : indexStream_[start + input.slot];
        return {i, tuple, input.tuples.toVector(floats)};
    }
    return {inputs_.size(), 0, Eigen::Vector3f::Zero()};
}

const FaceAssembler::Input* FaceAssembler::findLast(StreamSemantic semantic) const {
    for (std::size_t i = inputs_.size(); i-- > 0;) {
        if (inputs_[i].semantic == semantic) return &inputs_[i];
    }
    return nullptr;
}

bool FaceAssembler::haveValues(StreamSemantic semantic, std::size_t count) const {
    const auto* const likely = findLast(semantic);
    for (std::size_t start = 0; likely && count > 0; --count, start += stride_) {
        if (!find(*likely, start) && !hasValue(semantic, start)) return false;
    }
    return likely || count == 0;
}

std::optional<TupleReader> FaceAssembler::plainPositions(std::size_t slot) const {
    const bool isPlain = positions_.size() == 1 && positions_.front().slot == slot &&
                         positions_.front().tuples.size() == 3;
    return isPlain ? std::optional(positions_.front().tuples) : std::nullopt;
}

bool FaceAssembler::areKnownDistinct(StreamSemantic semantic, std::size_t size) const {
    const auto* const last = findLast(semantic);
    const auto isOther = [&](const Input& input) {
        return input.semantic == semantic && &input != last;
    };
    return last && last->areKnownDistinct && last->tuples.size() <= size &&
           std::none_of(inputs_.begin(), inputs_.end(), isOther);
}

void FaceAssembler::readValues(StreamSemantic semantic, std::size_t first, std::size_t count,
                               std::vector<Value>& values) const {
    values.resize(count);
    const auto* const likely = findLast(semantic);
    const bool isLikely = likely && likely->tuples.size() > 0;
    std::size_t start = first * stride_;
    for (auto& read : values) {
        if (const float* const floats = isLikely ? find(*likely, start) : nullptr) {
            read.input = static_cast<std::size_t>(likely - inputs_.data());
            read.tuple = indexStream_[start + likely->slot];
            read.floats = likely->tuples.toVector(floats);
        } else {
            read = value(semantic, start);
        }
        start += stride_;
    }
}

Eigen::Vector3f FaceAssembler::pack(std::size_t corner, std::size_t start,
                                    PackedCorners& corners) const {
    Eigen::Vector3f position = Eigen::Vector3f::Zero();
    for (const auto& input : inputs_) {
        const float* const tuple = find(input, start);
        if (!tuple) continue;
        corners.add(corner, input.semantic, tuple, input.tuples.size());
        if (input.semantic == POSITION) position = input.tuples.toVector(tuple);
    }
    return position;
}

}  // namespace vantorix::scene
