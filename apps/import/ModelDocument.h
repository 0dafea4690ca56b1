#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// What a model file holds, in plain records: the worker fills a ModelDocument from the file, the
// program checks it and builds a scene from it. Numbers that refer to other records are positions
// in the lists of the document.

namespace vantorix::apps::import {

constexpr std::size_t mostTexCoordSets = 8;

struct ModelNode {
    std::string name;
    std::uint32_t parent = 0;  ///< Stands before the node itself; the root, node 0, names itself.
    /// Column-major, column vectors: elements 12 to 14 are the translation.
    std::array<float, 16> matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::vector<std::uint32_t> meshes;
};

struct ModelTexCoords {
    std::uint32_t components = 2;  ///< 2 or 3 per vertex; 1-component sets come as 2.
    std::vector<float> values;
};

/// A node that moves vertices of a mesh.
struct ModelBone {
    std::uint32_t node = 0;
    /// Column-major; from the mesh's frame to the node's, as both stand when the mesh is at rest.
    std::array<float, 16> inverseBind{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

/// Which bones move which vertices of a mesh. All lists are empty without bones.
struct ModelSkin {
    std::vector<ModelBone> bones;
    std::vector<std::uint32_t> counts;      ///< Influences of each vertex.
    std::vector<std::uint32_t> influences;  ///< Bone numbers, vertex after vertex.
    std::vector<float> weights;             ///< Of each influence, above 0.
};

/// Faces of one material over one list of vertices. Each attribute is empty or complete.
struct ModelMesh {
    std::string name;
    std::uint32_t material = 0;
    std::vector<float> positions;             ///< 3 per vertex.
    std::vector<float> normals;               ///< 3 per vertex; generated later where empty.
    std::vector<float> colors;                ///< 4 per vertex: red, green, blue, alpha.
    std::vector<ModelTexCoords> texCoords;    ///< At most mostTexCoordSets.
    std::vector<std::uint32_t> triangles;     ///< 3 vertex numbers per triangle.
    std::vector<std::uint32_t> polygonSizes;  ///< Corners of each face with more than three.
    std::vector<std::uint32_t> polygons;      ///< Their vertex numbers, face after face.
    ModelSkin skin;

    std::uint64_t countVertices() const { return positions.size() / 3; }
    std::uint64_t countFaces() const { return triangles.size() / 3 + polygonSizes.size(); }
    std::uint64_t countCorners() const { return triangles.size() + polygons.size(); }
};

struct ModelParameter {
    std::string name;
    std::string type;  ///< "float", "float4", "bool", "int" or "string".
    std::string text;
};

struct ModelTextureUse {
    std::string name;            ///< The parameter: "diffuseTexture", "normalTexture", ...
    std::string file;            ///< As the model writes it.
    std::int32_t embedded = -1;  ///< Position in the embedded textures, or -1 for a file.
    std::uint32_t texCoordSet = 0;
};

struct ModelMaterial {
    std::string name;
    std::string shading;  ///< "phong", "pbr", ...
    std::vector<ModelParameter> parameters;
    std::vector<ModelTextureUse> textures;
};

/// A picture inside the model file.
struct ModelTexture {
    std::string name;
    std::string format;  ///< Usual file ending of the bytes ("png"), or "rgba8" for plain pixels.
    std::uint32_t width = 0;  ///< Of plain pixels, like height.
    std::uint32_t height = 0;
    std::vector<std::uint8_t> bytes;
};

/// Where a camera or light stands below its node: looks along its -z, with y up.
struct ModelPlacement {
    std::uint32_t node = 0;
    std::array<float, 16> matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

struct ModelCamera {
    std::string name;
    ModelPlacement placement;
    bool orthographic = false;
    float yFov = 45.0f;  ///< Degrees; of an orthographic camera half the height of its view.
    float zNear = 0.1f;
    float zFar = 10000.0f;
};

struct ModelLight {
    enum Kind { DIRECTIONAL, POINT, SPOT, AMBIENT };

    std::string name;
    ModelPlacement placement;
    Kind kind = POINT;
    std::array<float, 3> color{1, 1, 1};
    std::array<float, 3> attenuation{1, 0, 0};  ///< Constant, linear, quadratic.
    float fallOffAngle = 180.0f;                ///< Whole opening of a spot's outer cone, degrees.
    float fallOffExponent = 0.0f;
};

/// Values of one kind over time.
struct ModelKeys {
    std::vector<float> times;   ///< Seconds, each later than the one before.
    std::vector<float> values;  ///< As many floats per key as the kind has.
};

/// How one node moves: local matrix = translation * rotation * scale. Between keys positions and
/// scales change linearly, rotations along the shortest arc; before the first key and after the
/// last one nothing changes. A kind without keys stays as it is in the node's matrix.
struct ModelChannel {
    std::uint32_t node = 0;
    ModelKeys positions;  ///< x, y, z.
    ModelKeys rotations;  ///< Quaternions of unit length: x, y, z, w.
    ModelKeys scales;     ///< x, y, z.
};

struct ModelClip {
    std::string name;
    float duration = 0.0f;               ///< Seconds, from 0; no key is later.
    std::vector<ModelChannel> channels;  ///< Each of another node.
};

/// Times of keys lie within this many seconds of 0.
constexpr float longestClip = 1000000.0f;

struct ModelDocument {
    std::string name;
    std::string format;            ///< Name of the file format, as people write it.
    std::int32_t upAxis = 1;       ///< 0, 1, 2: x, y, z.
    float meterUnit = 0.0f;        ///< Metres per unit; 0 when the file does not say.
    std::vector<ModelNode> nodes;  ///< Each parent before its children, children in order.
    std::vector<ModelMesh> meshes;
    std::vector<ModelMaterial> materials;
    std::vector<ModelTexture> textures;
    std::vector<ModelCamera> cameras;
    std::vector<ModelLight> lights;
    std::vector<ModelClip> clips;
    std::vector<std::string> notes;  ///< For the report.
};

}  // namespace vantorix::apps::import
