#include "apps/vantorix/MorphCommand.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <boost/shared_ptr.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "core_api/event/EventBase.h"

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/ImageFiles.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/TextColumns.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

/// Points under a name.
struct PointSet {
    std::string name;
    std::vector<Eigen::Vector3f> points;
};

PointSet positionsOf(const std::string& id, const boost::shared_ptr<scene::IGeometry>& geometry) {
    PointSet set{id, {}};
    const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
    if (!mesh) return set;
    for (const auto& mapping : mesh->getVertices()) {
        if (mapping.semantic != scene::POSITION || !mapping.stream) continue;
        const std::vector<float>& values = mapping.stream->values;
        for (std::size_t i = 0; i + 3 <= values.size(); i += 3) {
            set.points.emplace_back(values[i], values[i + 1], values[i + 2]);
        }
        break;
    }
    return set;
}

/// The positions of all geometries, then the joints.
std::vector<PointSet> pointsOf(const scene::SceneManager& scene) {
    std::vector<PointSet> sets;
    const auto geometries = scene.getGeometryManager();
    for (const auto& id : geometries->getIDs()) {
        sets.push_back(positionsOf(id, geometries->getGeometry(id)));
    }
    sets.push_back({"joints", {}});
    for (const auto& node : scene.getNodeArray()) {
        if (node->getType() != "JOINT") continue;
        sets.back().points.push_back(node->getCombinedTransformations().topRightCorner<3, 1>());
    }
    return sets;
}

}  // namespace

void MorphCommand::declareOptions(CLI::App& app) {
    app.add_option("--ratio", ratio_, "From 1, which keeps A, to 0, which takes B")
        ->required()
        ->type_name("R");
    declareExamples(app,
                    {"vantorix morph smile.glb frown.glb --ratio 0.5 --render between.png",
                     "vantorix morph a.dae b.dae --ratio 0.25 --json"},
                    "Geometries are paired in the order of their IDs, joints by ID. Both models\n"
                    "need as many geometries; those with other numbers of positions stay.");
}

void MorphCommand::check() {
    if (ratio_ >= 0.0f && ratio_ <= 1.0f) return;
    throw Failure(WRONG_USE, fmt::format("--ratio: {} is no number from 0 to 1", ratio_));
}

void MorphCommand::change(const LoadedModel& target, const LoadedModel& source) {
    auto& scene = target.getScene();
    std::string message;
    core::event::EventBase listener(scene.getEventManager());
    listener.registerHandler(
        core::event::EventType("DisplayMessageAt"),
        [&message](const core::event::Event& event) { message = event.getEventData().toString(); });
    const auto before = pointsOf(scene);
    scene.morph(source.getScene().shared_from_this(), ratio_);
    if (!message.empty()) {
        message.resize(message.rfind(". Morphing failed"));  // Where to show it follows.
        throw Failure(ANSWER_NO, printable(targetFile() + ", " + sourceFile() + ": " + message));
    }
    const auto after = pointsOf(scene);
    for (std::size_t i = 0; i < before.size(); ++i) {
        Move move{before[i].name, before[i].points.size(), 0, 0.0f};
        for (std::size_t point = 0; point < move.points; ++point) {
            const float way = (after[i].points[point] - before[i].points[point]).norm();
            move.moved += way != 0.0f;
            move.farthest = std::max(move.farthest, way);
        }
        moves_.push_back(move);
    }
}

render::ImageSource MorphCommand::imagesAfter(const LoadedModel& target, const LoadedModel&) const {
    return imagesOf(target.getImport());
}

std::string MorphCommand::reportText(const Console&) const {
    std::vector<std::vector<std::string>> rows = {{"", "points", "moved", "farthest"}};
    for (const auto& move : moves_) {
        rows.push_back({printable(move.what), std::to_string(move.points),
                        std::to_string(move.moved), fmt::format("{:.5g}", move.farthest)});
    }
    return columnsText(rows);
}

std::string MorphCommand::reportJson() const {
    Json json = {{"target", targetFile()},
                 {"source", sourceFile()},
                 {"ratio", jsonNumber(ratio_)},
                 {"moves", Json::array()}};
    for (const auto& move : moves_) {
        json["moves"].push_back({{"what", move.what},
                                 {"points", move.points},
                                 {"moved", move.moved},
                                 {"farthest", jsonNumber(move.farthest)}});
    }
    return jsonText(json, 2) + "\n";
}

}  // namespace vantorix::apps::cli
