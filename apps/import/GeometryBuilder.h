#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/IdRegistry.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::scene {
class GeometryManager;
class Mesh;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Builds the meshes of a scene: one per list of document meshes that some node shows, with one
/// primitive per material (and per set of attributes, should they differ). Positions and all
/// other values that are equal byte for byte are stored once.
class GeometryBuilder {
public:
    /// Refers to everything given. @p materialIds are the symbols, by material number.
    GeometryBuilder(const ModelDocument& document, const std::vector<std::string>& materialIds,
                    boost::shared_ptr<scene::GeometryManager> library, IdRegistry& ids);

    /// The mesh for a node's list, made and put into the library when it is first asked for;
    /// empty when the list has no triangle.
    boost::shared_ptr<scene::Mesh> meshFor(const std::vector<std::uint32_t>& meshes);

private:
    boost::shared_ptr<scene::Mesh> build(const std::vector<std::uint32_t>& meshes);

    const ModelDocument& document_;
    const std::vector<std::string>& materialIds_;
    boost::shared_ptr<scene::GeometryManager> library_;
    IdRegistry& ids_;
    std::map<std::vector<std::uint32_t>, boost::shared_ptr<scene::Mesh>> built_;
};

}  // namespace vantorix::apps::import
