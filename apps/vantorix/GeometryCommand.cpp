#include "apps/vantorix/GeometryCommand.h"

#include <chrono>
#include <map>

#include <CLI/CLI.hpp>
#include <fmt/color.h>
#include <nlohmann/json.hpp>

#include "apps/render/Background.h"
#include "apps/render/SceneGuard.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/ContactSheet.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PictureMaker.h"
#include "apps/vantorix/PictureOptions.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"
#include "apps/vantorix/TextColumns.h"
#include "scene/controller/Controller.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

Json sizeJson(const GeometrySize& size) {
    return {{"positions", size.positions},
            {"normals", size.normals},
            {"faces", size.faces},
            {"influences", size.influences},
            {"bytes", size.bytes}};
}

std::string changeText(std::size_t before, std::size_t after) {
    return before == after ? fmt::format("{}", before) : fmt::format("{} -> {}", before, after);
}

std::vector<std::string> rowOf(const std::string& name, const GeometrySize& before,
                               const GeometrySize& after, double milliseconds) {
    return {name,
            changeText(before.positions, after.positions),
            changeText(before.normals, after.normals),
            changeText(before.faces, after.faces),
            changeText(before.influences, after.influences),
            changeText(before.bytes, after.bytes),
            fmt::format("{:.2f}", milliseconds)};
}

template <class Targets>
std::string tableText(const Targets& targets) {
    std::vector<std::vector<std::string>> rows = {
        {"geometry", "positions", "normals", "faces", "influences", "bytes", "ms"}};
    GeometrySize before, after;
    double milliseconds = 0.0;
    for (const auto& target : targets) {
        rows.push_back(
            rowOf(printable(target.id), target.before, target.after, target.milliseconds));
        before += target.before;
        after += target.after;
        milliseconds += target.milliseconds;
    }
    if (targets.size() != 1) rows.push_back(rowOf("all", before, after, milliseconds));
    return columnsText(rows);
}

template <class Targets>
std::string tableJson(const std::string& file, const char* command, const Targets& targets) {
    Json list = Json::array();
    for (const auto& target : targets) {
        list.push_back({{"id", target.id},
                        {"name", target.mesh->getName()},
                        {"before", sizeJson(target.before)},
                        {"after", sizeJson(target.after)},
                        {"milliseconds", target.milliseconds}});
    }
    return jsonText({{"file", file}, {"command", command}, {"geometries", list}}, 2) + "\n";
}

/// The first skin on each geometry.
std::map<scene::IGeometry*, boost::shared_ptr<scene::Controller>> skinsIn(
    const scene::SceneManager& scene) {
    std::map<scene::IGeometry*, boost::shared_ptr<scene::Controller>> skins;
    for (const auto& controller : scene.getControllersLibrary()) {
        const auto source = controller->getSkin() ? controller->getSourceGeometry() : nullptr;
        if (source) skins.emplace(source.get(), controller);
    }
    return skins;
}

/// Nothing changes polygons; the importer leaves none.
bool hasTrianglesOnly(const scene::Mesh& mesh) {
    for (const auto& primitive : mesh.getMeshPrimitives()) {
        if (primitive->getType() != scene::IMeshPrimitive::TRIANGLES) return false;
    }
    return true;
}

[[noreturn]] void refuseGeometry(const std::string& file, const std::string& wanted,
                                 const std::vector<std::string>& ids) {
    std::string text = file + ": there is no geometry \"" + wanted + "\"; the model has ";
    if (ids.empty()) text += "none";
    for (const auto& id : ids) text += (&id == &ids.front() ? "" : ", ") + id;
    throw Failure(WRONG_USE, printable(text));
}

}  // namespace

void GeometryCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    app.add_option("--geometry", geometry_,
                   "ID or name of the geometry to change, all if not given")
        ->type_name("ID");
    declareOptions(app);
    declarePicture(app, "before and after", picture_, size_);
    declareJson(app, json_);
}

ExitCode GeometryCommand::run(Console& console) {
    std::vector<Target> targets;
    if (picture_.empty()) {
        const Progress progress(console, "changing " + file_);
        const LoadedModel model(file_, {}, importOptions());
        targets = targetsIn(model, console);
        changeAll(model, targets);
    } else {
        runWithPicture(targets, console);
    }
    console.write(json_ ? tableJson(file_, getName(), targets) : tableText(targets));
    return DONE;
}

GeometryCommand::ImportOptions GeometryCommand::importOptions() const {
    ImportOptions options;
    options.triangulate = true;
    return options;
}

void GeometryCommand::check(const std::string&, const std::vector<Target>&) const {}

void GeometryCommand::runWithPicture(std::vector<Target>& targets, Console& console) const {
    render::View view;
    parseSize(size_, view);
    ContactSheet sheet(view.width, view.height, 2);
    view.width = sheet.getCellWidth();
    view.height = sheet.getCellHeight();
    view.wires = showsEdges();
    const Progress progress(console, "changing " + file_);
    PictureMaker maker(console);
    const auto model = maker.load(file_, importOptions());
    targets = targetsIn(*model, console);
    sheet.add(maker.draw(*model, view), 0);
    changeAll(*model, targets);
    sheet.add(maker.draw(*model, view), 1);
    auto picture = sheet.take();
    render::putBehind({}, picture);
    savePicture(picture, picture_);
}

std::vector<GeometryCommand::Target> GeometryCommand::targetsIn(const LoadedModel& model,
                                                                const Console& console) const {
    std::vector<Target> targets;
    std::vector<std::string> ids;
    const auto skins = skinsIn(model.getScene());
    const auto library = model.getScene().getGeometryManager();
    for (const auto& id : library->getIDs()) {
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(library->getGeometry(id));
        if (!mesh) continue;
        ids.push_back(id);
        if (!geometry_.empty() && geometry_ != id && geometry_ != mesh->getName()) continue;
        if (hasTrianglesOnly(*mesh)) {
            const auto skin = skins.find(mesh.get());
            targets.push_back({id, mesh, skin == skins.end() ? nullptr : skin->second, {}, {}, 0});
        } else {
            console.warn(printable(file_ + ": geometry \"" + id + "\" has polygons and stays"));
        }
    }
    if (targets.empty() && !geometry_.empty()) refuseGeometry(file_, geometry_, ids);
    check(file_, targets);
    return targets;
}

void GeometryCommand::changeAll(const LoadedModel& model, std::vector<Target>& targets) const {
    using Clock = std::chrono::steady_clock;
    const render::SceneGuard guard(model.getScene());
    const auto library = model.getScene().getGeometryManager();
    for (auto& target : targets) {
        target.before = measure(*target.mesh, target.controller);
        const auto start = Clock::now();
        change(*library, target);
        target.milliseconds =
            std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        target.after = measure(*target.mesh, target.controller);
    }
}

}  // namespace vantorix::apps::cli
