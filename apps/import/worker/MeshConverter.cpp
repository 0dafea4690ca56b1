#include "apps/import/worker/MeshConverter.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <assimp/mesh.h>

#include "apps/import/ImportError.h"
#include "apps/import/worker/AssimpValues.h"

namespace vantorix::apps::import {
namespace {

/// @p components floats of each of @p count elements, which start with that many floats.
template <typename Element>
std::vector<float> copyFloats(const Element* elements, std::size_t count, std::size_t components) {
    std::vector<float> values;
    if (!elements) return values;
    values.reserve(count * components);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < components; ++c) {
            values.push_back(elements[i][static_cast<unsigned int>(c)]);
        }
    }
    return values;
}

/// Degenerate triangles give normals without length or without value: replace them by one that
/// can be lit.
std::size_t repairNormals(std::vector<float>& normals) {
    std::size_t repaired = 0;
    for (std::size_t i = 0; i + 2 < normals.size(); i += 3) {
        float* const normal = &normals[i];
        if (std::isfinite(normal[0]) && std::isfinite(normal[1]) && std::isfinite(normal[2])) {
            continue;
        }
        normal[0] = normal[1] = 0.0f;
        normal[2] = 1.0f;
        ++repaired;
    }
    return repaired;
}

}  // namespace

ModelMesh MeshConverter::convert(const aiMesh& source) {
    ModelMesh mesh;
    mesh.name = textOf(source.mName);
    vertices_ += source.mNumVertices;
    faces_ += source.mNumFaces;
    requireWithin("vertices", vertices_, limits_.vertices);
    requireWithin("faces", faces_, limits_.faces);
    convertMaterial(source, mesh);
    convertVertices(source, mesh);
    convertTexCoords(source, mesh);
    convertFaces(source, mesh);
    repair(mesh);
    return mesh;
}

void MeshConverter::convertMaterial(const aiMesh& source, ModelMesh& mesh) {
    mesh.material = source.mMaterialIndex;
    if (mesh.material < materialCount_) return;
    mesh.material = 0;
    note(mesh, 1, "material number out of range, the first material is used instead");
}

void MeshConverter::convertVertices(const aiMesh& source, ModelMesh& mesh) {
    if (!source.mVertices) return;
    mesh.positions = copyFloats(source.mVertices, source.mNumVertices, 3);
    mesh.normals = copyFloats(source.mNormals, source.mNumVertices, 3);
    mesh.colors = copyFloats(source.mColors[0], source.mNumVertices, 4);
}

void MeshConverter::convertTexCoords(const aiMesh& source, ModelMesh& mesh) {
    if (!source.mVertices) return;
    for (std::size_t i = 0; i < AI_MAX_NUMBER_OF_TEXTURECOORDS; ++i) {
        // Sets are numbered without gaps: materials refer to them by number.
        if (i >= mostTexCoordSets || !source.mTextureCoords[i]) return;
        const std::uint32_t components = source.mNumUVComponents[i] == 3 ? 3 : 2;
        mesh.texCoords.push_back(
            {components, copyFloats(source.mTextureCoords[i], source.mNumVertices, components)});
    }
}

void MeshConverter::convertFaces(const aiMesh& source, ModelMesh& mesh) {
    if (!source.mFaces) return;
    const std::size_t vertices = mesh.positions.size() / 3;
    std::size_t lines = 0;
    std::size_t outside = 0;
    mesh.triangles.reserve(std::size_t{source.mNumFaces} * 3);
    for (const aiFace *face = source.mFaces, *end = face + source.mNumFaces; face != end; ++face) {
        if (face->mNumIndices != 3 || !face->mIndices) {
            ++lines;
        } else if (std::any_of(face->mIndices, face->mIndices + 3,
                               [vertices](unsigned int index) { return index >= vertices; })) {
            ++outside;
        } else {
            mesh.triangles.insert(mesh.triangles.end(), face->mIndices, face->mIndices + 3);
        }
    }
    note(mesh, lines, "points, lines or broken polygons dropped");
    note(mesh, outside, "triangles with a vertex number out of range dropped");
}

void MeshConverter::repair(ModelMesh& mesh) {
    note(mesh, repairFloats(mesh.positions), "position values that are no numbers set to 0");
    note(mesh, repairNormals(mesh.normals), "normals that are no numbers replaced");
    note(mesh, repairFloats(mesh.colors), "colour values that are no numbers set to 0");
    std::size_t texCoords = 0;
    for (auto& set : mesh.texCoords) texCoords += repairFloats(set.values);
    note(mesh, texCoords, "texture coordinates that are no numbers set to 0");
}

void MeshConverter::note(const ModelMesh& mesh, std::size_t count, const char* what) {
    if (count > 0) {
        report_.add("mesh \"" + mesh.name + "\": " + std::to_string(count) + " " + what);
    }
}

}  // namespace vantorix::apps::import
