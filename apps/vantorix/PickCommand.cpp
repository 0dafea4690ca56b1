#include "apps/vantorix/PickCommand.h"

#include <limits>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "apps/render/Background.h"
#include "apps/render/PixelRay.h"
#include "apps/render/SceneGuard.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PictureMaker.h"
#include "apps/vantorix/PictureOptions.h"
#include "apps/vantorix/PosedSkins.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/spatial/Octree.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* remarks =
    "A pixel counts from the left and the top of the picture that \"vantorix render\" would\n"
    "make in that size. Skinned models are met where they are drawn. Polygons are cut into\n"
    "triangles first. The exit code is 1 when nothing is met.";

const import::ImportOptions& triangulated() {
    static const import::ImportOptions options = [] {
        import::ImportOptions made;
        made.triangulate = true;
        return made;
    }();
    return options;
}

/// The IDs of the nodes from the root to @p node.
std::vector<std::string> pathOf(boost::shared_ptr<scene::Node> node) {
    std::vector<std::string> path;
    for (; node; node = node->getParent()) path.insert(path.begin(), node->getID());
    return path;
}

std::string pathText(const std::vector<std::string>& path) {
    std::string text;
    for (const auto& id : path) text += (text.empty() ? "" : " / ") + printable(id);
    return text;
}

std::string vectorText(const Eigen::Vector3f& vector) {
    return fmt::format("{:g} {:g} {:g}", vector.x(), vector.y(), vector.z());
}

Json vectorJson(const Eigen::Vector3f& vector) {
    return {jsonNumber(vector.x()), jsonNumber(vector.y()), jsonNumber(vector.z())};
}

std::string hitText(const scene::PickHit& hit) {
    return fmt::format(
        "node       {}\ngeometry   {}\nface       {} of primitive {}\ndistance   {:g}\n"
        "position   {}\nweights    {}\n",
        pathText(pathOf(hit.node)), printable(hit.geometry->getID()), hit.faceIndex,
        hit.primitiveIndex, hit.distance, vectorText(hit.position), vectorText(hit.barycentric));
}

Json hitJson(const scene::PickHit& hit) {
    return {{"path", pathOf(hit.node)},
            {"node", hit.node->getID()},
            {"geometry", hit.geometry->getID()},
            {"primitive", hit.primitiveIndex},
            {"face", hit.faceIndex},
            {"distance", jsonNumber(hit.distance)},
            {"position", vectorJson(hit.position)},
            {"weights", vectorJson(hit.barycentric)}};
}

}  // namespace

void PickCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    auto* const ray = app.add_option("--ray", ray_, "Origin and direction of the ray in the world")
                          ->type_name("X,Y,Z,DX,DY,DZ")
                          ->delimiter(',')
                          ->expected(6);
    app.add_option("--pixel", pixel_, "A pixel of the picture")
        ->type_name("X,Y")
        ->delimiter(',')
        ->expected(2)
        ->excludes(ray);
    app.add_flag("--all", all_, "All faces on the ray, the nearest first");
    app.add_option("--render", output_, "PNG file for the picture, with a mark at the hit")
        ->type_name("FILE");
    declareSize(app, size_);
    app.add_option("--camera", view_.camera, "ID or name of the camera to look through")
        ->type_name("ID");
    declareJson(app, json_);
    declareExamples(app,
                    {"vantorix pick robot.glb --pixel 400,300",
                     "vantorix pick robot.glb --pixel 400,300 --render hit.png",
                     "vantorix pick robot.glb --ray 0,0,10,0,0,-1 --all --json"},
                    remarks);
}

ExitCode PickCommand::run(Console& console) {
    if (ray_.empty() == pixel_.empty()) {
        throw Failure(WRONG_USE, "pick takes either --ray or --pixel; see vantorix pick --help");
    }
    parseSize(size_, view_);
    const Progress progress(console, "looking into " + file_);
    std::unique_ptr<LoadedModel> model;
    render::Rendering rendering;
    if (!pixel_.empty() || !output_.empty()) {
        PictureMaker maker(console);
        model = maker.load(file_, triangulated());
        rendering = maker.render(*model, view_);
    } else {
        model = std::make_unique<LoadedModel>(file_, nullptr, triangulated());
    }
    const auto ray = rayOf(rendering);
    const auto hits = castAt(*model, ray);
    if (!output_.empty()) saveMarked(std::move(rendering), hits, console);
    console.write(json_ ? jsonOf(ray, hits) : textOf(hits));
    return hits.empty() ? ANSWER_NO : DONE;
}

scene::Ray PickCommand::rayOf(const render::Rendering& rendering) const {
    if (!ray_.empty()) {
        return {Eigen::Vector3f(ray_[0], ray_[1], ray_[2]),
                Eigen::Vector3f(ray_[3], ray_[4], ray_[5])};
    }
    const int x = pixel_[0];
    const int y = pixel_[1];
    if (x < 0 || y < 0 || x >= view_.width || y >= view_.height) {
        throw Failure(WRONG_USE, fmt::format("--pixel: {},{} lies outside the picture of {}x{}", x,
                                             y, view_.width, view_.height));
    }
    const auto ray = rayThrough(rendering.viewpoint, view_.width, view_.height, x, y);
    return {ray.origin.cast<float>(), ray.direction.cast<float>()};
}

PickCommand::Hits PickCommand::castAt(const LoadedModel& model, const scene::Ray& ray) const {
    auto& scene = model.getScene();
    const render::SceneGuard guard(scene);
    const PosedSkins skins(scene);
    scene::Octree octree;
    octree.setSceneNode(scene.getRoot());
    // One ray: a tree to walk would be made for nothing.
    octree.calculate(0, std::numeric_limits<int>::max());
    if (all_) return octree.pickAll(ray);
    const auto nearest = octree.pick(ray);
    return nearest ? Hits{*nearest} : Hits();
}

void PickCommand::saveMarked(render::Rendering rendering, const Hits& hits,
                             const Console& console) const {
    render::putBehind({}, rendering.picture);
    if (!hits.empty()) {
        const auto place = pixelOf(rendering.viewpoint, view_.width, view_.height,
                                   hits.front().position.cast<double>());
        if (place) {
            drawMarker(*place, rendering.picture);
        } else {
            console.warn(printable(file_) + ": the hit lies outside the picture");
        }
    }
    savePicture(rendering.picture, output_);
}

std::string PickCommand::textOf(const Hits& hits) const {
    if (hits.empty()) return "nothing is met\n";
    std::string text;
    for (const auto& hit : hits) text += (text.empty() ? "" : "\n") + hitText(hit);
    return text;
}

std::string PickCommand::jsonOf(const scene::Ray& ray, const Hits& hits) const {
    Json list = Json::array();
    for (const auto& hit : hits) list.push_back(hitJson(hit));
    return jsonText({{"file", file_},
                     {"ray",
                      {{"origin", vectorJson(ray.getOrigin())},
                       {"direction", vectorJson(ray.getDirection())}}},
                     {"hits", list}},
                    2) +
           "\n";
}

}  // namespace vantorix::apps::cli
