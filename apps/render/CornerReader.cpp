#include "apps/render/CornerReader.h"

#include <algorithm>
#include <cmath>

#include <Eigen/Geometry>

#include "apps/render/SkinPose.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::apps::render {
namespace {

/// The mapping's offset where the record has such a slot, else its place in the list.
std::size_t slotOf(const scene::StreamMapping& mapping, std::size_t place, std::size_t length) {
    const auto offset = static_cast<std::size_t>(std::max(mapping.offset, 0));
    return offset < length ? offset : place;
}

bool allFinite(const float* values, std::size_t count) {
    return std::all_of(values, values + count, [](float value) { return std::isfinite(value); });
}

std::uint8_t byteOf(float value) {
    if (!(value > 0.0f)) return 0;
    return static_cast<std::uint8_t>(std::lround(std::min(value, 1.0f) * 255.0f));
}

}  // namespace

CornerReader::CornerReader(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive,
                           scene::StreamSemantic texCoords, const SkinPose* pose)
    : indices_(primitive.getIndexStream()),
      recordLength_(static_cast<std::size_t>(std::max(primitive.getIndexStreamStride(), 0))),
      texCoords_(texCoords),
      pose_(pose) {
    const auto& mappings = primitive.getStreamMapping();
    for (std::size_t i = 0; i < mappings.size(); ++i) {
        const std::size_t slot = slotOf(mappings[i], i, recordLength_);
        if (slot >= recordLength_) continue;
        if (mappings[i].semantic == scene::VERTEX) {
            addVertices(mesh, slot);
        } else {
            addOwn(mappings[i], slot);
        }
    }
}

void CornerReader::addVertices(const scene::Mesh& mesh, std::size_t slot) {
    for (const auto& mapping : mesh.getVertices()) addOwn(mapping, slot);
}

void CornerReader::addOwn(const scene::StreamMapping& mapping, std::size_t slot) {
    Source* const source = sourceFor(mapping.semantic);
    if (!source || source->values || !mapping.stream || mapping.stream->stride <= 0) return;
    const scene::Stream& stream = *mapping.stream;
    *source = {stream.values.data(), stream.values.size(), static_cast<std::size_t>(stream.stride),
               slot};
}

CornerReader::Source* CornerReader::sourceFor(scene::StreamSemantic semantic) {
    if (semantic == scene::POSITION) return &position_;
    if (semantic == scene::NORMAL) return &normal_;
    if (semantic == scene::COLOR) return &colour_;
    return semantic == texCoords_ ? &texCoord_ : nullptr;
}

const float* CornerReader::find(const Source& source, std::size_t start) const {
    if (!source.values || start + source.slot >= indices_.size()) return nullptr;
    const std::size_t tuple = indices_[start + source.slot];
    return tuple < source.size / source.stride ? source.values + tuple * source.stride : nullptr;
}

bool CornerReader::read(std::size_t start, Corner& corner) const {
    corner = {{0, 0, 0}, {0, 0, 0}, {0, 0}, {255, 255, 255, 255}};
    const float* const position = find(position_, start);
    const std::size_t components = std::min<std::size_t>(position_.stride, 3);
    if (!position || !allFinite(position, components)) return false;
    std::copy_n(position, components, corner.position);
    readNormal(start, corner);
    readTexCoord(start, corner);
    readColour(start, corner);
    return !pose_ || applyPose(start, corner);
}

/// Normals turn with the cofactors: right for stretched joints, too, and for mirrored ones.
bool CornerReader::applyPose(std::size_t start, Corner& corner) const {
    using Vector = Eigen::Map<Eigen::Vector3f>;
    const auto matrix = pose_->matrixOf(indices_[start + position_.slot]);
    Vector position(corner.position), normal(corner.normal);
    position = (matrix * position.homogeneous()).eval();
    const auto axis = [&matrix](Eigen::Index i) -> Eigen::Vector3f { return matrix.col(i); };
    const Eigen::Vector3f turned = axis(1).cross(axis(2)) * normal.x() +
                                   axis(2).cross(axis(0)) * normal.y() +
                                   axis(0).cross(axis(1)) * normal.z();
    const Eigen::Vector3f unit = turned.stableNormalized();
    normal = unit.allFinite() ? unit : Eigen::Vector3f::Zero();
    return position.allFinite();
}

void CornerReader::readNormal(std::size_t start, Corner& corner) const {
    const float* const normal = find(normal_, start);
    if (!normal || normal_.stride < 3 || !allFinite(normal, 3)) return;
    const float length = std::hypot(normal[0], normal[1], normal[2]);
    if (!(length > 0.0f) || !std::isfinite(length)) return;
    std::transform(normal, normal + 3, corner.normal, [length](float n) { return n / length; });
}

void CornerReader::readTexCoord(std::size_t start, Corner& corner) const {
    const float* const texCoord = find(texCoord_, start);
    const std::size_t components = std::min<std::size_t>(texCoord_.stride, 2);
    if (texCoord && allFinite(texCoord, components)) {
        std::copy_n(texCoord, components, corner.texCoord);
    }
}

void CornerReader::readColour(std::size_t start, Corner& corner) const {
    const float* const colour = find(colour_, start);
    if (!colour || colour_.stride < 3) return;
    std::transform(colour, colour + std::min<std::size_t>(colour_.stride, 4), corner.colour,
                   byteOf);
}

}  // namespace vantorix::apps::render
