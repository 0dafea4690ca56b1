#include <cstring>

#include <nlohmann/json.hpp>

#include "apps/import/ClipColumns.h"
#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {
namespace {

using nlohmann::json;

/// Appends arrays to a message and hands out the references that the CBOR part holds.
class ArrayBlock {
public:
    explicit ArrayBlock(std::vector<std::uint8_t>& message) : message_(message) {}

    template <typename T>
    json append(const T* values, std::size_t count) {
        const std::size_t position = message_.size();
        message_.resize(position + count * sizeof(T));
        if (count > 0) std::memcpy(message_.data() + position, values, count * sizeof(T));
        return {{"at", position}, {"count", count}};
    }

    template <typename Container>
    json append(const Container& values) {
        return append(values.data(), values.size());
    }

private:
    std::vector<std::uint8_t>& message_;
};

/// Nodes go column by column: a million of them is five arrays and a list of names.
json nodesToJson(const std::vector<ModelNode>& nodes, ArrayBlock& block) {
    json names = json::array();
    std::vector<std::uint32_t> parents, meshCounts, meshes;
    std::vector<float> matrices;
    for (const auto& node : nodes) {
        names.push_back(node.name);
        parents.push_back(node.parent);
        matrices.insert(matrices.end(), node.matrix.begin(), node.matrix.end());
        meshCounts.push_back(static_cast<std::uint32_t>(node.meshes.size()));
        meshes.insert(meshes.end(), node.meshes.begin(), node.meshes.end());
    }
    return {{"names", std::move(names)},
            {"parents", block.append(parents)},
            {"matrices", block.append(matrices)},
            {"meshCounts", block.append(meshCounts)},
            {"meshes", block.append(meshes)}};
}

json toJson(const ModelSkin& skin, ArrayBlock& block) {
    std::vector<std::uint32_t> nodes;
    std::vector<float> matrices;
    for (const auto& bone : skin.bones) {
        nodes.push_back(bone.node);
        matrices.insert(matrices.end(), bone.inverseBind.begin(), bone.inverseBind.end());
    }
    return {{"nodes", block.append(nodes)},
            {"matrices", block.append(matrices)},
            {"counts", block.append(skin.counts)},
            {"influences", block.append(skin.influences)},
            {"weights", block.append(skin.weights)}};
}

json toJson(const ModelMesh& mesh, ArrayBlock& block) {
    json sets = json::array();
    for (const auto& set : mesh.texCoords) {
        sets.push_back({{"components", set.components}, {"values", block.append(set.values)}});
    }
    return {{"name", mesh.name},
            {"material", mesh.material},
            {"positions", block.append(mesh.positions)},
            {"normals", block.append(mesh.normals)},
            {"colors", block.append(mesh.colors)},
            {"texCoords", std::move(sets)},
            {"triangles", block.append(mesh.triangles)},
            {"polygonSizes", block.append(mesh.polygonSizes)},
            {"polygons", block.append(mesh.polygons)},
            {"skin", mesh.skin.bones.empty() ? json() : toJson(mesh.skin, block)}};
}

json toJson(const ModelMaterial& material, ArrayBlock&) {
    json parameters = json::array();
    for (const auto& parameter : material.parameters) {
        parameters.push_back({parameter.name, parameter.type, parameter.text});
    }
    json textures = json::array();
    for (const auto& use : material.textures) {
        textures.push_back({{"name", use.name},
                            {"file", use.file},
                            {"embedded", use.embedded},
                            {"texCoordSet", use.texCoordSet}});
    }
    return {{"name", material.name},
            {"shading", material.shading},
            {"parameters", std::move(parameters)},
            {"textures", std::move(textures)}};
}

json toJson(const ModelTexture& texture, ArrayBlock& block) {
    return {{"name", texture.name},
            {"format", texture.format},
            {"width", texture.width},
            {"height", texture.height},
            {"bytes", block.append(texture.bytes)}};
}

json toJson(const ModelCamera& camera, ArrayBlock& block) {
    return {{"name", camera.name},
            {"node", camera.placement.node},
            {"matrix", block.append(camera.placement.matrix)},
            {"orthographic", camera.orthographic},
            {"lens", block.append(std::array{camera.yFov, camera.zNear, camera.zFar})}};
}

json toJson(const ModelLight& light, ArrayBlock& block) {
    return {{"name", light.name},
            {"node", light.placement.node},
            {"matrix", block.append(light.placement.matrix)},
            {"kind", static_cast<std::uint32_t>(light.kind)},
            {"color", block.append(light.color)},
            {"attenuation", block.append(light.attenuation)},
            {"fallOff", block.append(std::array{light.fallOffAngle, light.fallOffExponent})}};
}

json toJson(const ModelClip& clip, ArrayBlock& block) {
    const ClipColumns columns(clip.channels);
    return {{"name", clip.name},
            {"duration", clip.duration},
            {"nodes", block.append(columns.nodes)},
            {"counts", block.append(columns.counts)},
            {"times", block.append(columns.times)},
            {"values", block.append(columns.values)}};
}

template <typename T>
json listToJson(const std::vector<T>& items, ArrayBlock& block) {
    json list = json::array();
    for (const auto& item : items) list.push_back(toJson(item, block));
    return list;
}

json toJson(const ModelDocument& document, ArrayBlock& block) {
    return {{"name", document.name},
            {"format", document.format},
            {"upAxis", document.upAxis},
            {"meterUnit", document.meterUnit},
            {"nodes", nodesToJson(document.nodes, block)},
            {"meshes", listToJson(document.meshes, block)},
            {"materials", listToJson(document.materials, block)},
            {"textures", listToJson(document.textures, block)},
            {"cameras", listToJson(document.cameras, block)},
            {"lights", listToJson(document.lights, block)},
            {"clips", listToJson(document.clips, block)},
            {"notes", document.notes}};
}

json toJson(const LimitMet& limit) {
    return {
        {"name", limit.name}, {"unit", limit.unit}, {"met", limit.met}, {"allowed", limit.allowed}};
}

}  // namespace

std::vector<std::uint8_t> writeAnswer(const WorkerAnswer& answer) {
    std::vector<std::uint8_t> message;
    ArrayBlock block(message);
    json object{{"status", static_cast<std::uint32_t>(answer.status)}, {"reason", answer.reason}};
    if (answer.status == WorkerAnswer::LIMIT) object["limit"] = toJson(answer.limit);
    if (answer.status == WorkerAnswer::DONE) object["document"] = toJson(answer.document, block);

    const std::size_t blockSize = message.size();
    json::to_cbor(object, nlohmann::detail::output_adapter<std::uint8_t>(message));
    const std::uint64_t cborSize = message.size() - blockSize;
    block.append(&cborSize, 1);
    return message;
}

}  // namespace vantorix::apps::import
