#pragma once

#include <memory>
#include <string>

#include "apps/import/ImportOptions.h"
#include "apps/render/SceneRenderer.h"

namespace vantorix::apps::cli {

class Console;
class LoadedModel;

/// Draws loaded models for commands: failures and remarks name the model's file.
class PictureMaker {
public:
    explicit PictureMaker(const Console& console) : console_(console) {}

    /// For several pictures of one model: textures are read once. Call it before load().
    void keepTextures();

    /// Loads a model while the graphics driver starts, which takes about as long as a small model.
    /// @throws Failure
    std::unique_ptr<LoadedModel> load(const std::string& file,
                                      const import::ImportOptions& options = {});

    /// A picture without background. What could not be done as asked becomes a warning.
    /// @throws Failure
    render::Picture draw(const LoadedModel& model, const render::View& view);
    /// The same with other images than those that came with the model.
    render::Picture draw(const LoadedModel& model, const render::View& view,
                         const render::ImageSource& images);
    /// The same, with what there is to know about the picture; warns if @p withRemarks.
    render::Rendering render(const LoadedModel& model, const render::View& view,
                             bool withRemarks = true);

private:
    render::Rendering render(const LoadedModel& model, const render::View& view,
                             const render::ImageSource& images, bool withRemarks);
    void report(const std::string& file, const render::Rendering& rendering,
                const render::View& view) const;

    const Console& console_;
    bool keepsTextures_ = false;
    std::unique_ptr<render::SceneRenderer> renderer_;
};

/// Writes @p picture as a PNG file. @throws Failure
void savePicture(const render::Picture& picture, const std::string& path);

}  // namespace vantorix::apps::cli
