#include "scene/geometry/TriangleSplit.h"

#include <algorithm>
#include <array>

#include "scene/controller/RefinedInfluences.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::scene {
namespace {

using SplitPositions = RefinedValues<3>;

/// Four triangles with the winding of the one that is split.
constexpr std::array<SplitPositions::Place, 12> splitCorners = {
    SplitPositions::CORNER_A,  SplitPositions::MIDDLE_AB, SplitPositions::MIDDLE_AC,
    SplitPositions::MIDDLE_AB, SplitPositions::MIDDLE_BC, SplitPositions::MIDDLE_AC,
    SplitPositions::MIDDLE_AB, SplitPositions::CORNER_B,  SplitPositions::MIDDLE_BC,
    SplitPositions::MIDDLE_AC, SplitPositions::MIDDLE_BC, SplitPositions::CORNER_C};

template <typename Value>
Value halfWay(const Value& from, const Value& to) {
    return from + (to - from) * 0.5f;
}

/// Opposite normals have no mean direction: theirs is zero.
Eigen::Vector3f middleNormal(const Eigen::Vector3f& from, const Eigen::Vector3f& to) {
    return ((from + to) / 2.0f).normalized();
}

/// @param triangle the vertices of its three corners.
void addInfluences(SplitPositions::Place place, const unsigned int* triangle,
                   RefinedInfluences& influences) {
    switch (place) {
        case SplitPositions::CORNER_A:
            return influences.addCorner(triangle[0]);
        case SplitPositions::MIDDLE_AB:
            return influences.addMidpoint(triangle[0], triangle[1]);
        case SplitPositions::MIDDLE_AC:
            return influences.addMidpoint(triangle[0], triangle[2]);
        case SplitPositions::MIDDLE_BC:
            return influences.addMidpoint(triangle[1], triangle[2]);
        case SplitPositions::CORNER_B:
            return influences.addCorner(triangle[1]);
        default:
            return influences.addCorner(triangle[2]);
    }
}

}  // namespace

TriangleSplit::TriangleSplit(const FaceAssembler& faces, std::size_t stride, std::size_t count)
    : faces_(faces),
      stride_(stride),
      count_(count),
      positions_("VTX_SUBDIVIDE_POSITION_STREAM", halfWay<Eigen::Vector3f>, count) {
    // Indices only line up with corners when every corner has a value: all triangles or none.
    if (areComplete(NORMAL)) normals_.emplace("VTX_SUBDIVIDE_NORMAL_STREAM", middleNormal, count);
    if (areComplete(TEXCOORD0)) {
        textureCoordinates_.emplace("VTX_SUBDIVIDE_UV_STREAM", halfWay<Eigen::Vector2f>, count);
    }
}

void TriangleSplit::run(RefinedInfluences* influences, const std::vector<unsigned int>& vertices) {
    // Few enough for the memory next to the processor, and enough for searches side by side.
    constexpr std::size_t blockSize = 128;
    indices_.resize(count_ * splitCorners.size() * recordSize());
    const auto ignore = [](std::size_t, auto) {};
    for (Block block{0, 0}; block.first < count_; block.first += blockSize) {
        block.count = std::min(blockSize, count_ - block.first);
        split(positions_, POSITION, block, 0, [&](std::size_t triangle, auto place) {
            if (influences)
                addInfluences(place, &vertices[3 * (block.first + triangle)], *influences);
        });
        std::size_t slot = 1;
        if (normals_) split(*normals_, NORMAL, block, slot++, ignore);
        if (textureCoordinates_) split(*textureCoordinates_, TEXCOORD0, block, slot, ignore);
    }
    positions_.finish();
    if (normals_) normals_->finish();
    if (textureCoordinates_) textureCoordinates_->finish();
}

template <typename Values, typename OnNew>
void TriangleSplit::split(Values& values, StreamSemantic semantic, Block block, std::size_t slot,
                          OnNew onNew) {
    faces_.readValues(semantic, 3 * block.first, 3 * block.count, corners_);
    values.addBlock(corners_, onNew);
    const std::size_t size = recordSize();
    std::size_t place = block.first * splitCorners.size() * size + slot;
    for (std::size_t triangle = 0; triangle < block.count; ++triangle) {
        for (const auto corner : splitCorners) {
            indices_[place] = values.index(triangle, static_cast<typename Values::Place>(corner));
            place += size;
        }
    }
}

bool TriangleSplit::areComplete(StreamSemantic semantic) const {
    for (std::size_t corner = 0; corner < 3 * count_; ++corner) {
        if (!faces_.hasValue(semantic, corner * stride_)) return false;
    }
    return count_ > 0;
}

std::size_t TriangleSplit::recordSize() const {
    return std::size_t{1} + (normals_ ? 1 : 0) + (textureCoordinates_ ? 1 : 0);
}

std::vector<StreamMapping> TriangleSplit::makeMappings(const std::string& verticesID) const {
    std::vector<StreamMapping> mappings;
    // Without floats: the stream only stands for the mesh's vertices mappings.
    mappings.emplace_back(VERTEX, boost::make_shared<Stream>(verticesID, 0, false), 0);
    if (normals_) mappings.emplace_back(NORMAL, normals_->stream(), 1);
    // Offset 2 also where there are no normals: records are read by list position.
    if (textureCoordinates_) mappings.emplace_back(TEXCOORD0, textureCoordinates_->stream(), 2);
    return mappings;
}

void TriangleSplit::storeStreams(Mesh& mesh) const {
    mesh.clearStreams();
    mesh.clearVertices();
    mesh.addStream(positions_.stream());
    mesh.addVerticesMapping(StreamMapping(POSITION, positions_.stream(), 0));
    if (normals_) mesh.addStream(normals_->stream());
    if (textureCoordinates_) mesh.addStream(textureCoordinates_->stream());
}

}  // namespace vantorix::scene
