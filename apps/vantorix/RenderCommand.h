#pragma once

#include <string>
#include <vector>

#include "apps/render/Background.h"
#include "apps/render/SceneRenderer.h"
#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix render": a picture of one model, or a sheet of several.
class RenderCommand : public Command {
public:
    const char* getName() const override { return "render"; }
    const char* getSummary() const override {
        return "Make a picture of models, without a display";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    void readOptions();

    std::vector<std::string> files_;
    std::string output_;
    std::string size_ = "800x600";
    std::string backgroundText_;
    render::View view_;
    render::Background background_;
};

}  // namespace vantorix::apps::cli
