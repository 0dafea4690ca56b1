#include "apps/vantorix/PictureMaker.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <future>

#include <fmt/format.h>

#include "apps/render/PictureFile.h"
#include "apps/render/RenderError.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/ImageFiles.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"

namespace vantorix::apps::cli {
namespace {

constexpr int largestSide = 16384;
constexpr long long mostPixels = 1LL << 26;
constexpr std::size_t mostNotes = 5;

/// Reads a whole positive number up to largestSide; 0 when it is none.
int parseSide(const std::string& text) {
    int side = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, side);
    const bool valid = parsed.ec == std::errc() && parsed.ptr == end;
    return valid && side > 0 && side <= largestSide ? side : 0;
}

}  // namespace

std::unique_ptr<LoadedModel> PictureMaker::load(const std::string& file,
                                                const import::ImportOptions& options) {
    auto loading = std::async(std::launch::async, [&file, &options] {
        return std::make_unique<LoadedModel>(file, nullptr, options);
    });
    std::exception_ptr noRenderer;
    try {
        if (!renderer_) renderer_ = std::make_unique<render::SceneRenderer>();
    } catch (const render::RenderError& error) {
        noRenderer =
            std::make_exception_ptr(Failure(FILE_REFUSED, printable(file + ": " + error.what())));
    }
    auto model = loading.get();
    if (noRenderer) std::rethrow_exception(noRenderer);
    return model;
}

render::Picture PictureMaker::draw(const LoadedModel& model, const render::View& view) {
    return draw(model, view, imagesOf(model.getImport()));
}

render::Picture PictureMaker::draw(const LoadedModel& model, const render::View& view,
                                   const render::ImageSource& images) {
    return render(model, view, images).picture;
}

render::Rendering PictureMaker::render(const LoadedModel& model, const render::View& view) {
    return render(model, view, imagesOf(model.getImport()));
}

render::Rendering PictureMaker::render(const LoadedModel& model, const render::View& view,
                                       const render::ImageSource& images) {
    const std::string& file = model.getFile();
    try {
        auto rendering = renderer_->render(model.getScene(), images, view);
        report(file, rendering, view);
        return rendering;
    } catch (const render::UnknownCamera& error) {
        throw Failure(WRONG_USE, printable(file + ": " + error.what()));
    } catch (const render::RenderLimit& error) {
        throw Failure(LIMIT_MET, printable(file + ": " + error.what()));
    } catch (const render::RenderError& error) {
        throw Failure(FILE_REFUSED, printable(file + ": " + error.what()));
    }
}

void PictureMaker::report(const std::string& file, const render::Rendering& rendering,
                          const render::View& view) const {
    const auto& notes = rendering.notes;
    for (std::size_t i = 0; i < std::min(notes.size(), mostNotes); ++i) {
        console_.warn(printable(file + ": " + notes[i]));
    }
    if (notes.size() > mostNotes) {
        console_.warn(printable(file) +
                      fmt::format(": {} more lines like these", notes.size() - mostNotes));
    }
    if (rendering.coveredPixels > 0) return;
    const char* const advice = view.camera.empty() ? "" : "; --frame shows the whole model";
    console_.warn(printable(file) + ": nothing is visible in the picture" + advice);
}

void savePicture(const render::Picture& picture, const std::string& path) {
    try {
        render::writePng(picture, path);
    } catch (const render::RenderError& error) {
        throw Failure(FILE_REFUSED, printable(error.what()));
    }
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
