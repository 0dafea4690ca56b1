#include "apps/import/GeometryBuilder.h"

#include <algorithm>

#include <boost/make_shared.hpp>

#include "apps/import/MeshAssembly.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::apps::import {

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

BuiltGeometry GeometryBuilder::geometryFor(const std::vector<std::uint32_t>& meshes) {
    const bool drawn = std::any_of(meshes.begin(), meshes.end(), [this](std::uint32_t mesh) {
        return document_.meshes[mesh].countFaces() > 0;
    });
    if (!drawn) return {};
    auto& geometry = built_[meshes];
    if (!geometry.mesh) geometry = build(meshes);
    return geometry;
}

BuiltGeometry GeometryBuilder::build(const std::vector<std::uint32_t>& meshes) {
    const std::string& name = document_.meshes[meshes.front()].name;
    const auto mesh = boost::make_shared<scene::Mesh>(ids_.take(name), name);
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
