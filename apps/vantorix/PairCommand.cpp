#include "apps/vantorix/PairCommand.h"

#include <CLI/CLI.hpp>

#include "apps/render/Background.h"
#include "apps/render/SceneGuard.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PictureMaker.h"
#include "apps/vantorix/PictureOptions.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {

void PairCommand::declare(CLI::App& app) {
    app.add_option("A", target_, "Model file to change; the file stays as it is")
        ->required()
        ->type_name("");
    app.add_option("B", source_, "The other model file")->required()->type_name("");
    declarePicture(app, "the outcome", picture_, size_);
    declareJson(app, json_);
    declareOptions(app);
}

ExitCode PairCommand::run(Console& console) {
    check();
    if (picture_.empty()) {
        const Progress progress(console, "changing " + target_);
        const LoadedModel target(target_);
        const LoadedModel source(source_);
        changeLocked(target, source);
    } else {
        runWithPicture(console);
    }
    console.write(json_ ? reportJson() : reportText(console));
    return DONE;
}

void PairCommand::changeLocked(const LoadedModel& target, const LoadedModel& source) {
    const render::SceneGuard targetGuard(target.getScene());
    const render::SceneGuard sourceGuard(source.getScene());
    change(target, source);
}

void PairCommand::runWithPicture(const Console& console) {
    render::View view;
    parseSize(size_, view);
    const Progress progress(console, "changing " + target_);
    PictureMaker maker(console);
    const auto target = maker.load(target_);
    const LoadedModel source(source_);
    changeLocked(*target, source);
    auto picture = maker.draw(*target, view, imagesAfter(*target, source));
    render::putBehind({}, picture);
    savePicture(picture, picture_);
}

}  // namespace vantorix::apps::cli
