#include "apps/import/GeometryBuilder.h"

#include <algorithm>

#include <boost/make_shared.hpp>

#include "apps/import/MeshAssembly.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::apps::import {

GeometryBuilder::GeometryBuilder(const ModelDocument& document,
                                 const std::vector<std::string>& materialIds,
                                 boost::shared_ptr<scene::GeometryManager> library, IdRegistry& ids)
    : document_(document), materialIds_(materialIds), library_(library), ids_(ids) {
    for (const auto& id : library->getIDs()) ids_.reserve(id);
}

boost::shared_ptr<scene::Mesh> GeometryBuilder::meshFor(const std::vector<std::uint32_t>& meshes) {
    const bool drawn = std::any_of(meshes.begin(), meshes.end(), [this](std::uint32_t mesh) {
        return !document_.meshes[mesh].triangles.empty();
    });
    if (!drawn) return {};
    auto& mesh = built_[meshes];
    if (!mesh) mesh = build(meshes);
    return mesh;
}

boost::shared_ptr<scene::Mesh> GeometryBuilder::build(const std::vector<std::uint32_t>& meshes) {
    const std::string& name = document_.meshes[meshes.front()].name;
    const auto mesh = boost::make_shared<scene::Mesh>(ids_.take(name), name);
    MeshAssembly assembly(mesh);
    for (const auto number : meshes) {
        const auto& source = document_.meshes[number];
        assembly.add(source, materialIds_[source.material]);
    }
    assembly.finish();
    library_->addGeometry(mesh);
    return mesh;
}

}  // namespace vantorix::apps::import
