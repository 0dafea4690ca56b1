#include "apps/vantorix/RenderCommand.h"

#include <algorithm>
#include <charconv>
#include <future>

#include <CLI/CLI.hpp>

#include "apps/render/PictureFile.h"
#include "apps/render/RenderError.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/ContactSheet.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/ImageFiles.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {
namespace {

constexpr int largestSide = 16384;
constexpr long long mostPixels = 1LL << 26;
constexpr std::size_t mostNotes = 5;

constexpr const char* remarks =
    "The picture shows what the model's first camera sees. A model without cameras, or\n"
    "whose first camera sees nothing, is framed by its bounding volume. Several models\n"
    "share the picture as a grid, row by row from the upper left. A model without light,\n"
    "or with too little of it, gets a default light. A picture in which nothing is\n"
    "visible is written all the same, with a warning.";

/// Reads a whole positive number up to largestSide; 0 when it is none.
int parseSide(const std::string& text) {
    int side = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, side);
    const bool valid = parsed.ec == std::errc() && parsed.ptr == end;
    return valid && side > 0 && side <= largestSide ? side : 0;
}

void parseSize(const std::string& text, render::View& view) {
    const auto cross = std::min(text.find('x'), text.size());
    view.width = parseSide(text.substr(0, cross));
    view.height = cross < text.size() ? parseSide(text.substr(cross + 1)) : 0;
    const long long pixels = static_cast<long long>(view.width) * view.height;
    if (pixels > 0 && pixels <= mostPixels) return;
    throw Failure(WRONG_USE, "--size: \"" + printable(text) +
                                 "\" is no WIDTHxHEIGHT of up to 16384 pixels a side and 67108864 "
                                 "in all");
}

/// The driver takes about as long to start as a small model to be read: both at a time.
std::unique_ptr<LoadedModel> loadAndStart(const std::string& file,
                                          std::unique_ptr<render::SceneRenderer>& renderer) {
    auto loading =
        std::async(std::launch::async, [&file] { return std::make_unique<LoadedModel>(file); });
    std::exception_ptr noRenderer;
    try {
        if (!renderer) renderer = std::make_unique<render::SceneRenderer>();
    } catch (const render::RenderError&) {
        noRenderer = std::current_exception();
    }
    auto model = loading.get();
    if (noRenderer) std::rethrow_exception(noRenderer);
    return model;
}

}  // namespace

void RenderCommand::declare(CLI::App& app) {
    declareModels(app, files_);
    app.add_option("-o,--output", output_, "PNG file to write")->required()->type_name("FILE");
    app.add_option("--size", size_, "Size of the picture in pixels, 800x600 if not given")
        ->type_name("WxH");
    auto* const camera =
        app.add_option("--camera", view_.camera, "ID or name of the camera to look through")
            ->type_name("ID");
    app.add_flag("--frame", view_.framed, "Show the whole model even if it has cameras")
        ->excludes(camera);
    app.add_option("--background", backgroundText_,
                   "transparent, a color (#rrggbb, white, black, gray, red,\n"
                   "green, blue) or two for a gradient (TOP,BOTTOM); without\n"
                   "value the default, a light gradient")
        ->type_name("COLOR")
        ->expected(0, 1);
    declareExamples(app,
                    {"vantorix render robot.glb -o robot.png",
                     "vantorix render robot.glb -o robot.png --size 1920x1080 --camera front",
                     "vantorix render robot.glb -o robot.png --background transparent",
                     "vantorix render *.obj -o overview.png --frame"},
                    remarks);
}

ExitCode RenderCommand::run(Console& console) {
    readOptions();
    ContactSheet sheet(view_.width, view_.height, files_.size());
    render::View view = view_;
    view.width = sheet.getCellWidth();
    view.height = sheet.getCellHeight();
    std::size_t cell = 0;
    std::size_t drawn = 0;
    const ExitCode code = forEachFile(files_, console, [&](const std::string& file) {
        const std::size_t own = cell++;
        sheet.add(pictureOf(file, view, console), own);
        ++drawn;
    });
    if (drawn == 0) return code;
    render::Picture picture = sheet.take();
    render::putBehind(background_, picture);
    try {
        render::writePng(picture, output_);
    } catch (const render::RenderError& error) {
        throw Failure(FILE_REFUSED, printable(error.what()));
    }
    return code;
}

void RenderCommand::readOptions() {
    parseSize(size_, view_);
    if (backgroundText_.empty()) return;
    const auto background = render::parseBackground(backgroundText_);
    if (!background) {
        throw Failure(WRONG_USE, "--background: \"" + printable(backgroundText_) +
                                     "\" is no color; see vantorix render --help");
    }
    background_ = *background;
}

render::Picture RenderCommand::pictureOf(const std::string& file, const render::View& view,
                                         const Console& console) {
    const Progress progress(console, "drawing " + file);
    try {
        const auto model = loadAndStart(file, renderer_);
        auto rendering = renderer_->render(model->getScene(), imagesOf(model->getImport()), view);
        report(file, rendering, console);
        return std::move(rendering.picture);
    } catch (const render::UnknownCamera& error) {
        throw Failure(WRONG_USE, printable(file + ": " + error.what()));
    } catch (const render::RenderLimit& error) {
        throw Failure(LIMIT_MET, printable(file + ": " + error.what()));
    } catch (const render::RenderError& error) {
        throw Failure(FILE_REFUSED, printable(file + ": " + error.what()));
    }
}

void RenderCommand::report(const std::string& file, const render::Rendering& rendering,
                           const Console& console) const {
    const auto& notes = rendering.notes;
    for (std::size_t i = 0; i < std::min(notes.size(), mostNotes); ++i) {
        console.warn(printable(file + ": " + notes[i]));
    }
    if (notes.size() > mostNotes) {
        console.warn(printable(file) +
                     fmt::format(": {} more lines like these", notes.size() - mostNotes));
    }
    if (rendering.coveredPixels == 0) reportNothingVisible(file, console);
}

void RenderCommand::reportNothingVisible(const std::string& file, const Console& console) const {
    const char* const advice = view_.camera.empty() ? "" : "; --frame shows the whole model";
    console.warn(printable(file) + ": nothing is visible in the picture" + advice);
}

}  // namespace vantorix::apps::cli
