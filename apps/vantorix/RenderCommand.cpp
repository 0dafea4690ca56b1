#include "apps/vantorix/RenderCommand.h"

#include <CLI/CLI.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/ContactSheet.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PictureMaker.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {
namespace {

constexpr const char* remarks =
    "The picture shows what the model's first camera sees. A model without cameras, or\n"
    "whose first camera sees nothing, is framed by its bounding volume. Several models\n"
    "share the picture as a grid, row by row from the upper left. A model without light,\n"
    "or with too little of it, gets a default light. A picture in which nothing is\n"
    "visible is written all the same, with a warning.";

}  // namespace

void RenderCommand::declare(CLI::App& app) {
    declareModels(app, files_);
    app.add_option("-o,--output", output_, "PNG file to write")->required()->type_name("FILE");
    options_.declare(app);
    declareExamples(app,
                    {"vantorix render robot.glb -o robot.png",
                     "vantorix render robot.glb -o robot.png --size 1920x1080 --camera front",
                     "vantorix render robot.glb -o robot.png --background transparent",
                     "vantorix render *.obj -o overview.png --frame"},
                    remarks);
}

ExitCode RenderCommand::run(Console& console) {
    render::View view = options_.getView();
    const auto background = options_.getBackground();
    ContactSheet sheet(view.width, view.height, files_.size());
    view.width = sheet.getCellWidth();
    view.height = sheet.getCellHeight();
    PictureMaker maker(console);
    std::size_t cell = 0;
    std::size_t drawn = 0;
    const ExitCode code = forEachFile(files_, console, [&](const std::string& file) {
        const std::size_t own = cell++;
        const Progress progress(console, "drawing " + file);
        sheet.add(maker.draw(*maker.load(file), view), own);
        ++drawn;
    });
    if (drawn == 0) return code;
    render::Picture picture = sheet.take();
    render::putBehind(background, picture);
    savePicture(picture, output_);
    return code;
}

}  // namespace vantorix::apps::cli
