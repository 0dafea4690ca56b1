#include "apps/vantorix/KeysCommand.h"

#include <CLI/CLI.hpp>
#include <fmt/color.h>
#include <nlohmann/json.hpp>

#include "apps/vantorix/Clips.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"
#include "apps/vantorix/TextColumns.h"
#include "apps/vantorix/Timeline.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

std::vector<ClipSummary> clipsOf(const std::string& file, const Console& console) {
    const Progress progress(console, "reading " + file);
    const LoadedModel model(file);
    requireClips(model);
    return summarizeClips(model);
}

Json clipJson(const ClipSummary& clip) {
    Json times = Json::array();
    for (const auto time : clip.frameTimes) times.push_back(jsonNumber(time));
    Json channels = Json::array();
    for (const auto& channel : clip.channels) {
        channels.push_back({{"target", channel.target},
                            {"keys", channel.keys},
                            {"stride", channel.stride},
                            {"first", jsonNumber(channel.first)},
                            {"last", jsonNumber(channel.last)},
                            {"interpolation", channel.interpolation}});
    }
    return {{"id", clip.id},
            {"name", clip.name},
            {"seconds", clip.seconds},
            {"frameTimes", times},
            {"channels", channels}};
}

std::string timesText(const std::vector<float>& times) {
    if (times.empty()) return "none";
    return fmt::format("{}, from {:.6g} s to {:.6g} s", times.size(), times.front(), times.back());
}

std::string clipText(const ClipSummary& clip, const Console& console) {
    std::string text = console.paint(fmt::emphasis::bold, printable(clip.id));
    if (clip.name != clip.id) text += fmt::format(" \"{}\"", printable(clip.name));
    text += fmt::format("  {:.6g} s, {} channels, frame times {}\n", clip.seconds,
                        clip.channels.size(), timesText(clip.frameTimes));
    std::vector<std::vector<std::string>> rows = {
        {"  target", "keys", "floats", "first s", "last s", "interpolation"}};
    for (const auto& channel : clip.channels) {
        rows.push_back({"  " + printable(channel.target), std::to_string(channel.keys),
                        std::to_string(channel.stride), fmt::format("{:.6g}", channel.first),
                        fmt::format("{:.6g}", channel.last), printable(channel.interpolation)});
    }
    return text + columnsText(rows);
}

}  // namespace

void KeysCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    declareJson(app, json_);
    declareExamples(
        app, {"vantorix keys robot.glb", "vantorix keys --json robot.glb | jq .clips[0].id"},
        "Every channel holds its first value from a second before its clip on, so that\n"
        "the clip begins with it. A model without animation ends with exit code 1.");
}

ExitCode KeysCommand::run(Console& console) {
    const auto clips = clipsOf(file_, console);
    if (json_) {
        Json list = Json::array();
        for (const auto& clip : clips) list.push_back(clipJson(clip));
        console.write(jsonText({{"file", file_}, {"clips", list}}, 2) + "\n");
        return DONE;
    }
    for (const auto& clip : clips) {
        console.write((&clip == &clips.front() ? "" : "\n") + clipText(clip, console));
    }
    return DONE;
}

}  // namespace vantorix::apps::cli
