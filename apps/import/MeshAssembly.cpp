#include "apps/import/MeshAssembly.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "apps/import/NormalGenerator.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

namespace vantorix::apps::import {

using namespace scene;

namespace {

constexpr std::size_t normalSlot = 1;

}  // namespace

MeshAssembly::MeshAssembly(boost::shared_ptr<Mesh> mesh)
    : mesh_(mesh),
      vertexPlaceholder_(boost::make_shared<Stream>(mesh->getVerticesID(), 3, false)) {}

void MeshAssembly::add(const ModelMesh& source, const std::string& symbol) {
    if (source.triangles.empty()) return;
    const auto attributes = attributesOf(source);
    std::vector<std::vector<unsigned int>> slots;
    slots.reserve(attributes.size());
    for (const auto& attribute : attributes) slots.push_back(store(attribute));
    if (source.normals.empty()) slots[normalSlot] = slots[0];  // Until they are generated.

    auto& records = groupFor(symbol, attributes).records;
    records.reserve(records.size() + source.triangles.size() * slots.size());
    for (const auto vertex : source.triangles) {
        for (const auto& slot : slots) records.push_back(slot[vertex]);
    }
}

void MeshAssembly::finish() {
    generateNormals();
    for (auto& group : groups_) {
        const auto primitive =
            boost::make_shared<TriangleMeshPrimitive>(mesh_, group.mappings, group.records);
        primitive->setMaterialSymbol(group.symbol);
        mesh_->addPrimitive(primitive);
        group.records = {};
    }
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
                                            const std::vector<Attribute>& attributes) {
    Layout layout;
    for (const auto& attribute : attributes) {
        layout.emplace_back(attribute.semantic, attribute.components);
    }
    const bool lacksNormals = attributes[normalSlot].values->empty();
    const auto [entry, added] =
        groupNumbers_.try_emplace({symbol, lacksNormals, layout}, groups_.size());
    if (!added) return groups_[entry->second];

    // Primitives read a slot by the mapping's place in the list, so the two have to agree.
    std::vector<StreamMapping> mappings{{VERTEX, vertexPlaceholder_, 0}};
    for (std::size_t i = 1; i < layout.size(); ++i) {
        mappings.emplace_back(layout[i].first, streams_.at(layout[i]), static_cast<int>(i));
    }
    groups_.push_back({symbol, mappings, lacksNormals, {}});
    return groups_.back();
}

Stream& MeshAssembly::streamFor(const Attribute& attribute) {
    auto& stream = streams_[{attribute.semantic, attribute.components}];
    if (stream) return *stream;
    std::string name = attribute.semantic == POSITION
                           ? "position_stream"
                           : streamSemanticToString(attribute.semantic) + "_stream";
    if (mesh_->getStream(name)) name += std::to_string(attribute.components);
    stream = boost::make_shared<Stream>(name, attribute.components, false);
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

void MeshAssembly::generateNormals() {
    std::vector<unsigned int> corners;
    for (const auto& group : groups_) {
        if (!group.lacksNormals) continue;
        const std::size_t stride = group.mappings.size();
        for (std::size_t i = 0; i < group.records.size(); i += stride) {
            corners.push_back(group.records[i]);
        }
    }
    if (corners.empty()) return;
    const auto& positions = std::as_const(*streams_.at({POSITION, 3})).values;
    const auto tuples = NormalGenerator(positions, corners).storeIn(*streams_.at({NORMAL, 3}));

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
