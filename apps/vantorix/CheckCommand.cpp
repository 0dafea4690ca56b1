#include "apps/vantorix/CheckCommand.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "apps/check/SceneCheck.h"
#include "apps/render/SceneGuard.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {
namespace {

using check::Finding;
using check::Findings;
using Json = nlohmann::ordered_json;

Findings findingsOf(const std::string& file, const Console& console) {
    const Progress progress(console, "checking " + file);
    const LoadedModel model(file);
    const render::SceneGuard guard(model.getScene());
    return check::SceneCheck(model.getScene()).run();
}

/// "3, 7-19".
std::string rangesText(const std::vector<std::size_t>& positions) {
    std::string text;
    for (std::size_t first = 0; first < positions.size();) {
        std::size_t last = first;
        while (last + 1 < positions.size() && positions[last + 1] == positions[last] + 1) ++last;
        text += fmt::format("{}{}", text.empty() ? "" : ", ", positions[first]);
        if (last > first) text += fmt::format("-{}", positions[last]);
        first = last + 1;
    }
    return text;
}

std::string findingText(const Finding& finding) {
    std::string text = fmt::format("  {}: {}", printable(finding.place), printable(finding.text));
    if (!finding.positions.empty()) text += " " + rangesText(finding.positions);
    return text + "\n";
}

/// One section per kind that was found.
std::string findingsText(const std::string& file, const Findings& findings,
                         const Console& console) {
    const auto title = [&console](const std::string& text) {
        return console.paint(fmt::emphasis::bold, text);
    };
    if (findings.empty()) return title(printable(file)) + ": nothing found\n";
    std::string text = fmt::format("{}: {} finding{}\n", title(printable(file)), findings.size(),
                                   findings.size() == 1 ? "" : "s");
    for (int kind = 0; kind < Finding::KIND_COUNT; ++kind) {
        std::string section;
        for (const auto& finding : findings) {
            if (finding.kind == kind) section += findingText(finding);
        }
        if (section.empty()) continue;
        text += "\n" + title(check::titleOf(static_cast<Finding::Kind>(kind))) + "\n" + section;
    }
    return text;
}

Json findingsJson(const std::string& file, const Findings& findings) {
    Json list = Json::array();
    for (const auto& finding : findings) {
        Json json = {{"kind", check::nameOf(finding.kind)},
                     {"place", finding.place},
                     {"text", finding.text}};
        if (!finding.positions.empty()) json["positions"] = finding.positions;
        list.push_back(std::move(json));
    }
    return {{"file", file}, {"findings", std::move(list)}};
}

}  // namespace

void CheckCommand::declare(CLI::App& app) {
    declareModels(app, files_);
    declareJson(app, json_);
    declareExamples(
        app,
        {"vantorix check robot.glb", "vantorix check --json robot.glb | jq '.findings[].kind'"},
        "Exit code 1 when something was found.");
}

ExitCode CheckCommand::run(Console& console) {
    const ExitCode code = json_ ? writeJson(console) : writeText(console);
    if (code != DONE) return code;
    return isClean_ ? DONE : ANSWER_NO;
}

ExitCode CheckCommand::writeText(const Console& console) {
    bool isFirst = true;
    return forEachFile(files_, console, [&](const std::string& file) {
        const auto findings = findingsOf(file, console);
        isClean_ = isClean_ && findings.empty();
        const auto text = findingsText(file, findings, console);
        console.write(isFirst ? text : "\n" + text);
        console.flush();
        isFirst = false;
    });
}

ExitCode CheckCommand::writeJson(const Console& console) {
    Json documents = Json::array();
    const ExitCode code = forEachFile(files_, console, [&](const std::string& file) {
        const auto findings = findingsOf(file, console);
        isClean_ = isClean_ && findings.empty();
        documents.push_back(findingsJson(file, findings));
    });
    console.write(documentsText(documents, files_.size()));
    return code;
}

}  // namespace vantorix::apps::cli
