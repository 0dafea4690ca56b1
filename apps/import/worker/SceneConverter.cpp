#include "apps/import/worker/SceneConverter.h"

#include <cmath>
#include <vector>

#include <assimp/scene.h>

#include "apps/import/ImportError.h"
#include "apps/import/worker/AssimpValues.h"
#include "apps/import/worker/ClipConverter.h"
#include "apps/import/worker/MaterialConverter.h"
#include "apps/import/worker/MeshConverter.h"
#include "apps/import/worker/NodeNames.h"
#include "apps/import/worker/SkinConverter.h"
#include "apps/import/worker/TextureConverter.h"
#include "apps/import/worker/ViewConverter.h"

namespace vantorix::apps::import {
namespace {

/// Calls @p use for each entry of one of Assimp's lists that exists.
template <typename T, typename Use>
void forEach(T* const* items, unsigned int count, Use use) {
    if (!items) return;
    for (unsigned int i = 0; i < count; ++i) {
        if (items[i]) use(*items[i]);
    }
}

/// A node that still has to be copied.
struct OpenNode {
    const aiNode* node;
    std::uint32_t parent;
    std::uint64_t depth;
};

}  // namespace

ModelDocument SceneConverter::convert(const std::string& format) {
    document_.format = format;
    document_.name = textOf(scene_.mName);
    convertMetadata();
    convertMaterials();
    convertMeshes();
    convertTextures();
    convertNodes();
    const NodeNames names(document_.nodes);
    convertSkins(names);
    convertViews(names);
    convertClips(names);
    document_.notes = report_.getNotes();
    if (report_.getOmittedCount() > 0) {
        document_.notes.push_back("and " + std::to_string(report_.getOmittedCount()) +
                                  " more remarks");
    }
    return std::move(document_);
}

/// With a stack of its own: a deep tree must not need a deep call stack.
void SceneConverter::convertNodes() {
    std::vector<OpenNode> open;
    if (scene_.mRootNode) open.push_back({scene_.mRootNode, 0, 1});
    while (!open.empty()) {
        const auto [node, parent, depth] = open.back();
        open.pop_back();
        const auto self = static_cast<std::uint32_t>(document_.nodes.size());
        // A tree that holds a node twice ends here as well, in a circle or not.
        requireWithin("nodes", std::uint64_t{self} + 1, limits_.nodes);
        requireWithin("levels of nodes", depth, limits_.depth);
        convertNode(*node, parent);
        if (!node->mChildren) continue;
        requireWithin("nodes", open.size() + node->mNumChildren, limits_.nodes);
        // The last one in is the next one out: children keep their order.
        for (unsigned int i = node->mNumChildren; i-- > 0;) {
            if (node->mChildren[i]) open.push_back({node->mChildren[i], self, depth + 1});
        }
    }
    if (document_.nodes.empty()) throw RefusedError("holds no node");
}

void SceneConverter::convertNode(const aiNode& source, std::uint32_t parent) {
    ModelNode node;
    node.name = textOf(source.mName);
    node.parent = parent;
    if (!convertMatrix(source.mTransformation, node.matrix)) {
        report_.add("node \"" + node.name +
                    "\": matrix that is no number replaced by the identity");
    }
    const unsigned int meshes = source.mMeshes ? source.mNumMeshes : 0;
    requireWithin("meshes in one node", meshes, limits_.items);
    for (unsigned int i = 0; i < meshes; ++i) {
        if (source.mMeshes[i] < document_.meshes.size()) {
            node.meshes.push_back(source.mMeshes[i]);
        } else {
            report_.add("node \"" + node.name + "\": mesh number out of range dropped");
        }
    }
    document_.nodes.push_back(std::move(node));
}

void SceneConverter::convertMetadata() {
    const aiMetadata* const metadata = scene_.mMetaData;
    if (!metadata) return;
    int upAxis = 1;
    if (metadata->Get("UpAxis", upAxis) && upAxis >= 0 && upAxis <= 2) document_.upAxis = upAxis;
    float centimetres = 0.0f;
    if (metadata->Get("UnitScaleFactor", centimetres) && std::isfinite(centimetres) &&
        centimetres > 0.0f) {
        document_.meterUnit = centimetres / 100.0f;
    }
}

void SceneConverter::convertMaterials() {
    requireWithin("materials", scene_.mNumMaterials, limits_.items);
    MaterialConverter converter(scene_, report_);
    // Meshes refer to materials by position, so an entry that does not exist keeps its place.
    document_.materials.resize(scene_.mMaterials ? scene_.mNumMaterials : 0);
    for (std::size_t i = 0; i < document_.materials.size(); ++i) {
        if (scene_.mMaterials[i]) document_.materials[i] = converter.convert(*scene_.mMaterials[i]);
    }
    if (!document_.materials.empty()) return;
    document_.materials.resize(1);
    document_.materials[0].shading = "gouraud";
}

void SceneConverter::convertMeshes() {
    requireWithin("meshes", scene_.mNumMeshes, limits_.items);
    MeshConverter converter(limits_, document_.materials.size(), report_);
    document_.meshes.resize(scene_.mMeshes ? scene_.mNumMeshes : 0);
    for (std::size_t i = 0; i < document_.meshes.size(); ++i) {
        if (scene_.mMeshes[i]) document_.meshes[i] = converter.convert(*scene_.mMeshes[i]);
    }
}

void SceneConverter::convertTextures() {
    requireWithin("embedded textures", scene_.mNumTextures, limits_.items);
    document_.textures.resize(scene_.mTextures ? scene_.mNumTextures : 0);
    for (std::size_t i = 0; i < document_.textures.size(); ++i) {
        const aiTexture* const texture = scene_.mTextures[i];
        if (texture) document_.textures[i] = convertTexture(*texture, limits_, report_);
    }
}

void SceneConverter::convertSkins(const NodeNames& names) {
    SkinConverter converter(limits_, names, report_);
    for (std::size_t i = 0; i < document_.meshes.size(); ++i) {
        if (scene_.mMeshes[i]) converter.convert(*scene_.mMeshes[i], document_.meshes[i]);
    }
}

void SceneConverter::convertClips(const NodeNames& names) {
    requireWithin("animations", scene_.mNumAnimations, limits_.items);
    ClipConverter converter(limits_, names, report_);
    forEach(scene_.mAnimations, scene_.mNumAnimations,
            [&](const aiAnimation& animation) { converter.convert(animation, document_.clips); });
}

void SceneConverter::convertViews(const NodeNames& names) {
    requireWithin("cameras", scene_.mNumCameras, limits_.items);
    requireWithin("lights", scene_.mNumLights, limits_.items);
    ViewConverter converter(document_.format, names, report_);
    forEach(scene_.mCameras, scene_.mNumCameras, [&](const aiCamera& camera) {
        document_.cameras.push_back(converter.convert(camera));
    });
    forEach(scene_.mLights, scene_.mNumLights,
            [&](const aiLight& light) { document_.lights.push_back(converter.convert(light)); });
}

}  // namespace vantorix::apps::import
