#include "apps/vantorix/ModelSummary.h"

#include <algorithm>
#include <numeric>

#include <boost/shared_ptr.hpp>

#include "apps/render/SceneGuard.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/TreeSummary.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::cli {
namespace {

using scene::SceneManager;

std::size_t tuplesOf(const scene::Stream& stream) {
    return stream.stride > 0 ? stream.values.size() / static_cast<std::size_t>(stream.stride) : 0;
}

void addMesh(const scene::Mesh& mesh, GeometrySummary& summary) {
    for (const auto& stream : mesh.getStreams()) {
        if (stream) summary.streams.push_back({stream->name, stream->stride, tuplesOf(*stream)});
    }
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        summary.primitives.push_back({scene::IMeshPrimitive::typeToString(primitive->getType()),
                                      primitive->getCount(), primitive->getMaterialSymbol()});
    }
}

std::vector<GeometrySummary> summarizeGeometries(const SceneManager& scene) {
    std::vector<boost::shared_ptr<scene::IGeometry>> geometries;
    scene.getGeometryManager()->getGeometries(geometries);
    std::vector<GeometrySummary> summaries;
    for (const auto& geometry : geometries) {
        GeometrySummary summary;
        summary.id = geometry->getID();
        summary.name = geometry->getName();
        summary.type = scene::IGeometry::typeToString(geometry->getType());
        summary.box = boxBetween(geometry->getBVMin(), geometry->getBVMax());
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
        if (mesh) addMesh(*mesh, summary);
        summaries.push_back(summary);
    }
    return summaries;
}

std::vector<ParameterSummary> summarizeParameters(const scene::Material& material) {
    std::vector<ParameterSummary> parameters;
    for (const auto& parameter : material.getMaterialParameters()) {
        if (!parameter) continue;
        parameters.push_back({parameter->getName(), parameter->getType(), parameter->getValue()});
    }
    return parameters;
}

std::vector<MaterialSummary> summarizeMaterials(const SceneManager& scene) {
    std::vector<MaterialSummary> summaries;
    for (const auto& material : scene.getMaterialList()) {
        summaries.push_back({material->getMaterialID(), material->getEffectID(),
                             material->getTechnique(), summarizeParameters(*material)});
    }
    return summaries;
}

std::vector<ImageSummary> summarizeImages(const SceneManager& scene) {
    std::vector<ImageSummary> summaries;
    for (const auto& image : scene.getImageLibrary()) {
        summaries.push_back({image->getID(), image->getFilename()});
    }
    return summaries;
}

std::vector<CameraSummary> summarizeCameras(const SceneManager& scene) {
    std::vector<CameraSummary> summaries;
    for (unsigned int i = 0; i < scene.getCameraCount(); ++i) {
        const auto camera = scene.getCameraAt(i);
        const bool isFlat = camera->getCameraType() == scene::Camera::ORTHOGRAPHIC;
        summaries.push_back({camera->getID(), camera->getName(),
                             isFlat ? "orthographic" : "perspective", camera->getYFov(),
                             camera->getZNear(), camera->getZFar()});
    }
    return summaries;
}

std::string lightTypeName(scene::Light::LightType type) {
    switch (type) {
        case scene::Light::AMBIENT:
            return "ambient";
        case scene::Light::DIRECTIONAL:
            return "directional";
        case scene::Light::POINT:
            return "point";
        case scene::Light::SPOT:
            return "spot";
    }
    return "other";
}

std::vector<LightSummary> summarizeLights(const SceneManager& scene) {
    std::vector<LightSummary> summaries;
    for (const auto& light : scene.getLightLibrary()) {
        summaries.push_back({light->getID(), light->getName(), lightTypeName(light->getLightType()),
                             light->getColor()});
    }
    return summaries;
}

std::vector<ControllerSummary> summarizeControllers(const SceneManager& scene) {
    std::vector<ControllerSummary> summaries;
    for (const auto& controller : scene.getControllersLibrary()) {
        ControllerSummary summary{controller->getID(), controller->getName(), "", 0, 0, 0};
        const auto geometry = controller->getSourceGeometry();
        if (geometry) summary.geometryId = geometry->getID();
        const auto skin = controller->getSkin();
        if (skin) {
            const auto joints = skin->getJointsInput("JOINT");
            summary.joints = joints ? joints->stringValues.size() : 0;
            summary.vertices = skin->getVCount().size();
            summary.influences = skin->getV().size() / 2;
        }
        summaries.push_back(summary);
    }
    return summaries;
}

/// Layers are numbered from 0 without gaps in a scene that was not merged.
std::vector<LayerSummary> summarizeLayers(const SceneManager& scene,
                                          const std::vector<NodeSummary>& nodes) {
    std::map<std::string, std::size_t> members;
    for (const auto& node : nodes) {
        for (const auto& layer : node.layers) ++members[layer];
    }
    std::vector<LayerSummary> summaries;
    const auto layers = scene.getLayerManager();
    for (int id = 0;; ++id) {
        const std::string name = layers->getLayerName(id);
        if (name.empty()) return summaries;
        summaries.push_back({id, name, members[name]});
    }
}

Counts countShown(const ModelSummary& summary) {
    std::map<std::string, std::size_t> facesById;
    std::map<std::string, std::size_t> primitivesById;
    for (const auto& geometry : summary.geometries) {
        facesById[geometry.id] = geometry.faces();
        primitivesById[geometry.id] = geometry.primitives.size();
    }
    std::size_t instances = 0, primitives = 0, faces = 0, cameras = 0, lights = 0, controllers = 0;
    for (const auto& node : summary.nodes) {
        instances += node.instances.size();
        for (const auto& instance : node.instances) {
            primitives += primitivesById[instance.geometryId];
            faces += facesById[instance.geometryId];
            controllers += !instance.controllerId.empty();
        }
        cameras += node.cameras.size();
        lights += node.lights.size();
    }
    return {{"nodes", summary.nodes.size()},
            {"geometries", instances},
            {"primitives", primitives},
            {"faces", faces},
            {"cameras", cameras},
            {"lights", lights},
            {"controllers", controllers}};
}

Counts countLibraries(const SceneManager& scene) {
    return {{"geometries", scene.getGeometryManager()->getCount()},
            {"images", scene.getImageCount()},
            {"effects", scene.getEffectLibrary().size()},
            {"materials", scene.getMaterialList().size()},
            {"cameras", scene.getCameraCount()},
            {"lights", scene.getLightLibrary().size()},
            {"controllers", scene.getControllersLibrary().size()},
            {"animations", scene.getAnimationsLibrary().size()},
            {"evaluators", scene.getEvaluatorsCount()}};
}

}  // namespace

std::string NodeSummary::kind() const {
    std::string kinds;
    const auto add = [&kinds](bool has, const char* kind) {
        if (has) kinds += (kinds.empty() ? "" : "+") + std::string(kind);
    };
    const auto isControlled = [](const auto& instance) { return !instance.controllerId.empty(); };
    add(!std::all_of(instances.begin(), instances.end(), isControlled), "geometry");
    add(!cameras.empty(), "camera");
    add(!lights.empty(), "light");
    add(std::any_of(instances.begin(), instances.end(), isControlled), "controller");
    return kinds.empty() ? "group" : kinds;
}

std::size_t GeometrySummary::faces() const {
    return std::accumulate(
        primitives.begin(), primitives.end(), std::size_t{0},
        [](std::size_t sum, const PrimitiveSummary& primitive) { return sum + primitive.faces; });
}

ModelSummary summarize(const LoadedModel& model) {
    SceneManager& scene = model.getScene();
    const render::SceneGuard guard(scene);
    ModelSummary summary;
    summary.file = model.getFile();
    summary.format = model.getImport().format;
    summary.name = scene.getSceneName();
    summary.upAxis = std::string(1, "XYZ"[scene.getUpAxis() % 3]);
    summary.meterUnit = scene.getMeterUnit();
    summary.nodes = summarizeTree(*scene.getRoot());
    summary.box = summary.nodes.front().box;
    summary.layers = summarizeLayers(scene, summary.nodes);
    summary.geometries = summarizeGeometries(scene);
    summary.materials = summarizeMaterials(scene);
    summary.images = summarizeImages(scene);
    summary.cameras = summarizeCameras(scene);
    summary.lights = summarizeLights(scene);
    summary.controllers = summarizeControllers(scene);
    summary.counts = countShown(summary);
    summary.libraries = countLibraries(scene);
    summary.notes = model.getImport().report.getNotes();
    return summary;
}

}  // namespace vantorix::apps::cli
