#include "apps/vantorix/SubdivideCommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/PrintableText.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::apps::cli {
namespace {

constexpr int mostTimes = 12;
constexpr std::uint64_t mostFaces = 8000000;

}  // namespace

void SubdivideCommand::declareOptions(CLI::App& app) {
    app.add_option("--times", times_, "How often, from 1 (if not given) to 12")
        ->type_name("N")
        ->check(CLI::Range(1, mostTimes));
    declareExamples(
        app,
        {"vantorix subdivide robot.glb", "vantorix subdivide robot.glb --times 2 --render fine.png",
         "vantorix subdivide robot.glb --geometry arm --json"},
        "Polygons are cut into triangles first, and a geometry of several materials becomes\n"
        "one geometry for each. Skins follow: new vertices get the mean of the influences at\n"
        "both ends of their edge. Eight million faces are made at most.");
}

/// Subdivision replaces the streams of the whole mesh: right for one primitive only.
GeometryCommand::ImportOptions SubdivideCommand::importOptions() const {
    auto options = GeometryCommand::importOptions();
    options.separatePrimitives = true;
    return options;
}  // namespace vantorix::apps::cli

void SubdivideCommand::check(const std::string& file, const std::vector<Target>& targets) const {
    std::uint64_t faces = 0;
    for (const auto& target : targets) {
        for (const auto& primitive : target.mesh->getMeshPrimitives()) {
            faces += primitive->getCount();
        }
    }
    faces <<= 2 * times_;  // Models have less than 2^25 faces.
    if (faces <= mostFaces) return;
    throw Failure(LIMIT_MET, fmt::format("{}: would have {} faces, {} are allowed", printable(file),
                                         faces, mostFaces));
}

void SubdivideCommand::change(scene::GeometryManager& library, const Target& target) const {
    for (int i = 0; i < times_; ++i) library.subDivideGeometry(target.id, target.controller);
}

}  // namespace vantorix::apps::cli
