#include "apps/import/worker/SkinConverter.h"

#include <cmath>
#include <cstdint>

#include <assimp/mesh.h>

#include "apps/import/worker/AssimpValues.h"
#include "apps/import/worker/NodeNames.h"

namespace vantorix::apps::import {
namespace {

bool isUsable(float weight) { return std::isfinite(weight) && weight > 0.0f; }

/// Calls @p use(bone number, weight) for each weight that moves one of @p vertices vertices.
/// @return how many weights cannot be used at all; zeros are merely superfluous.
template <typename Use>
std::size_t forEachWeight(const std::vector<const aiBone*>& bones, std::uint64_t vertices,
                          Use use) {
    std::size_t broken = 0;
    for (std::size_t bone = 0; bone < bones.size(); ++bone) {
        if (!bones[bone]->mWeights) continue;
        for (unsigned int i = 0; i < bones[bone]->mNumWeights; ++i) {
            const aiVertexWeight& weight = bones[bone]->mWeights[i];
            if (weight.mVertexId < vertices && isUsable(weight.mWeight)) {
                use(static_cast<std::uint32_t>(bone), weight);
            } else {
                broken += weight.mWeight != 0.0f;
            }
        }
    }
    return broken;
}

}  // namespace

void SkinConverter::convert(const aiMesh& source, ModelMesh& mesh) {
    if (!source.mBones || source.mNumBones == 0 || mesh.positions.empty()) return;
    count(source);
    const auto bones = convertBones(source, mesh);
    if (!bones.empty()) convertWeights(bones, mesh);
}

/// Before anything is copied.
void SkinConverter::count(const aiMesh& source) {
    totals_.bones += source.mNumBones;
    totals_.requireWithin(limits_);
    for (unsigned int i = 0; i < source.mNumBones; ++i) {
        if (source.mBones[i]) totals_.influences += source.mBones[i]->mNumWeights;
    }
    totals_.requireWithin(limits_);
}

/// The bones that have a node, in the order of mesh.skin.bones.
std::vector<const aiBone*> SkinConverter::convertBones(const aiMesh& source, ModelMesh& mesh) {
    std::vector<const aiBone*> bones;
    for (unsigned int i = 0; i < source.mNumBones; ++i) {
        const aiBone* const bone = source.mBones[i];
        if (!bone) continue;
        const std::string name = textOf(bone->mName);
        const auto node = nodes_.find(name);
        if (!node) {
            note(mesh, "bone \"" + name + "\" names no node and moves nothing");
            continue;
        }
        bones.push_back(bone);
        mesh.skin.bones.emplace_back().node = *node;
        if (!convertMatrix(bone->mOffsetMatrix, mesh.skin.bones.back().inverseBind)) {
            note(mesh, "bone \"" + name + "\": matrix that is no number replaced by the identity");
        }
    }
    return bones;
}

/// Weights come bone by bone and are kept vertex by vertex: a counting sort.
void SkinConverter::convertWeights(const std::vector<const aiBone*>& bones, ModelMesh& mesh) {
    auto& skin = mesh.skin;
    skin.counts.assign(mesh.countVertices(), 0);
    const auto broken = forEachWeight(
        bones, skin.counts.size(),
        [&skin](auto, const aiVertexWeight& weight) { ++skin.counts[weight.mVertexId]; });
    if (broken > 0) note(mesh, std::to_string(broken) + " unusable weights of bones dropped");

    std::vector<std::size_t> next;
    std::size_t total = 0;
    for (const auto count : skin.counts) {
        next.push_back(total);
        total += count;
    }
    skin.influences.resize(total);
    skin.weights.resize(total);
    forEachWeight(bones, skin.counts.size(), [&](std::uint32_t bone, const aiVertexWeight& weight) {
        const std::size_t place = next[weight.mVertexId]++;
        skin.influences[place] = bone;
        skin.weights[place] = weight.mWeight;
    });
}

void SkinConverter::note(const ModelMesh& mesh, const std::string& what) {
    report_.add("mesh \"" + mesh.name + "\": " + what);
}

}  // namespace vantorix::apps::import
