#include "apps/vantorix/SceneFacts.h"

#include <map>

#include <boost/crc.hpp>
#include <boost/shared_ptr.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "core_api/utils/Matrix.h"

#include "apps/render/SceneGuard.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/ModelSummary.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

template <class Number>
std::string checksum(const std::vector<Number>& numbers) {
    boost::crc_optimal<64, 0x42F0E1EBA9EA3693u, ~0ull, ~0ull, true, true> sum;
    sum.process_bytes(numbers.data(), numbers.size() * sizeof(Number));
    return fmt::format("{} numbers, checksum {:016x}", numbers.size(), sum.checksum());
}

std::string instanceFact(const InstanceSummary& instance) {
    std::string text = instance.geometryId;
    for (const auto& [symbol, material] : instance.materials) {
        text += fmt::format(" {}={}", symbol, material);
    }
    if (instance.controllerId.empty()) return text;
    return fmt::format("{} through {} from {}", text, instance.controllerId,
                       fmt::join(instance.skeletons, ", "));
}

/// Roots are compared with each other: they are numbered by the process.
std::string pairingID(const NodeSummary& node) { return node.parent < 0 ? "(root)" : node.id; }

Facts nodeFacts(const NodeSummary& node, const std::vector<NodeSummary>& nodes,
                const scene::SceneManager& scene) {
    const auto parent =
        node.parent < 0 ? std::string() : pairingID(nodes[static_cast<std::size_t>(node.parent)]);
    Facts facts{pairingID(node), {{"parent", parent}, {"name", node.name}, {"type", node.type}}};
    if (const auto found = scene.getNodeByID(node.id)) {
        const core::utils::Matrix matrix(found->getTransformations().data());
        facts.fields.emplace_back("matrix", matrix.toEventDataString());
    }
    facts.fields.emplace_back("layers", fmt::format("{}", fmt::join(node.layers, ", ")));
    facts.fields.emplace_back("cameras", fmt::format("{}", fmt::join(node.cameras, ", ")));
    facts.fields.emplace_back("lights", fmt::format("{}", fmt::join(node.lights, ", ")));
    for (std::size_t i = 0; i < node.instances.size(); ++i) {
        facts.fields.emplace_back(fmt::format("shows {}", i), instanceFact(node.instances[i]));
    }
    return facts;
}

Facts geometryFacts(const std::string& id, const boost::shared_ptr<scene::IGeometry>& geometry) {
    Facts facts{id,
                {{"name", geometry->getName()},
                 {"type", scene::IGeometry::typeToString(geometry->getType())}}};
    const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
    if (!mesh) return facts;
    for (const auto& stream : mesh->getStreams()) {
        const std::vector<float>& values = stream->values;
        facts.fields.emplace_back(fmt::format("stream {}", stream->name),
                                  fmt::format("{} each, {}", stream->stride, checksum(values)));
    }
    for (unsigned int i = 0; i < mesh->getPrimitiveCount(); ++i) {
        const auto part = mesh->getPrimitive(i);
        facts.fields.emplace_back(
            fmt::format("primitive {}", i),
            fmt::format("{} {} of {}, indices: {}", part->getCount(),
                        scene::IMeshPrimitive::typeToString(part->getType()),
                        part->getMaterialSymbol(), checksum(part->getIndexStream())));
    }
    return facts;
}

Facts materialFacts(const MaterialSummary& material) {
    Facts facts{material.id, {{"effect", material.effect}, {"technique", material.technique}}};
    for (const auto& parameter : material.parameters) {
        facts.fields.emplace_back(fmt::format("parameter {}", parameter.name),
                                  fmt::format("{} {}", parameter.type, parameter.value));
    }
    return facts;
}

Facts controllerFacts(const scene::Controller& controller) {
    Facts facts{controller.getID(), {{"name", controller.getName()}}};
    const auto geometry = controller.getSourceGeometry();
    facts.fields.emplace_back("geometry", geometry ? geometry->getID() : "");
    const auto skin = controller.getSkin();
    if (!skin) return facts;
    for (const auto& stream : skin->getStreams()) {
        const std::vector<float>& values = stream->values;
        const auto& names = stream->stringValues;
        facts.fields.emplace_back(
            fmt::format("stream {}", stream->name),
            names.empty() ? checksum(values) : fmt::format("{}", fmt::join(names, ", ")));
    }
    facts.fields.emplace_back("influences", checksum(skin->getV()));
    return facts;
}

/// Numbers repeated IDs: the second "paint" becomes "paint#2".
std::vector<Facts> withUniqueIDs(std::vector<Facts> items) {
    std::map<std::string, int> met;
    for (auto& item : items) {
        const int place = ++met[item.id];
        if (place > 1) item.id += fmt::format("#{}", place);
    }
    return items;
}

template <class List, class FactsOf>
std::vector<Facts> listFacts(const List& list, FactsOf factsOfItem) {
    std::vector<Facts> facts;
    for (const auto& item : list) facts.push_back(factsOfItem(item));
    return withUniqueIDs(std::move(facts));
}

/// Compares two things of one ID, field by field.
void compareItem(const Facts& first, const Facts& second, SectionDifference& difference) {
    std::map<std::string, std::string> others;
    for (const auto& field : second.fields) others.insert(field);
    for (const auto& [field, value] : first.fields) {
        const auto other = others.find(field);
        const auto otherValue = other == others.end() ? std::string() : other->second;
        if (other != others.end()) others.erase(other);
        if (value != otherValue) difference.changes.push_back({first.id, field, value, otherValue});
    }
    for (const auto& [field, value] : others) {
        difference.changes.push_back({first.id, field, "", value});
    }
}

SectionDifference compareSection(const FactSection& first, const FactSection& second) {
    SectionDifference difference{first.name, {}, {}, {}};
    std::map<std::string, const Facts*> others;
    for (const auto& item : second.items) others.emplace(item.id, &item);
    for (const auto& item : first.items) {
        const auto other = others.find(item.id);
        if (other == others.end()) {
            difference.onlyFirst.push_back(item.id);
            continue;
        }
        compareItem(item, *other->second, difference);
        others.erase(other);
    }
    for (const auto& item : second.items) {
        if (others.count(item.id) > 0) difference.onlySecond.push_back(item.id);
    }
    return difference;
}

}  // namespace

std::vector<FactSection> factsOf(const LoadedModel& model) {
    const auto summary = summarize(model);
    auto& scene = model.getScene();
    const render::SceneGuard guard(scene);
    const auto geometries = scene.getGeometryManager();
    return {
        {"scene",
         {{"scene",
           {{"up axis", summary.upAxis},
            {"metres per unit", fmt::format("{}", summary.meterUnit)}}}}},
        {"nodes",
         listFacts(summary.nodes,
                   [&](const auto& node) { return nodeFacts(node, summary.nodes, scene); })},
        {"layers", listFacts(summary.layers,
                             [](const auto& layer) {
                                 return Facts{layer.name, {{"number", std::to_string(layer.id)}}};
                             })},
        {"geometries",
         listFacts(geometries->getIDs(),
                   [&](const auto& id) { return geometryFacts(id, geometries->getGeometry(id)); })},
        {"materials", listFacts(summary.materials, materialFacts)},
        {"images", listFacts(summary.images,
                             [](const auto& image) {
                                 return Facts{image.id, {{"file", image.file}}};
                             })},
        {"cameras", listFacts(summary.cameras,
                              [](const auto& camera) {
                                  return Facts{camera.id,
                                               {{"type", camera.type},
                                                {"field of view", fmt::format("{}", camera.yFov)},
                                                {"from", fmt::format("{}", camera.zNear)},
                                                {"to", fmt::format("{}", camera.zFar)}}};
                              })},
        {"lights", listFacts(summary.lights,
                             [](const auto& light) {
                                 return Facts{
                                     light.id,
                                     {{"type", light.type},
                                      {"color", fmt::format("{} {} {}", light.colour.x(),
                                                            light.colour.y(), light.colour.z())}}};
                             })},
        {"controllers", listFacts(scene.getControllersLibrary(), [](const auto& controller) {
             return controllerFacts(*controller);
         })}};
}

std::vector<SectionDifference> compareFacts(const std::vector<FactSection>& first,
                                            const std::vector<FactSection>& second) {
    std::vector<SectionDifference> differences;
    for (std::size_t i = 0; i < first.size() && i < second.size(); ++i) {
        differences.push_back(compareSection(first[i], second[i]));
    }
    return differences;
}

}  // namespace vantorix::apps::cli
