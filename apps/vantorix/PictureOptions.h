#pragma once

#include <string>

#include "apps/render/Background.h"
#include "apps/render/SceneRenderer.h"

namespace CLI {  // NOLINT(readability-identifier-naming): not our name.
class App;
class Option;
}  // namespace CLI

namespace vantorix::apps::cli {

/// The options of commands that draw models: --size, --camera, --frame and --background.
class PictureOptions {
public:
    void declare(CLI::App& app);

    /// @throws Failure when an option makes no sense.
    render::View getView() const;
    render::Background getBackground() const;

private:
    std::string size_ = "800x600";
    std::string camera_;
    bool framed_ = false;
    std::string background_;
};

/// Declares --size, which is kept in @p size as long as it is not given.
CLI::Option* declareSize(CLI::App& app, std::string& size);

/// Declares --render, for a picture of @p contents, and --size, which makes no sense without.
void declarePicture(CLI::App& app, const std::string& contents, std::string& file,
                    std::string& size);

/// Sets the size of @p view from "WIDTHxHEIGHT". @throws Failure when @p text is none, or too
/// large.
void parseSize(const std::string& text, render::View& view);

}  // namespace vantorix::apps::cli
