#include "apps/vantorix/DiffCommand.h"

#include <algorithm>
#include <iterator>

#include <CLI/CLI.hpp>
#include <fmt/color.h>
#include <nlohmann/json.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

bool areEqual(const std::vector<SectionDifference>& differences) {
    return std::all_of(differences.begin(), differences.end(),
                       [](const SectionDifference& section) { return section.empty(); });
}

std::vector<FactSection> readFacts(const std::string& file, const Console& console) {
    const Progress progress(console, "reading " + file);
    return factsOf(LoadedModel(file));
}

}  // namespace

void DiffCommand::declare(CLI::App& app) {
    app.add_option("A", first_, "Model file")->required()->type_name("");
    app.add_option("B", second_, "Model file")->required()->type_name("");
    declareJson(app, json_);
    declareExamples(
        app, {"vantorix diff before.glb after.glb", "vantorix diff --json a.obj b.dae | jq .nodes"},
        "Things are paired by their IDs: \"-\" stands before what only A has, \"+\"\n"
        "before what only B has, \"~\" before what has changed. Equal models write\n"
        "nothing and end with 0.");
}

ExitCode DiffCommand::run(Console& console) {
    const auto first = readFacts(first_, console);
    const auto differences = compareFacts(first, readFacts(second_, console));
    console.write(json_ ? json(differences) : text(differences, console));
    return areEqual(differences) ? DONE : ANSWER_NO;
}

std::string DiffCommand::text(const std::vector<SectionDifference>& differences,
                              const Console& console) const {
    std::string text;
    const auto out = std::back_inserter(text);
    for (const auto& section : differences) {
        if (section.empty()) continue;
        fmt::format_to(out, "{}\n", console.paint(fmt::emphasis::bold, section.name));
        for (const auto& id : section.onlyFirst) fmt::format_to(out, "  - {}\n", printable(id));
        for (const auto& id : section.onlySecond) fmt::format_to(out, "  + {}\n", printable(id));
        for (const auto& change : section.changes) {
            fmt::format_to(out, "  ~ {}  {}: {} -> {}\n", printable(change.id),
                           printable(change.field),
                           change.first.empty() ? "none" : printable(change.first),
                           change.second.empty() ? "none" : printable(change.second));
        }
    }
    return text;
}

std::string DiffCommand::json(const std::vector<SectionDifference>& differences) const {
    Json json = {{"first", first_}, {"second", second_}, {"equal", areEqual(differences)}};
    for (const auto& section : differences) {
        Json changes = Json::array();
        for (const auto& change : section.changes) {
            changes.push_back({{"id", change.id},
                               {"field", change.field},
                               {"first", change.first},
                               {"second", change.second}});
        }
        json[section.name] = {{"onlyFirst", section.onlyFirst},
                              {"onlySecond", section.onlySecond},
                              {"changes", std::move(changes)}};
    }
    return jsonText(json, 2) + "\n";
}

}  // namespace vantorix::apps::cli
