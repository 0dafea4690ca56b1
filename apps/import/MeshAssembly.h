#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/functional/hash.hpp>
#include <boost/shared_ptr.hpp>

#include "apps/import/ModelDocument.h"
#include "apps/import/SkinAssembly.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {
class Mesh;
class Stream;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Puts several meshes of a document into one mesh of a scene.
///
/// Slots of the index records: VERTEX (the positions) 0, NORMAL 1, then those that the material's
/// meshes have, in this order: the texture coordinates, COLOR. Faces without normals get generated
/// ones, across materials and source meshes. Values that are equal byte for byte are stored once;
/// positions only where they also follow the same bones with the same weights.
class MeshAssembly {
public:
    /// @param isSkinned some of the meshes to come have bones.
    MeshAssembly(boost::shared_ptr<scene::Mesh> mesh, bool isSkinned);

    /// Adds the faces of @p source under the material symbol @p symbol.
    void add(const ModelMesh& source, const std::string& symbol);

    /// Generates normals and makes the primitives, in the order in which their first faces came;
    /// of one mesh the triangles come before the other polygons.
    void finish();

    /// The joints, and the influences on each position.
    const SkinAssembly& getSkin() const { return skin_; }

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
        bool isPolygonal;  ///< Else all faces have three corners.
        std::vector<unsigned int> records;
        std::vector<unsigned int> polygons;  ///< Corner count and first index of each polygon.
    };
    using Layout = std::vector<std::pair<scene::StreamSemantic, int>>;
    using Slots = std::vector<std::vector<unsigned int>>;
    /// The bytes of a position, and the number of its list of influences.
    using PositionKey = std::array<std::uint32_t, 4>;

    static std::vector<Attribute> attributesOf(const ModelMesh& source);
    Group& groupFor(const std::string& symbol, const std::vector<Attribute>& attributes,
                    bool isPolygonal);
    static void addCorners(const std::vector<std::uint32_t>& vertices, const Slots& slots,
                           Group& group);
    scene::Stream& streamFor(const Attribute& attribute);
    std::vector<unsigned int> store(const Attribute& attribute);
    std::vector<unsigned int> storePositions(const ModelMesh& source);
    void generateNormals();
    void makePrimitive(const Group& group);

    boost::shared_ptr<scene::Mesh> mesh_;
    bool isSkinned_;
    SkinAssembly skin_;
    std::unordered_map<PositionKey, unsigned int, boost::hash<PositionKey>> skinnedPositions_;
    boost::shared_ptr<scene::Stream> vertexPlaceholder_;
    std::map<std::pair<scene::StreamSemantic, int>, boost::shared_ptr<scene::Stream>> streams_;
    std::map<std::tuple<std::string, bool, bool, Layout>, std::size_t> groupNumbers_;
    std::vector<Group> groups_;
};

}  // namespace vantorix::apps::import
