#include "apps/vantorix/SceneFacts.h"

#include <filesystem>
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

/// The nodes of a model, told one by one.
class NodeTeller {
public:
    NodeTeller(const ModelSummary& summary, const scene::SceneManager& scene)
        : summary_(summary),
          scene_(scene),
          fileName_(std::filesystem::path(summary.file).filename().string()) {}

    Facts tell(const NodeSummary& node) const;

private:
    std::string pairingText(const NodeSummary& node, const std::string& text) const;

    const ModelSummary& summary_;
    const scene::SceneManager& scene_;
    std::string fileName_;
};

/// Roots are numbered by the process, and some formats have a node named after the file: these are
/// paired with each other.
std::string NodeTeller::pairingText(const NodeSummary& node, const std::string& text) const {
    if (node.parent < 0) return "(root)";
    return node.parent == 0 && text == fileName_ ? "(file)" : text;
}

Facts NodeTeller::tell(const NodeSummary& node) const {
    std::string parent;
    if (node.parent >= 0) {
        const auto& above = summary_.nodes[static_cast<std::size_t>(node.parent)];
        parent = pairingText(above, above.id);
    }
    Facts facts{pairingText(node, node.id),
                {{"parent", parent}, {"name", pairingText(node, node.name)}, {"type", node.type}}};
    if (const auto found = scene_.getNodeByID(node.id)) {
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

Facts sceneFacts(const ModelSummary& summary) {
    return {
        "scene",
        {{"up axis", summary.upAxis}, {"metres per unit", fmt::format("{}", summary.meterUnit)}}};
}

Facts layerFacts(const LayerSummary& layer) {
    return {layer.name, {{"number", std::to_string(layer.id)}}};
}

Facts imageFacts(const ImageSummary& image) { return {image.id, {{"file", image.file}}}; }

Facts cameraFacts(const CameraSummary& camera) {
    return {camera.id,
            {{"type", camera.type},
             {"field of view", fmt::format("{}", camera.yFov)},
             {"from", fmt::format("{}", camera.zNear)},
             {"to", fmt::format("{}", camera.zFar)}}};
}

Facts lightFacts(const LightSummary& light) {
    const auto& colour = light.colour;
    return {light.id,
            {{"type", light.type},
             {"color", fmt::format("{} {} {}", colour.x(), colour.y(), colour.z())}}};
}

Facts controllerFacts(const boost::shared_ptr<scene::Controller>& controller) {
    Facts facts{controller->getID(), {{"name", controller->getName()}}};
    const auto geometry = controller->getSourceGeometry();
    facts.fields.emplace_back("geometry", geometry ? geometry->getID() : "");
    const auto skin = controller->getSkin();
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
    facts.reserve(list.size());
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
    const NodeTeller nodes(summary, scene);
    const auto nodeFacts = [&](const NodeSummary& node) { return nodes.tell(node); };
    const auto shapeFacts = [&](const std::string& id) {
        return geometryFacts(id, geometries->getGeometry(id));
    };
    return {{"scene", {sceneFacts(summary)}},
            {"nodes", listFacts(summary.nodes, nodeFacts)},
            {"layers", listFacts(summary.layers, layerFacts)},
            {"geometries", listFacts(geometries->getIDs(), shapeFacts)},
            {"materials", listFacts(summary.materials, materialFacts)},
            {"images", listFacts(summary.images, imageFacts)},
            {"cameras", listFacts(summary.cameras, cameraFacts)},
            {"lights", listFacts(summary.lights, lightFacts)},
            {"controllers", listFacts(scene.getControllersLibrary(), controllerFacts)}};
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
