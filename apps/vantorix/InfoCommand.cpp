#include "apps/vantorix/InfoCommand.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/ModelSummary.h"
#include "apps/vantorix/Progress.h"
#include "apps/vantorix/SummaryJson.h"
#include "apps/vantorix/SummaryText.h"

namespace vantorix::apps::cli {
namespace {

ModelSummary summaryOf(const std::string& file, const Console& console) {
    const Progress progress(console, "reading " + file);
    return summarize(LoadedModel(file));
}

}  // namespace

void InfoCommand::declare(CLI::App& app) {
    declareModels(app, files_);
    declareJson(app, json_);
    declareExamples(app, {"vantorix info robot.glb", "vantorix info --json *.obj > models.json",
                          "vantorix info --json robot.glb | jq .counts"});
}

ExitCode InfoCommand::run(Console& console) {
    return json_ ? writeJson(console) : writeText(console);
}

ExitCode InfoCommand::writeText(const Console& console) const {
    bool isFirst = true;
    return forEachFile(files_, console, [&](const std::string& file) {
        const auto text = summaryText(summaryOf(file, console), console);
        console.write(isFirst ? text : "\n" + text);
        console.flush();
        isFirst = false;
    });
}

ExitCode InfoCommand::writeJson(const Console& console) const {
    auto documents = nlohmann::ordered_json::array();
    const ExitCode code = forEachFile(files_, console, [&](const std::string& file) {
        documents.push_back(summaryJson(summaryOf(file, console)));
    });
    console.write(documentsText(documents, files_.size()));
    return code;
}

}  // namespace vantorix::apps::cli
