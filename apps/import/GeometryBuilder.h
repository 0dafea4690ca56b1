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
    boost::shared_ptr<scene::Mesh> mesh;  ///< Empty when there is no face.
    BuiltController skin;                 ///< Empty unless bones move the mesh.
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

    /// The geometry for a node's list, made and put into the library when it is first asked for.
    BuiltGeometry geometryFor(const std::vector<std::uint32_t>& meshes);

private:
    BuiltGeometry build(const std::vector<std::uint32_t>& meshes);

    const ModelDocument& document_;
    const std::vector<std::string>& materialIds_;
    boost::shared_ptr<scene::GeometryManager> library_;
    IdRegistry& ids_;
    ControllerBuilder& controllers_;
    std::map<std::vector<std::uint32_t>, BuiltGeometry> built_;
};

}  // namespace vantorix::apps::import
