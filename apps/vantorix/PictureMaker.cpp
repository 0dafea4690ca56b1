#include "apps/vantorix/PictureMaker.h"

#include <algorithm>
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

constexpr std::size_t mostNotes = 5;

}  // namespace

std::unique_ptr<LoadedModel> PictureMaker::load(const std::string& file,
                                                const import::ImportOptions& options) {
    auto loading = std::async(std::launch::async, [&file, &options] {
        return std::make_unique<LoadedModel>(file, nullptr, options);
    });
    std::exception_ptr noRenderer;
    try {
        if (!renderer_) renderer_ = std::make_unique<render::SceneRenderer>();
        if (keepsTextures_) renderer_->keepTextures();
    } catch (const render::RenderError& error) {
        noRenderer =
            std::make_exception_ptr(Failure(FILE_REFUSED, printable(file + ": " + error.what())));
    }
    auto model = loading.get();
    if (noRenderer) std::rethrow_exception(noRenderer);
    return model;
}

void PictureMaker::keepTextures() { keepsTextures_ = true; }

render::Picture PictureMaker::draw(const LoadedModel& model, const render::View& view) {
    return draw(model, view, imagesOf(model.getImport()));
}

render::Picture PictureMaker::draw(const LoadedModel& model, const render::View& view,
                                   const render::ImageSource& images) {
    return render(model, view, images, true).picture;
}

render::Rendering PictureMaker::render(const LoadedModel& model, const render::View& view,
                                       bool withRemarks) {
    return render(model, view, imagesOf(model.getImport()), withRemarks);
}

render::Rendering PictureMaker::render(const LoadedModel& model, const render::View& view,
                                       const render::ImageSource& images, bool withRemarks) {
    const std::string& file = model.getFile();
    try {
        auto rendering = renderer_->render(model.getScene(), images, view);
        if (withRemarks) report(file, rendering, view);
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

}  // namespace vantorix::apps::cli
