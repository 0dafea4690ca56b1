#include "apps/import/DocumentCheck.h"

#include <algorithm>

#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {
namespace {

void require(bool sound, const char* what) {
    if (!sound) {
        throw RefusedError(std::string("the import worker's answer is broken: ") + what);
    }
}

template <typename Index, typename List>
bool addresses(Index index, const List& list) {
    return static_cast<std::uint64_t>(index) < list.size();
}

void checkNodes(const ModelDocument& document, const ImportLimits& limits) {
    const auto& nodes = document.nodes;
    require(!nodes.empty() && nodes[0].parent == 0, "no root node");
    std::vector<std::uint32_t> depths(nodes.size(), 1);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        require(i == 0 || nodes[i].parent < i, "nodes out of order");
        if (i > 0) depths[i] = depths[nodes[i].parent] + 1;
        requireWithin("levels of nodes", depths[i], limits.depth);
        for (const auto mesh : nodes[i].meshes) {
            require(addresses(mesh, document.meshes), "node with a missing mesh");
        }
    }
}

void checkMesh(const ModelMesh& mesh, const ModelDocument& document) {
    require(addresses(mesh.material, document.materials), "mesh with a missing material");
    require(mesh.positions.size() % 3 == 0, "partial position");
    const std::size_t vertices = mesh.positions.size() / 3;
    const auto fits = [vertices](const std::vector<float>& values, std::size_t components) {
        return values.empty() || values.size() == vertices * components;
    };
    require(fits(mesh.normals, 3), "normals do not fit");
    require(fits(mesh.colors, 4), "colours do not fit");
    require(mesh.texCoords.size() <= mostTexCoordSets, "too many texture coordinate sets");
    for (const auto& set : mesh.texCoords) {
        require(set.components == 2 || set.components == 3, "texture coordinate components");
        require(fits(set.values, set.components), "texture coordinates do not fit");
    }
    require(mesh.triangles.size() % 3 == 0, "partial triangle");
    require(std::all_of(mesh.triangles.begin(), mesh.triangles.end(),
                        [vertices](std::uint32_t vertex) { return vertex < vertices; }),
            "triangle with a missing vertex");
}

void checkMeshes(const ModelDocument& document, const ImportLimits& limits) {
    std::uint64_t vertices = 0;
    std::uint64_t faces = 0;
    for (const auto& mesh : document.meshes) {
        checkMesh(mesh, document);
        vertices += mesh.positions.size() / 3;
        faces += mesh.triangles.size() / 3;
        requireWithin("vertices", vertices, limits.vertices);
        requireWithin("faces", faces, limits.faces);
    }
}

void checkMaterials(const ModelDocument& document) {
    for (const auto& material : document.materials) {
        for (const auto& use : material.textures) {
            require(use.embedded < 0 || addresses(use.embedded, document.textures),
                    "missing embedded texture");
            require(use.texCoordSet < mostTexCoordSets, "texture coordinate set");
        }
    }
}

void checkTextures(const ModelDocument& document) {
    for (const auto& texture : document.textures) {
        if (texture.format != "rgba8") continue;
        const std::uint64_t pixels = std::uint64_t{texture.width} * texture.height;
        require(texture.bytes.size() % 4 == 0 && texture.bytes.size() / 4 == pixels,
                "pixels do not fit");
    }
}

void checkViews(const ModelDocument& document) {
    for (const auto& camera : document.cameras) {
        require(addresses(camera.placement.node, document.nodes), "camera without a node");
        require(camera.yFov > 0 && (camera.orthographic || camera.yFov < 180), "field of view");
        require(camera.zNear < camera.zFar, "clipping planes");
    }
    for (const auto& light : document.lights) {
        require(addresses(light.placement.node, document.nodes), "light without a node");
    }
}

}  // namespace

void checkDocument(const ModelDocument& document, const ImportLimits& limits) {
    checkNodes(document, limits);
    checkMeshes(document, limits);
    checkMaterials(document);
    checkTextures(document);
    checkViews(document);
}

}  // namespace vantorix::apps::import
