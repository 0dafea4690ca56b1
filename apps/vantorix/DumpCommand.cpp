#include "apps/vantorix/DumpCommand.h"

#include <CLI/CLI.hpp>

#include "apps/render/SceneGuard.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/Progress.h"
#include "apps/vantorix/SceneDump.h"

namespace vantorix::apps::cli {

void DumpCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    declareExamples(
        app, {"vantorix dump robot.glb > robot.json", "vantorix dump robot.glb | jq '.nodes[].id'"},
        "The order is that of the tree and of the libraries: equal scenes give equal\n"
        "texts. Numbers read back to the same floats.");
}

ExitCode DumpCommand::run(Console& console) {
    const Progress progress(console, "reading " + file_);
    const LoadedModel model(file_);
    const render::SceneGuard guard(model.getScene());
    dumpScene(model.getScene(), file_, [&](const std::string& text) { console.write(text); });
    return DONE;
}

}  // namespace vantorix::apps::cli
