#include "apps/vantorix/PictureOptions.h"

#include <algorithm>
#include <charconv>

#include <CLI/CLI.hpp>

#include "apps/vantorix/Failure.h"
#include "apps/vantorix/PrintableText.h"

namespace vantorix::apps::cli {
namespace {

constexpr int largestSide = 16384;
constexpr long long mostPixels = 1LL << 26;

/// Reads a whole positive number up to largestSide; 0 when it is none.
int parseSide(const std::string& text) {
    int side = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, side);
    const bool valid = parsed.ec == std::errc() && parsed.ptr == end;
    return valid && side > 0 && side <= largestSide ? side : 0;
}

}  // namespace

CLI::Option* declareSize(CLI::App& app, std::string& size) {
    return app
        .add_option("--size", size, "Size of the picture in pixels, " + size + " if not given")
        ->type_name("WxH");
}

void declarePicture(CLI::App& app, const std::string& contents, std::string& file,
                    std::string& size) {
    auto* const picture = app.add_option("--render", file, "PNG file for a picture of " + contents)
                              ->type_name("FILE");
    declareSize(app, size)->needs(picture);
}

void PictureOptions::declare(CLI::App& app) {
    declareSize(app, size_);
    auto* const camera =
        app.add_option("--camera", camera_, "ID or name of the camera to look through")
            ->type_name("ID");
    app.add_flag("--frame", framed_, "Show the whole model even if it has cameras")
        ->excludes(camera);
    app.add_option("--background", background_,
                   "transparent, a color (#rrggbb, white, black, gray, red,\n"
                   "green, blue) or two for a gradient (TOP,BOTTOM); without\n"
                   "value the default, a light gradient")
        ->type_name("COLOR")
        ->expected(0, 1);
}

render::View PictureOptions::getView() const {
    render::View view;
    parseSize(size_, view);
    view.camera = camera_;
    view.framed = framed_;
    return view;
}

render::Background PictureOptions::getBackground() const {
    if (background_.empty()) return {};
    const auto background = render::parseBackground(background_);
    if (background) return *background;
    throw Failure(WRONG_USE,
                  "--background: \"" + printable(background_) + "\" is no color; see --help");
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

}  // namespace vantorix::apps::cli
