#include "apps/import/worker/MeshConverter.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <assimp/mesh.h>

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
    count(source);
    convertMaterial(source, mesh);
    convertVertices(source, mesh);
    convertTexCoords(source, mesh);
    convertFaces(source, mesh);
    repair(mesh);
    return mesh;
}

/// Before anything is copied.
void MeshConverter::count(const aiMesh& source) {
    totals_.vertices += source.mNumVertices;
    totals_.faces += source.mNumFaces;
    totals_.requireWithin(limits_);
    if (!source.mFaces) return;
    for (unsigned int i = 0; i < source.mNumFaces; ++i) {
        totals_.corners += source.mFaces[i].mNumIndices;
    }
    totals_.requireWithin(limits_);
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
    const std::uint64_t vertices = mesh.countVertices();
    std::size_t lines = 0;
    std::size_t outside = 0;
    for (const aiFace *face = source.mFaces, *end = face + source.mNumFaces; face != end; ++face) {
        const auto *const first = face->mIndices, *const last = first + face->mNumIndices;
        if (face->mNumIndices < 3 || !first) {
            ++lines;
        } else if (std::any_of(first, last, [vertices](auto index) { return index >= vertices; })) {
            ++outside;
        } else if (face->mNumIndices == 3) {
            mesh.triangles.insert(mesh.triangles.end(), first, last);
        } else {
            mesh.polygonSizes.push_back(face->mNumIndices);
            mesh.polygons.insert(mesh.polygons.end(), first, last);
        }
    }
    note(mesh, lines, "points, lines or broken polygons dropped");
    note(mesh, outside, "faces with a vertex number out of range dropped");
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
