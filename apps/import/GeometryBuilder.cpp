#include "apps/import/GeometryBuilder.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "apps/import/MeshAssembly.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::apps::import {
namespace {

/// Components of the attributes besides positions: meshes that agree fit into one primitive.
using AttributeKey = std::vector<std::uint32_t>;

AttributeKey keyOf(const ModelMesh& mesh) {
    AttributeKey key{!mesh.normals.empty(), !mesh.colors.empty()};
    for (const auto& set : mesh.texCoords) key.push_back(set.values.empty() ? 0 : set.components);
    return key;
}

}  // namespace

GeometryBuilder::GeometryBuilder(const ModelDocument& document,
                                 const std::vector<std::string>& materialIds,
                                 boost::shared_ptr<scene::GeometryManager> library, IdRegistry& ids,
                                 ControllerBuilder& controllers)
    : document_(document),
      materialIds_(materialIds),
      library_(library),
      ids_(ids),
      controllers_(controllers) {
    for (const auto& id : library->getIDs()) ids_.reserve(id);
}

const std::vector<BuiltGeometry>& GeometryBuilder::geometriesFor(const Meshes& meshes) {
    const auto [entry, added] = built_.try_emplace(meshes);
    if (added) entry->second = build(meshes);
    return entry->second;
}

std::vector<BuiltGeometry> GeometryBuilder::build(const Meshes& meshes) {
    const auto parts = partsOf(meshes);
    if (parts.empty()) return {};
    const std::string& name = document_.meshes[meshes.front()].name;
    const std::string id = ids_.take(name);
    if (parts.size() == 1) return {buildPart(id, name, parts[0])};
    std::vector<BuiltGeometry> built;
    for (const auto& part : parts) {
        const auto& symbol = materialIds_[document_.meshes[part.front()].material];
        built.push_back(buildPart(ids_.take(id + "-" + symbol), id, part));
    }
    return built;
}

/// The meshes with faces, in one list, or in one for each primitive that they will be.
std::vector<GeometryBuilder::Meshes> GeometryBuilder::partsOf(const Meshes& meshes) const {
    std::vector<Meshes> parts;
    std::map<std::pair<std::uint32_t, AttributeKey>, std::size_t> numbers;
    for (const auto number : meshes) {
        const auto& mesh = document_.meshes[number];
        if (mesh.countFaces() == 0) continue;
        const auto [part, added] =
            separate_ ? numbers.try_emplace({mesh.material, keyOf(mesh)}, parts.size())
                      : numbers.try_emplace({}, parts.size());
        if (added) parts.emplace_back();
        parts[part->second].push_back(number);
    }
    return parts;
}

BuiltGeometry GeometryBuilder::buildPart(const std::string& id, const std::string& name,
                                         const Meshes& meshes) {
    const auto mesh = boost::make_shared<scene::Mesh>(id, name);
    const bool isSkinned = std::any_of(meshes.begin(), meshes.end(), [this](std::uint32_t number) {
        return !document_.meshes[number].skin.influences.empty();
    });
    MeshAssembly assembly(mesh, isSkinned);
    for (const auto number : meshes) {
        const auto& source = document_.meshes[number];
        assembly.add(source, materialIds_[source.material]);
    }
    assembly.finish();
    library_->addGeometry(mesh);
    if (assembly.getSkin().getJoints().empty()) return {mesh, {}};
    return {mesh, controllers_.build(assembly.getSkin(), mesh)};
}

}  // namespace vantorix::apps::import
