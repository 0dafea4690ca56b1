#include "apps/vantorix/NormalsCommand.h"

#include <CLI/CLI.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "scene/geometry/GeometryManager.h"

namespace vantorix::apps::cli {

void NormalsCommand::declareOptions(CLI::App& app) {
    declareExamples(app,
                    {"vantorix normals robot.glb", "vantorix normals robot.glb --render smooth.png",
                     "vantorix normals robot.glb --geometry arm --json"},
                    "Corners that share a position and a material share a normal afterwards, so\n"
                    "that edges become smooth. Polygons are cut into triangles first.");
}

void NormalsCommand::change(scene::GeometryManager& library, const Target& target) const {
    library.recalculateVertexNormals(target.id);
}

}  // namespace vantorix::apps::cli
