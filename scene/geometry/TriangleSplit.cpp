#include "scene/geometry/TriangleSplit.h"

#include <algorithm>
#include <array>

#include "scene/controller/RefinedInfluences.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::scene {
namespace {

/// Four triangles with the winding of the one that is split.
constexpr std::array<SplitPlaces::Place, 12> splitCorners = {
    SplitPlaces::CORNER_A,  SplitPlaces::MIDDLE_AB, SplitPlaces::MIDDLE_AC, SplitPlaces::MIDDLE_AB,
    SplitPlaces::MIDDLE_BC, SplitPlaces::MIDDLE_AC, SplitPlaces::MIDDLE_AB, SplitPlaces::CORNER_B,
    SplitPlaces::MIDDLE_BC, SplitPlaces::MIDDLE_AC, SplitPlaces::MIDDLE_BC, SplitPlaces::CORNER_C};

template <typename Value>
Value halfWay(const Value& from, const Value& to) {
    return from + (to - from) * 0.5f;
}

/// Opposite normals have no mean direction: theirs is zero.
Eigen::Vector3f middleNormal(const Eigen::Vector3f& from, const Eigen::Vector3f& to) {
    return ((from + to) / 2.0f).normalized();
}

/// @param triangle the vertices of its three corners.
void addInfluences(SplitPlaces::Place place, const unsigned int* triangle,
                   RefinedInfluences& influences) {
    switch (place) {
        case SplitPlaces::CORNER_A:
            return influences.addCorner(triangle[0]);
        case SplitPlaces::MIDDLE_AB:
            return influences.addMidpoint(triangle[0], triangle[1]);
        case SplitPlaces::MIDDLE_AC:
            return influences.addMidpoint(triangle[0], triangle[2]);
        case SplitPlaces::MIDDLE_BC:
            return influences.addMidpoint(triangle[1], triangle[2]);
        case SplitPlaces::CORNER_B:
            return influences.addCorner(triangle[1]);
        default:
            return influences.addCorner(triangle[2]);
    }
}

}  // namespace

TriangleSplit::TriangleSplit(const FaceAssembler& faces, std::size_t count)
    : faces_(faces),
      count_(count),
      positions_("VTX_SUBDIVIDE_POSITION_STREAM", halfWay<Eigen::Vector3f>, count,
                 faces.areKnownDistinct(POSITION, 3) && areComplete(POSITION)) {
    positionPlaces_.reserve(count);
    // Indices only line up with corners when every corner has a value: all triangles or none.
    if (areComplete(NORMAL)) {
        normals_.emplace("VTX_SUBDIVIDE_NORMAL_STREAM", middleNormal, count,
                         faces.areKnownDistinct(NORMAL, 3));
    }
    if (areComplete(TEXCOORD0)) {
        textureCoordinates_.emplace("VTX_SUBDIVIDE_UV_STREAM", halfWay<Eigen::Vector2f>, count,
                                    faces.areKnownDistinct(TEXCOORD0, 2));
    }
}

void TriangleSplit::run(RefinedInfluences* influences, const std::vector<unsigned int>& vertices) {
    // Few enough for the memory next to the processor, and enough for searches side by side.
    constexpr std::size_t blockSize = 128;
    indices_.resize(count_ * splitCorners.size() * recordSize());
    for (std::size_t first = 0; first < count_; first += blockSize) {
        const std::size_t size = std::min(blockSize, count_ - first);
        readBlock(first, size);
        positionPlaces_.addBlock(positions_.cornerNumbers(), positions_.cornerCount());
        store(positions_, positionPlaces_, first, size, 0, [&](std::size_t triangle, auto place) {
            if (influences) addInfluences(place, &vertices[3 * (first + triangle)], *influences);
        });
        std::size_t slot = 1;
        if (normals_) storeBeside(*normals_, normalPlaces_, first, size, slot++);
        if (textureCoordinates_)
            storeBeside(*textureCoordinates_, texturePlaces_, first, size, slot);
    }
    positions_.finish();
    if (normals_) normals_->finish();
    if (textureCoordinates_) textureCoordinates_->finish();
}

void TriangleSplit::readBlock(std::size_t first, std::size_t count) {
    positions_.readBlock(faces_, POSITION, 3 * first, 3 * count);
    if (normals_) readBeside(*normals_, NORMAL, normalPlaces_, first, count);
    if (textureCoordinates_) {
        readBeside(*textureCoordinates_, TEXCOORD0, texturePlaces_, first, count);
    }
}

template <typename Values>
void TriangleSplit::readBeside(Values& values, StreamSemantic semantic, OwnPlaces& places,
                               std::size_t first, std::size_t count) {
    values.readBlock(faces_, semantic, 3 * first, 3 * count);
    // Up to here both went through the same numbers.
    if (!places && values.cornerNumbers() != positions_.cornerNumbers()) {
        places = positionPlaces_;
        places->reserve(count_);
    }
}

template <typename Values>
void TriangleSplit::storeBeside(Values& values, OwnPlaces& places, std::size_t first,
                                std::size_t count, std::size_t slot) {
    if (places) places->addBlock(values.cornerNumbers(), values.cornerCount());
    store(values, places ? *places : positionPlaces_, first, count, slot, [](std::size_t, auto) {});
}

template <typename Values, typename OnNew>
void TriangleSplit::store(Values& values, const SplitPlaces& places, std::size_t first,
                          std::size_t count, std::size_t slot, OnNew onNew) {
    values.storeBlock(places, onNew);
    const std::size_t size = recordSize();
    std::size_t target = first * splitCorners.size() * size + slot;
    for (std::size_t triangle = 0; triangle < count; ++triangle) {
        for (const auto corner : splitCorners) {
            indices_[target] = values.index(places.at(triangle, corner));
            target += size;
        }
    }
}

bool TriangleSplit::areComplete(StreamSemantic semantic) const {
    return count_ > 0 && faces_.haveValues(semantic, 3 * count_);
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
