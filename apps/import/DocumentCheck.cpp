#include "apps/import/DocumentCheck.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <unordered_set>

#include "apps/import/ClipTotals.h"
#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/MeshTotals.h"
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

/// Every number is below @p end.
bool allBelow(std::uint64_t end, const std::vector<std::uint32_t>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [end](std::uint32_t number) { return number < end; });
}

std::uint64_t sumOf(const std::vector<std::uint32_t>& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), std::uint64_t{0});
}

void checkFaces(const ModelMesh& mesh) {
    require(mesh.triangles.size() % 3 == 0, "partial triangle");
    require(allBelow(mesh.countVertices(), mesh.triangles), "triangle with a missing vertex");
    require(std::all_of(mesh.polygonSizes.begin(), mesh.polygonSizes.end(),
                        [](std::uint32_t size) { return size > 3; }),
            "polygon without corners");
    require(sumOf(mesh.polygonSizes) == mesh.polygons.size(), "partial polygon");
    require(allBelow(mesh.countVertices(), mesh.polygons), "polygon with a missing vertex");
}

void checkSkin(const ModelMesh& mesh, const ModelDocument& document) {
    const auto& skin = mesh.skin;
    for (const auto& bone : skin.bones) {
        require(addresses(bone.node, document.nodes), "bone without a node");
    }
    require(skin.counts.size() == (skin.bones.empty() ? 0 : mesh.countVertices()),
            "influences do not fit");
    require(sumOf(skin.counts) == skin.influences.size(), "partial influences");
    require(skin.weights.size() == skin.influences.size(), "weights do not fit");
    require(allBelow(skin.bones.size(), skin.influences), "influence without a bone");
    require(std::all_of(skin.weights.begin(), skin.weights.end(),
                        [](float weight) { return weight > 0.0f; }),
            "weight");
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
    checkFaces(mesh);
    checkSkin(mesh, document);
}

void checkMeshes(const ModelDocument& document, const ImportLimits& limits) {
    MeshTotals totals;
    for (const auto& mesh : document.meshes) {
        checkMesh(mesh, document);
        totals.add(mesh);
        totals.requireWithin(limits);
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

void checkKeys(const ModelKeys& keys, float duration) {
    const auto& times = keys.times;
    // Finite ones: strictly later.
    require(std::adjacent_find(times.begin(), times.end(), std::greater_equal<>()) == times.end(),
            "keys out of order");
    require(times.empty() || (times.front() >= -longestClip && times.back() <= duration),
            "key outside of its clip");
}

void checkClips(const ModelDocument& document, const ImportLimits& limits) {
    ClipTotals totals;
    for (const auto& clip : document.clips) {
        totals.add(clip);
        totals.requireWithin(limits);
        require(clip.duration > 0.0f && clip.duration <= longestClip, "duration");
        std::unordered_set<std::uint32_t> nodes;
        for (const auto& channel : clip.channels) {
            require(addresses(channel.node, document.nodes), "channel without a node");
            require(nodes.insert(channel.node).second, "two channels of one node");
            checkKeys(channel.positions, clip.duration);
            checkKeys(channel.rotations, clip.duration);
            checkKeys(channel.scales, clip.duration);
        }
    }
}

}  // namespace

void checkDocument(const ModelDocument& document, const ImportLimits& limits) {
    checkNodes(document, limits);
    checkMeshes(document, limits);
    checkMaterials(document);
    checkTextures(document);
    checkViews(document);
    checkClips(document, limits);
}

}  // namespace vantorix::apps::import
