#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/ControllerBuilder.h"
#include "apps/import/IdRegistry.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::scene {
class GeometryManager;
class Mesh;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// What a node shows.
struct BuiltGeometry {
    boost::shared_ptr<scene::Mesh> mesh;
    BuiltController skin;  ///< Empty unless bones move the mesh.
};

/// Builds the meshes of a scene, and their skins: one per list of document meshes that some node
/// shows. A mesh has one primitive for the triangles and one for the larger polygons of each
/// material (and set of attributes, should they differ).
class GeometryBuilder {
public:
    /// Refers to everything given. @p materialIds are the symbols, by material number.
    GeometryBuilder(const ModelDocument& document, const std::vector<std::string>& materialIds,
                    boost::shared_ptr<scene::GeometryManager> library, IdRegistry& ids,
                    ControllerBuilder& controllers);

    /// Whether each primitive becomes a geometry of its own; see ImportOptions. To be said first.
    void separatePrimitives(bool separate) { separate_ = separate; }

    /// The geometry for a node's list, made and put into the library when it is first asked for.
    /// None when the list has no face; several only when primitives are separate.
    const std::vector<BuiltGeometry>& geometriesFor(const std::vector<std::uint32_t>& meshes);

private:
    using Meshes = std::vector<std::uint32_t>;

    std::vector<BuiltGeometry> build(const Meshes& meshes);
    std::vector<Meshes> partsOf(const Meshes& meshes) const;
    BuiltGeometry buildPart(const std::string& id, const std::string& name, const Meshes& meshes);

    const ModelDocument& document_;
    const std::vector<std::string>& materialIds_;
    boost::shared_ptr<scene::GeometryManager> library_;
    IdRegistry& ids_;
    ControllerBuilder& controllers_;
    bool separate_ = false;
    std::map<Meshes, std::vector<BuiltGeometry>> built_;
};

}  // namespace vantorix::apps::import
