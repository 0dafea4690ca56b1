#include "apps/import/MeshAssembly.h"

#include <cstring>
#include <utility>

#include <boost/make_shared.hpp>

#include "apps/import/NormalGenerator.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

namespace vantorix::apps::import {

using namespace scene;

namespace {

constexpr std::size_t normalSlot = 1;

}  // namespace

MeshAssembly::MeshAssembly(boost::shared_ptr<Mesh> mesh, bool isSkinned)
    : mesh_(mesh),
      isSkinned_(isSkinned),
      vertexPlaceholder_(boost::make_shared<Stream>(mesh->getVerticesID(), 3, false)) {}

void MeshAssembly::add(const ModelMesh& source, const std::string& symbol) {
    if (source.countFaces() == 0) return;
    const auto attributes = attributesOf(source);
    Slots slots;
    slots.reserve(attributes.size());
    for (const auto& attribute : attributes) {
        const bool followsBones = isSkinned_ && attribute.semantic == POSITION;
        slots.push_back(followsBones ? storePositions(source) : store(attribute));
    }
    if (source.normals.empty()) slots[normalSlot] = slots[0];  // Until they are generated.

    if (!source.triangles.empty()) {
        addCorners(source.triangles, slots, groupFor(symbol, attributes, false));
    }
    if (source.polygons.empty()) return;
    auto& group = groupFor(symbol, attributes, true);
    std::size_t start = group.records.size();
    for (const auto size : source.polygonSizes) {
        group.polygons.push_back(size);
        group.polygons.push_back(static_cast<unsigned int>(start));
        start += size * slots.size();
    }
    addCorners(source.polygons, slots, group);
}

void MeshAssembly::addCorners(const std::vector<std::uint32_t>& vertices, const Slots& slots,
                              Group& group) {
    auto& records = group.records;
    records.reserve(records.size() + vertices.size() * slots.size());
    for (const auto vertex : vertices) {
        for (const auto& slot : slots) records.push_back(slot[vertex]);
    }
}

void MeshAssembly::finish() {
    generateNormals();
    for (auto& group : groups_) {
        makePrimitive(group);
        group.records = {};
    }
}

void MeshAssembly::makePrimitive(const Group& group) {
    boost::shared_ptr<MeshPrimitiveBase> primitive;
    if (group.isPolygonal) {
        primitive = boost::make_shared<PolygonMeshPrimitive>(mesh_, group.mappings, group.records,
                                                             group.polygons);
    } else {
        primitive = boost::make_shared<TriangleMeshPrimitive>(mesh_, group.mappings, group.records);
    }
    primitive->setMaterialSymbol(group.symbol);
    mesh_->addPrimitive(primitive);
}

std::vector<MeshAssembly::Attribute> MeshAssembly::attributesOf(const ModelMesh& source) {
    std::vector<Attribute> attributes{{POSITION, 3, &source.positions}};
    attributes.push_back({NORMAL, 3, &source.normals});
    for (std::size_t i = 0; i < source.texCoords.size(); ++i) {
        const auto& set = source.texCoords[i];
        if (set.values.empty()) continue;
        attributes.push_back({static_cast<StreamSemantic>(TEXCOORD0 + static_cast<int>(i)),
                              static_cast<int>(set.components), &set.values});
    }
    if (!source.colors.empty()) attributes.push_back({COLOR, 4, &source.colors});
    return attributes;
}

MeshAssembly::Group& MeshAssembly::groupFor(const std::string& symbol,
                                            const std::vector<Attribute>& attributes,
                                            bool isPolygonal) {
    Layout layout;
    for (const auto& attribute : attributes) {
        layout.emplace_back(attribute.semantic, attribute.components);
    }
    const bool lacksNormals = attributes[normalSlot].values->empty();
    const auto [entry, added] =
        groupNumbers_.try_emplace({symbol, lacksNormals, isPolygonal, layout}, groups_.size());
    if (!added) return groups_[entry->second];

    // Primitives read a slot by the mapping's place in the list, so the two have to agree.
    std::vector<StreamMapping> mappings{{VERTEX, vertexPlaceholder_, 0}};
    for (std::size_t i = 1; i < layout.size(); ++i) {
        mappings.emplace_back(layout[i].first, streams_.at(layout[i]), static_cast<int>(i));
    }
    groups_.push_back({symbol, mappings, lacksNormals, isPolygonal, {}, {}});
    return groups_.back();
}

Stream& MeshAssembly::streamFor(const Attribute& attribute) {
    auto& stream = streams_[{attribute.semantic, attribute.components}];
    if (stream) return *stream;
    std::string name = attribute.semantic == POSITION
                           ? "position_stream"
                           : streamSemanticToString(attribute.semantic) + "_stream";
    if (mesh_->getStream(name)) name += std::to_string(attribute.components);
    const bool repeats = isSkinned_ && attribute.semantic == POSITION;
    stream = boost::make_shared<Stream>(name, attribute.components, repeats);
    mesh_->addStream(stream);
    if (attribute.semantic == POSITION) {
        mesh_->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    }
    return *stream;
}

/// The tuple of each vertex in the attribute's stream.
std::vector<unsigned int> MeshAssembly::store(const Attribute& attribute) {
    Stream& stream = streamFor(attribute);
    const auto& values = *attribute.values;
    const auto components = static_cast<std::size_t>(attribute.components);
    std::vector<unsigned int> tuples(values.size() / components);
    for (std::size_t i = 0; i < tuples.size(); ++i) {
        tuples[i] = static_cast<unsigned int>(
            stream.insertValue(attribute.components, &values[i * components]));
    }
    return tuples;
}

/// As store(), but positions that follow different bones, or with different weights, stay apart.
std::vector<unsigned int> MeshAssembly::storePositions(const ModelMesh& source) {
    Stream& stream = streamFor({POSITION, 3, &source.positions});
    const auto lists = skin_.listsOf(source);
    std::vector<unsigned int> tuples;
    tuples.reserve(lists.size());
    for (std::size_t vertex = 0; vertex < lists.size(); ++vertex) {
        const float* const position = &source.positions[vertex * 3];
        PositionKey key{0, 0, 0, lists[vertex]};
        std::memcpy(key.data(), position, 3 * sizeof(float));
        const auto [place, added] =
            skinnedPositions_.try_emplace(key, static_cast<unsigned int>(skinnedPositions_.size()));
        if (added) {
            stream.insertValue(3, position);
            skin_.addVertex(lists[vertex]);
        }
        tuples.push_back(place->second);
    }
    return tuples;
}

void MeshAssembly::generateNormals() {
    std::vector<unsigned int> corners;
    std::vector<unsigned int> sizes;
    for (const auto& group : groups_) {
        if (!group.lacksNormals) continue;
        const std::size_t stride = group.mappings.size();
        for (std::size_t i = 0; i < group.records.size(); i += stride) {
            corners.push_back(group.records[i]);
        }
        if (!group.isPolygonal) sizes.resize(sizes.size() + group.records.size() / stride / 3, 3);
        for (std::size_t i = 0; i < group.polygons.size(); i += 2) {
            sizes.push_back(group.polygons[i]);
        }
    }
    if (corners.empty()) return;
    const auto& positions = std::as_const(*streams_.at({POSITION, 3})).values;
    const auto tuples =
        NormalGenerator(positions, corners, sizes).storeIn(*streams_.at({NORMAL, 3}));

    auto tuple = tuples.begin();
    for (auto& group : groups_) {
        if (!group.lacksNormals) continue;
        const std::size_t stride = group.mappings.size();
        for (std::size_t i = normalSlot; i < group.records.size(); i += stride) {
            group.records[i] = *tuple++;
        }
    }
}

}  // namespace vantorix::apps::import
