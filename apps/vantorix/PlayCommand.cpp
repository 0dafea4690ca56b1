#include "apps/vantorix/PlayCommand.h"

#include <filesystem>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "apps/render/SceneReader.h"
#include "apps/vantorix/ClipPlayer.h"
#include "apps/vantorix/Clips.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/ContactSheet.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PictureMaker.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"
#include "apps/vantorix/RealtimePlay.h"
#include "scene/animation/Animation.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;
using boost::posix_time::time_duration;

constexpr int mostFrames = 1000;
constexpr double mostSeconds = 60.0;

double secondsOf(time_duration time) {
    return static_cast<double>(time.total_milliseconds()) / 1000.0;
}

/// Equal parts of the clip; its end is left out, since a loop is at its beginning again.
std::vector<time_duration> frameTimes(time_duration duration, std::size_t frames) {
    std::vector<time_duration> times;
    const double milliseconds = static_cast<double>(duration.total_milliseconds());
    for (std::size_t i = 0; i < frames; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(frames);
        times.push_back(
            boost::posix_time::milliseconds(static_cast<std::int64_t>(milliseconds * share)));
    }
    return times;
}

/// What all frames show together, so that the view stands still.
render::Box boundsOf(const LoadedModel& model, ClipPlayer& player,
                     const std::vector<time_duration>& times) {
    render::Box whole;
    for (const auto& time : times) {
        player.show(time);
        const auto box = render::readScene(model.getScene()).box;
        if (&time == &times.front()) whole = box;
        whole.least = whole.least.cwiseMin(box.least);
        whole.most = whole.most.cwiseMax(box.most);
    }
    return whole;
}

void makeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    if (error) throw Failure(FILE_REFUSED, printable(folder) + ": " + error.message());
}

Json reportJson(const RealtimeReport& report) {
    return {{"playedSeconds", report.seconds},
            {"cycles", report.cycles},
            {"poses", report.poses},
            {"SyncScene", report.syncEvents},
            {"intervalMs", report.interval},
            {"jitterMs", report.jitter},
            {"longestIntervalMs", report.longestInterval},
            {"updateMs", report.update},
            {"longestUpdateMs", report.longestUpdate}};
}

std::string valueText(const Json& value) {
    if (value.is_string()) return printable(value.get<std::string>());
    return value.is_number_float() ? fmt::format("{:.6g}", value.get<double>()) : value.dump();
}

/// One line for each value; lists and objects one level down get their own.
std::string reportText(const Json& report) {
    std::string text;
    const auto addLine = [&text](const std::string& name, const Json& value) {
        text += fmt::format("{:<20} {}\n", name, valueText(value));
    };
    for (const auto& [name, value] : report.items()) {
        if (value.is_object()) {
            for (const auto& [innerName, inner] : value.items()) addLine(innerName, inner);
        } else if (value.is_array()) {
            addLine(name, value.size());
        } else {
            addLine(name, value);
        }
    }
    return text;
}

}  // namespace

void PlayCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    app.add_option("--clip", clip_, "ID or name of the clip to play, the first if not given")
        ->type_name("NAME");
    app.add_option("--frames", frames_, "Number of frames, 12 if not given, 1000 at most")
        ->type_name("N")
        ->check(CLI::Range(1, mostFrames));
    auto* const output = app.add_option_group("output");
    output->add_option("-o,--output", folder_, "Folder for PNG files frame_0000.png, ...")
        ->type_name("FOLDER");
    output->add_option("--sheet", sheet_, "PNG file for all frames in one picture")
        ->type_name("FILE");
    output->add_flag("--realtime", realtime_,
                     "Let the scene's own thread play the clip, and tell how it went");
    output->require_option(1, 3);
    options_.declare(app);
    declareJson(app, json_);
    declareExamples(app,
                    {"vantorix play robot.glb --sheet walk.png",
                     "vantorix play robot.glb --clip run --frames 48 -o frames",
                     "vantorix play robot.glb --realtime"},
                    "Frames are equal parts of the clip. --size is the size of each frame, or of\n"
                    "the sheet. A model without animation ends with exit code 1. In real time a\n"
                    "clip is played once, but 60 seconds of it at most.");
}

ExitCode PlayCommand::run(Console& console) {
    const Progress progress(console, "playing " + file_);
    PictureMaker maker(console);
    maker.keepTextures();
    const auto model = drawsFrames() ? maker.load(file_) : std::make_unique<LoadedModel>(file_);
    const auto animation = findClip(*model, clip_);
    Report report = {{"file", file_},
                     {"clip", animation->getID()},
                     {"name", animation->getName()},
                     {"seconds", secondsOf(animation->getDuration())}};
    if (drawsFrames()) drawFrames(*model, animation, maker, report);
    if (realtime_) {
        report["realtime"] = reportJson(playInRealtime(model->getScene(), animation, mostSeconds));
    }
    console.write(json_ ? jsonText(report, 2) + "\n" : reportText(report));
    return DONE;
}

void PlayCommand::drawFrames(const LoadedModel& model,
                             boost::shared_ptr<scene::Animation> animation, PictureMaker& maker,
                             Report& report) const {
    auto view = options_.getView();
    const auto background = options_.getBackground();
    ClipPlayer player(model.getScene(), animation);
    const auto times = frameTimes(player.getDuration(), frames_);
    view.everything = boundsOf(model, player, times);
    ContactSheet sheet(view.width, view.height, sheet_.empty() ? 1 : frames_);
    auto cell = view;
    cell.width = sheet.getCellWidth();
    cell.height = sheet.getCellHeight();
    if (!folder_.empty()) makeFolder(folder_);
    Json frames = Json::array();
    for (std::size_t i = 0; i < times.size(); ++i) {
        player.show(times[i]);
        frames.push_back({{"seconds", secondsOf(times[i])}});
        if (!sheet_.empty()) sheet.add(maker.render(model, cell, i == 0).picture, i);
        if (folder_.empty()) continue;
        auto picture = maker.render(model, view, i == 0 && sheet_.empty()).picture;
        render::putBehind(background, picture);
        savePicture(picture, framePath(i));
        frames.back()["picture"] = framePath(i);
    }
    report["frames"] = frames;
    if (sheet_.empty()) return;
    auto picture = sheet.take();
    render::putBehind(background, picture);
    savePicture(picture, sheet_);
    report["sheet"] = sheet_;
}

std::string PlayCommand::framePath(std::size_t frame) const {
    return (std::filesystem::path(folder_) / fmt::format("frame_{:04}.png", frame)).string();
}

}  // namespace vantorix::apps::cli
