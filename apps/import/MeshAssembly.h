#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/ModelDocument.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {
class Mesh;
class Stream;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Puts several meshes of a document into one mesh of a scene.
///
/// Slots of the index records: VERTEX (the positions) 0, NORMAL 1, then those that the material's
/// meshes have, in this order: the texture coordinates, COLOR. Triangles without normals get
/// generated ones, across materials and source meshes.
class MeshAssembly {
public:
    explicit MeshAssembly(boost::shared_ptr<scene::Mesh> mesh);

    /// Adds the triangles of @p source under the material symbol @p symbol.
    void add(const ModelMesh& source, const std::string& symbol);

    /// Generates normals and makes the primitives, in the order in which their first triangles
    /// came.
    void finish();

private:
    struct Attribute {
        scene::StreamSemantic semantic;
        int components;
        const std::vector<float>* values;
    };
    /// Index records that will be one primitive.
    struct Group {
        std::string symbol;
        std::vector<scene::StreamMapping> mappings;
        bool lacksNormals;
        std::vector<unsigned int> records;
    };
    using Layout = std::vector<std::pair<scene::StreamSemantic, int>>;

    static std::vector<Attribute> attributesOf(const ModelMesh& source);
    Group& groupFor(const std::string& symbol, const std::vector<Attribute>& attributes);
    scene::Stream& streamFor(const Attribute& attribute);
    std::vector<unsigned int> store(const Attribute& attribute);
    void generateNormals();

    boost::shared_ptr<scene::Mesh> mesh_;
    boost::shared_ptr<scene::Stream> vertexPlaceholder_;
    std::map<std::pair<scene::StreamSemantic, int>, boost::shared_ptr<scene::Stream>> streams_;
    std::map<std::tuple<std::string, bool, Layout>, std::size_t> groupNumbers_;
    std::vector<Group> groups_;
};

}  // namespace vantorix::apps::import
