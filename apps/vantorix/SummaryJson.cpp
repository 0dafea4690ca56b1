#include "apps/vantorix/SummaryJson.h"

#include <nlohmann/json.hpp>

#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/ModelSummary.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

Json vectorJson(const Eigen::Vector3f& v) {
    return Json::array({jsonNumber(v.x()), jsonNumber(v.y()), jsonNumber(v.z())});
}

Json boxJson(const BoxSummary& box) {
    if (!box.isKnown) return nullptr;
    return {{"min", vectorJson(box.least)}, {"max", vectorJson(box.most)}};
}

Json countsJson(const Counts& counts) {
    Json json = Json::object();
    for (const auto& [name, count] : counts) json[name] = count;
    return json;
}

template <class Records, class Convert>
Json listJson(const Records& records, const Convert& convert) {
    Json list = Json::array();
    for (const auto& record : records) list.push_back(convert(record));
    return list;
}

Json instanceJson(const InstanceSummary& instance) {
    Json materials = Json::object();
    for (const auto& [symbol, id] : instance.materials) materials[symbol] = id;
    Json json = {{"geometry", instance.geometryId}, {"materials", materials}};
    if (instance.controllerId.empty()) return json;
    json["controller"] = instance.controllerId;
    json["skeletons"] = instance.skeletons;
    return json;
}

Json nodeJson(const NodeSummary& node) {
    return {{"id", node.id},
            {"name", node.name},
            {"kind", node.kind()},
            {"type", node.type},
            {"parent", node.parent < 0 ? Json(nullptr) : Json(node.parent)},
            {"depth", node.depth},
            {"layers", node.layers},
            {"bounds", boxJson(node.box)},
            {"geometries", listJson(node.instances, instanceJson)},
            {"cameras", node.cameras},
            {"lights", node.lights}};
}

Json layerJson(const LayerSummary& layer) {
    return {{"id", layer.id}, {"name", layer.name}, {"nodes", layer.nodes}};
}

Json streamJson(const StreamSummary& stream) {
    return {{"name", stream.name}, {"stride", stream.stride}, {"tuples", stream.tuples}};
}

Json primitiveJson(const PrimitiveSummary& primitive) {
    return {{"type", primitive.type},
            {"faces", primitive.faces},
            {"materialSymbol", primitive.materialSymbol}};
}

Json geometryJson(const GeometrySummary& geometry) {
    return {{"id", geometry.id},
            {"name", geometry.name},
            {"type", geometry.type},
            {"faces", geometry.faces()},
            {"bounds", boxJson(geometry.box)},
            {"streams", listJson(geometry.streams, streamJson)},
            {"primitives", listJson(geometry.primitives, primitiveJson)}};
}

Json parameterJson(const ParameterSummary& parameter) {
    return {{"name", parameter.name}, {"type", parameter.type}, {"value", parameter.value}};
}

Json materialJson(const MaterialSummary& material) {
    return {{"id", material.id},
            {"effect", material.effect},
            {"technique", material.technique},
            {"parameters", listJson(material.parameters, parameterJson)}};
}

Json imageJson(const ImageSummary& image) { return {{"id", image.id}, {"file", image.file}}; }

Json cameraJson(const CameraSummary& camera) {
    return {{"id", camera.id},
            {"name", camera.name},
            {"type", camera.type},
            {"yFov", jsonNumber(camera.yFov)},
            {"zNear", jsonNumber(camera.zNear)},
            {"zFar", jsonNumber(camera.zFar)}};
}

Json lightJson(const LightSummary& light) {
    return {{"id", light.id},
            {"name", light.name},
            {"type", light.type},
            {"color", vectorJson(light.colour)}};
}

Json controllerJson(const ControllerSummary& controller) {
    return {{"id", controller.id},
            {"name", controller.name},
            {"geometry", controller.geometryId},
            {"joints", controller.joints},
            {"vertices", controller.vertices},
            {"influences", controller.influences}};
}

}  // namespace

Json summaryJson(const ModelSummary& summary) {
    return {{"file", summary.file},
            {"format", summary.format},
            {"name", summary.name},
            {"upAxis", summary.upAxis},
            {"meterUnit", jsonNumber(summary.meterUnit)},
            {"bounds", boxJson(summary.box)},
            {"counts", countsJson(summary.counts)},
            {"libraries", countsJson(summary.libraries)},
            {"nodes", listJson(summary.nodes, nodeJson)},
            {"layers", listJson(summary.layers, layerJson)},
            {"geometries", listJson(summary.geometries, geometryJson)},
            {"materials", listJson(summary.materials, materialJson)},
            {"images", listJson(summary.images, imageJson)},
            {"cameras", listJson(summary.cameras, cameraJson)},
            {"lights", listJson(summary.lights, lightJson)},
            {"controllers", listJson(summary.controllers, controllerJson)},
            {"notes", summary.notes}};
}

}  // namespace vantorix::apps::cli
