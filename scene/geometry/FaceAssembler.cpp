#include "scene/geometry/FaceAssembler.h"

#include <algorithm>
#include <limits>
#include <new>

#include "scene/geometry/BlockAllocation.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PackedCorners.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/Triangle.h"

namespace vantorix::scene {
namespace {

constexpr float noFloats = 0.0f;

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
            addInput(mapping.semantic, slot, mapping.stream.get());
        }
    }
}

void FaceAssembler::addVertices(std::size_t slot, const Mesh& mesh) {
    for (const auto& mapping : mesh.getVertices()) {
        if (mapping.semantic == POSITION || isVertexValue(mapping.semantic)) {
            addInput(mapping.semantic, slot, mapping.stream.get());
        }
    }
}

void FaceAssembler::addInput(StreamSemantic semantic, std::size_t slot, const Stream* stream) {
    if (!stream) return;
    const auto size = static_cast<std::size_t>(std::max(stream->stride, 0));
    Input input{semantic, slot, stream->values.data(), size, 0};
    if (size == 0) {
        // Every index leads to a value without floats.
        input.values = &noFloats;
        input.tuples = std::numeric_limits<std::size_t>::max();
    } else {
        input.tuples = stream->values.size() / size;
    }
    if (input.tuples == 0 || size > PackedCorners::mostFloats) return;
    inputs_.push_back(input);
    if (semantic == POSITION) positions_.insert(positions_.begin(), input);
    blockSize_ += 3 * PackedCorners::wordsFor(size) * sizeof(float);
}

boost::shared_ptr<Triangle> FaceAssembler::makeTriangle(std::size_t start) const {
    return makeBlock<Triangle>(blockSize_, [&](void* place, void* trailing) {
        auto* const corners = new (trailing) PackedCorners;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            for (const auto& input : inputs_) {
                const float* const values = find(input, start + corner * stride_);
                if (values) corners->add(corner, input.semantic, values, input.size);
            }
        }
        return new (place) Triangle(*corners);
    });
}

Eigen::Vector3f FaceAssembler::position(std::size_t start) const {
    Eigen::Vector3f position = Eigen::Vector3f::Zero();
    for (const auto& input : positions_) {
        const float* const values = find(input, start);
        if (!values) continue;
        std::copy_n(values, std::min<std::size_t>(input.size, 3), position.data());
        break;
    }
    return position;
}

const float* FaceAssembler::find(const Input& input, std::size_t start) const {
    const std::size_t place = start + input.slot;
    if (place >= indexStream_.size()) return nullptr;
    const std::size_t tuple = indexStream_[place];
    return tuple < input.tuples ? input.values + tuple * input.size : nullptr;
}

}  // namespace vantorix::scene
