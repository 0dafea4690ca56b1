#include <cstring>
#include <limits>

#include "apps/import/AnswerFields.h"
#include "apps/import/AnswerValue.h"
#include "apps/import/CborGuard.h"
#include "apps/import/ClipColumns.h"
#include "apps/import/DocumentCheck.h"
#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {
namespace {

constexpr std::uint32_t anyIndex = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t deepestNesting = 16;

std::uint32_t index(const AnswerFields& fields, const char* key) {
    return static_cast<std::uint32_t>(fields.count(key, anyIndex));
}

/// Copies node @p i out of the columns.
std::vector<ModelNode> readNodes(const AnswerFields& fields, const ImportLimits& limits) {
    auto names = fields.texts("names");
    requireWithin("nodes", names.size(), limits.nodes);
    const auto parents = fields.indices("parents");
    const auto matrices = fields.floats("matrices");
    const auto meshCounts = fields.indices("meshCounts");
    const auto meshes = fields.indices("meshes");
    AnswerFields::requireSize("parents", parents.size(), names.size());
    AnswerFields::requireSize("matrices", matrices.size(), names.size() * 16);
    AnswerFields::requireSize("meshCounts", meshCounts.size(), names.size());

    std::vector<ModelNode> nodes(names.size());
    std::size_t firstMesh = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        auto& node = nodes[i];
        node.name = std::move(names[i]);
        node.parent = parents[i];
        std::memcpy(node.matrix.data(), &matrices[i * 16], sizeof(node.matrix));
        if (meshCounts[i] > meshes.size() - firstMesh) throw RefusedError("broken mesh counts");
        const auto first = meshes.begin() + static_cast<std::ptrdiff_t>(firstMesh);
        node.meshes.assign(first, first + static_cast<std::ptrdiff_t>(meshCounts[i]));
        firstMesh += meshCounts[i];
    }
    return nodes;
}

void read(const AnswerFields& fields, ModelSkin& skin) {
    const auto nodes = fields.indices("nodes");
    const auto matrices = fields.floats("matrices");
    AnswerFields::requireSize("matrices", matrices.size(), nodes.size() * 16);
    skin.bones.resize(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        skin.bones[i].node = nodes[i];
        std::memcpy(skin.bones[i].inverseBind.data(), &matrices[i * 16], 16 * sizeof(float));
    }
    skin.counts = fields.indices("counts");
    skin.influences = fields.indices("influences");
    skin.weights = fields.floats("weights");
}

void read(const AnswerFields& fields, ModelMesh& mesh) {
    mesh.name = fields.text("name");
    mesh.material = index(fields, "material");
    mesh.positions = fields.floats("positions");
    mesh.normals = fields.floats("normals");
    mesh.colors = fields.floats("colors");
    mesh.triangles = fields.indices("triangles");
    mesh.polygonSizes = fields.indices("polygonSizes");
    mesh.polygons = fields.indices("polygons");
    if (fields.has("skin")) read(fields.object("skin"), mesh.skin);
    for (const auto& set : fields.objects("texCoords")) {
        mesh.texCoords.push_back({index(set, "components"), set.floats("values")});
    }
}

void read(const AnswerFields& fields, ModelMaterial& material) {
    material.name = fields.text("name");
    material.shading = fields.text("shading");
    for (const auto& row : fields.textRows("parameters", 3)) {
        material.parameters.push_back({row[0], row[1], row[2]});
    }
    for (const auto& use : fields.objects("textures")) {
        const auto embedded = use.integer("embedded", -1, std::numeric_limits<int>::max());
        material.textures.push_back({use.text("name"), use.text("file"),
                                     static_cast<std::int32_t>(embedded),
                                     index(use, "texCoordSet")});
    }
}

void read(const AnswerFields& fields, ModelTexture& texture) {
    texture.name = fields.text("name");
    texture.format = fields.text("format");
    texture.width = index(fields, "width");
    texture.height = index(fields, "height");
    texture.bytes = fields.bytes("bytes");
}

void read(const AnswerFields& fields, ModelCamera& camera) {
    camera.name = fields.text("name");
    camera.placement = {index(fields, "node"), fields.fixedFloats<16>("matrix")};
    camera.orthographic = fields.flag("orthographic");
    const auto lens = fields.fixedFloats<3>("lens");
    camera.yFov = lens[0];
    camera.zNear = lens[1];
    camera.zFar = lens[2];
}

void read(const AnswerFields& fields, ModelLight& light) {
    light.name = fields.text("name");
    light.placement = {index(fields, "node"), fields.fixedFloats<16>("matrix")};
    light.kind = static_cast<ModelLight::Kind>(fields.count("kind", ModelLight::AMBIENT));
    light.color = fields.fixedFloats<3>("color");
    light.attenuation = fields.fixedFloats<3>("attenuation");
    const auto fallOff = fields.fixedFloats<2>("fallOff");
    light.fallOffAngle = fallOff[0];
    light.fallOffExponent = fallOff[1];
}

void read(const AnswerFields& fields, ModelClip& clip) {
    clip.name = fields.text("name");
    clip.duration = static_cast<float>(fields.number("duration"));
    ClipColumns columns;
    columns.nodes = fields.indices("nodes");
    columns.counts = fields.indices("counts");
    columns.times = fields.floats("times");
    columns.values = fields.floats("values");
    clip.channels = columns.toChannels();
}

template <typename T>
void readList(const AnswerFields& fields, const char* key, const ImportLimits& limits,
              std::vector<T>& items) {
    const auto objects = fields.objects(key);
    requireWithin(key, objects.size(), limits.items);
    items.resize(objects.size());
    for (std::size_t i = 0; i < items.size(); ++i) read(objects[i], items[i]);
}

ModelDocument readDocument(const AnswerFields& fields, const ImportLimits& limits) {
    ModelDocument document;
    document.name = fields.text("name");
    document.format = fields.text("format");
    document.upAxis = static_cast<std::int32_t>(fields.integer("upAxis", 0, 2));
    document.meterUnit = static_cast<float>(fields.number("meterUnit"));
    document.nodes = readNodes(fields.object("nodes"), limits);
    readList(fields, "meshes", limits, document.meshes);
    readList(fields, "materials", limits, document.materials);
    readList(fields, "textures", limits, document.textures);
    readList(fields, "cameras", limits, document.cameras);
    readList(fields, "lights", limits, document.lights);
    readList(fields, "clips", limits, document.clips);
    document.notes = fields.texts("notes");
    checkDocument(document, limits);
    return document;
}

LimitMet readLimit(const AnswerFields& fields) {
    return {fields.text("name"), fields.text("unit"), fields.number("met"),
            fields.number("allowed")};
}

WorkerAnswer readFields(const AnswerFields& fields, const ImportLimits& limits) {
    WorkerAnswer answer;
    answer.status = static_cast<WorkerAnswer::Status>(fields.count("status", WorkerAnswer::LIMIT));
    answer.reason = oneLine(fields.text("reason"));
    if (answer.status == WorkerAnswer::LIMIT) answer.limit = readLimit(fields.object("limit"));
    if (answer.status == WorkerAnswer::DONE) {
        answer.document = readDocument(fields.object("document"), limits);
    }
    return answer;
}

/// Names, keys and references: a bounded number of values for each item that may be there.
std::size_t mostValues(const ImportLimits& limits) {
    return static_cast<std::size_t>(2 * limits.nodes + 200 * limits.items + 10000);
}

}  // namespace

WorkerAnswer readAnswer(const std::vector<std::uint8_t>& message, const ImportLimits& limits) {
    std::uint64_t cborSize = 0;
    if (message.size() < sizeof(cborSize)) throw RefusedError("the import worker gave no answer");
    const std::size_t end = message.size() - sizeof(cborSize);
    std::memcpy(&cborSize, message.data() + end, sizeof(cborSize));
    if (cborSize > end) throw RefusedError("the import worker's answer is cut short");

    const std::size_t begin = end - static_cast<std::size_t>(cborSize);
    const std::uint8_t* const cbor = message.data() + begin;
    if (!isBoundedCbor(cbor, end - begin, deepestNesting, mostValues(limits))) {
        throw RefusedError("the import worker's answer is no sound document");
    }
    const auto object = AnswerValue::fromCbor(cbor, end - begin);
    AnswerArrays arrays(message.data(), begin);
    return readFields(AnswerFields(object, arrays), limits);
}

}  // namespace vantorix::apps::import
