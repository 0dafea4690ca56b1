#include "apps/vantorix/SceneDump.h"

#include <set>

#include <nlohmann/json.hpp>

#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/NodeDump.h"
#include "scene/animation/Animation.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/animation/Sampler.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

Json streamDump(const scene::Stream& stream) {
    Json values = Json::array();
    for (const float value : stream.values) values.push_back(jsonNumber(value));
    Json json = {{"name", stream.name},
                 {"stride", stream.stride},
                 {"count", stream.count},
                 {"values", std::move(values)}};
    if (!stream.stringValues.empty()) json["names"] = stream.stringValues;
    return json;
}

template <typename Streams>
Json streamsDump(const Streams& streams) {
    Json list = Json::array();
    for (const auto& stream : streams) {
        if (stream) list.push_back(streamDump(*stream));
    }
    return list;
}

Json mappingsDump(const std::vector<scene::StreamMapping>& mappings) {
    Json list = Json::array();
    for (const auto& mapping : mappings) {
        list.push_back({{"semantic", scene::streamSemanticToString(mapping.semantic)},
                        {"stream", mapping.stream ? Json(mapping.stream->name) : Json(nullptr)},
                        {"offset", mapping.offset}});
    }
    return list;
}

Json primitiveDump(scene::IMeshPrimitive& primitive) {
    Json json = {{"type", scene::IMeshPrimitive::typeToString(primitive.getType())},
                 {"material", primitive.getMaterialSymbol()},
                 {"mappings", mappingsDump(primitive.getStreamMapping())},
                 {"stride", primitive.getIndexStreamStride()},
                 {"indices", primitive.getIndexStream()}};
    const auto* const polygons = dynamic_cast<const scene::PolygonMeshPrimitive*>(&primitive);
    if (polygons) json["polygons"] = polygons->getPolygonStream();
    return json;
}

Json geometryDump(scene::IGeometry& geometry) {
    Json json = {{"id", geometry.getID()},
                 {"name", geometry.getName()},
                 {"type", scene::IGeometry::typeToString(geometry.getType())}};
    const auto* const mesh = dynamic_cast<const scene::Mesh*>(&geometry);
    if (!mesh) return json;
    json["streams"] = streamsDump(mesh->getStreams());
    json["vertices"] = mappingsDump(mesh->getVertices());
    json["primitives"] = Json::array();
    for (const auto& primitive : mesh->getMeshPrimitives()) {
        json["primitives"].push_back(primitiveDump(*primitive));
    }
    return json;
}

/// Effects and images: an ID, a name and a file.
template <typename Item>
Json fileItemDump(const Item& item) {
    return {{"id", item.getID()}, {"name", item.getName()}, {"file", item.getFilename()}};
}

Json materialDump(scene::Material& material) {
    Json parameters = Json::array();
    for (const auto& parameter : material.getMaterialParameters()) {
        if (!parameter) continue;
        parameters.push_back({{"name", parameter->getName()},
                              {"type", parameter->getType()},
                              {"value", parameter->getValue()}});
    }
    return {{"id", material.getMaterialID()},
            {"effect", material.getEffectID()},
            {"technique", material.getTechnique()},
            {"parameters", parameters}};
}

Json cameraDump(const scene::Camera& camera) {
    const bool isPerspective = camera.getCameraType() == scene::Camera::PERSPECTIVE;
    return {{"id", camera.getID()},
            {"name", camera.getName()},
            {"type", isPerspective ? "perspective" : "orthographic"},
            {"yFov", jsonNumber(camera.getYFov())},
            {"zNear", jsonNumber(camera.getZNear())},
            {"zFar", jsonNumber(camera.getZFar())}};
}

Json lightDump(const scene::Light& light) {
    static constexpr const char* types[] = {"ambient", "directional", "point", "spot"};
    const auto type = static_cast<std::size_t>(light.getLightType());
    const auto colour = light.getColor();
    return {{"id", light.getID()},
            {"name", light.getName()},
            {"type", type < std::size(types) ? types[type] : "unknown"},
            {"color", {jsonNumber(colour[0]), jsonNumber(colour[1]), jsonNumber(colour[2])}},
            {"constantAttenuation", jsonNumber(light.getConstantAttenuation())},
            {"linearAttenuation", jsonNumber(light.getLinearAttenuation())},
            {"quadraticAttenuation", jsonNumber(light.getQuadraticAttenuation())},
            {"fallOffAngle", jsonNumber(light.getFallOffAngle())},
            {"fallOffExponent", jsonNumber(light.getFallOffExponent())}};
}

Json controllerDump(const scene::Controller& controller) {
    const auto source = controller.getSourceGeometry();
    Json json = {{"id", controller.getID()},
                 {"name", controller.getName()},
                 {"geometry", source ? Json(source->getID()) : Json(nullptr)}};
    const auto skin = controller.getSkin();
    if (!skin) return json;
    Json bindShape = Json::array();
    for (int i = 0; i < 16; ++i) bindShape.push_back(jsonNumber(skin->getBindShapeMatrix()(i)));
    json["skin"] = {{"bindShapeMatrix", bindShape},
                    {"streams", streamsDump(skin->getStreams())},
                    {"vcount", skin->getVCount()},
                    {"v", skin->getV()}};
    return json;
}

Json samplerDump(const scene::Sampler& sampler) {
    static constexpr const char* semantics[] = {"INPUT", "OUTPUT", "IN_TANGENT", "OUT_TANGENT",
                                                "INTERPOLATION"};
    Json inputs = Json::object();
    for (const auto semantic : sampler.getInputsSemantics()) {
        const auto stream = sampler.getStreamBySemantic(semantic);
        if (stream) inputs[semantics[semantic]] = streamDump(*stream);
    }
    return inputs;
}

/// @param path the animations from the library down: one that contains itself ends there.
Json animationDump(const boost::shared_ptr<scene::Animation>& animation,
                   std::set<const scene::Animation*>& path) {
    Json json = {{"id", animation->getID()},
                 {"name", animation->getName()},
                 {"channels", Json::array()},
                 {"children", Json::array()}};
    for (const auto& [sampler, target] : animation->getChannelArray()) {
        json["channels"].push_back({{"target", target},
                                    {"sampler", sampler ? Json(sampler->getId()) : Json(nullptr)},
                                    {"inputs", sampler ? samplerDump(*sampler) : Json::object()}});
    }
    if (!path.insert(animation.get()).second) return json;
    for (const auto& child : animation->getChildAnimations()) {
        json["children"].push_back(animationDump(child, path));
    }
    path.erase(animation.get());
    return json;
}

/// The document as it grows.
class DumpWriter {
public:
    explicit DumpWriter(const boost::function<void(const std::string&)>& write) : write_(write) {
        write_("{");
    }

    void field(const char* name, const Json& value) {
        begin(name);
        write_(jsonText(value, -1));
    }

    /// A list with one line per item of @p items that is there.
    template <typename Items, typename Describe>
    void list(const char* name, const Items& items, const Describe& describe) {
        begin(name);
        write_("[");
        const char* separator = "\n    ";
        for (const auto& item : items) {
            if (!item) continue;
            write_(separator + jsonText(describe(item), -1));
            separator = ",\n    ";
        }
        write_("]");
    }

    void end() { write_("\n}\n"); }

private:
    void begin(const char* name) {
        write_(std::string(isFirst_ ? "\n  " : ",\n  ") + jsonText(name, -1) + ": ");
        isFirst_ = false;
    }

    const boost::function<void(const std::string&)>& write_;
    bool isFirst_ = true;
};

constexpr auto dumpPointee = [](const auto& dump) {
    return [dump](const auto& item) { return dump(*item); };
};

void writeNodes(const scene::SceneManager& scene, DumpWriter& writer) {
    std::vector<boost::shared_ptr<scene::Node>> nodes;
    NodeNumbers numbers;
    // A node that is attached twice is listed where it is met first.
    for (const auto& node : scene.getNodeArray()) {
        if (numbers.emplace(node.get(), nodes.size()).second) nodes.push_back(node);
    }
    writer.list("nodes", nodes, [&](const auto& node) { return nodeDump(*node, numbers); });
}

template <typename Item, typename Get>
std::vector<boost::shared_ptr<Item>> itemsOf(unsigned int count, const Get& get) {
    std::vector<boost::shared_ptr<Item>> items;
    for (unsigned int i = 0; i < count; ++i) items.push_back(get(i));
    return items;
}

void writeViews(const scene::SceneManager& scene, DumpWriter& writer) {
    writer.list("cameras",
                itemsOf<scene::Camera>(scene.getCameraCount(),
                                       [&](unsigned int i) { return scene.getCameraAt(i); }),
                dumpPointee(cameraDump));
    writer.list("cameraInstances",
                itemsOf<scene::CameraInstance>(
                    scene.getCameraInstanceCount(),
                    [&](unsigned int i) { return scene.getCameraInstanceAt(i); }),
                [](const auto& instance) -> Json {
                    const auto camera = instance->getCamera();
                    const auto node = instance->getParentNode();
                    return {{"sid", instance->getSID()},
                            {"camera", camera ? Json(camera->getID()) : Json(nullptr)},
                            {"node", node ? Json(node->getID()) : Json(nullptr)}};
                });
    writer.list("lights", scene.getLightLibrary(), dumpPointee(lightDump));
}

}  // namespace

void dumpScene(scene::SceneManager& scene, const std::string& file,
               const boost::function<void(const std::string& text)>& write) {
    static constexpr const char* axes[] = {"x", "y", "z"};
    DumpWriter writer(write);
    writer.field("format", "vantorix-scene-1");
    writer.field("file", file);
    writer.field("id", scene.getSceneID());
    writer.field("name", scene.getSceneName());
    writer.field("upAxis", axes[scene.getUpAxis()]);
    writer.field("meterUnit", jsonNumber(scene.getMeterUnit()));
    writeNodes(scene, writer);
    std::vector<boost::shared_ptr<scene::IGeometry>> geometries;
    scene.getGeometryManager()->getGeometries(geometries);
    writer.list("geometries", geometries, dumpPointee(geometryDump));
    writer.list("materials", scene.getMaterialList(), dumpPointee(materialDump));
    writer.list("effects", scene.getEffectLibrary(), dumpPointee(fileItemDump<scene::Effect>));
    writer.list("images", scene.getImageLibrary(), dumpPointee(fileItemDump<scene::Image>));
    writeViews(scene, writer);
    writer.list("controllers", scene.getControllersLibrary(), dumpPointee(controllerDump));
    writer.list("animations", scene.getAnimationsLibrary(), [](const auto& animation) {
        std::set<const scene::Animation*> path;
        return animationDump(animation, path);
    });
    writer.end();
}

}  // namespace vantorix::apps::cli
