#pragma once

#include <string>
#include <vector>

#include "apps/vantorix/Command.h"
#include "apps/vantorix/PictureOptions.h"

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
    std::vector<std::string> files_;
    std::string output_;
    PictureOptions options_;
};

}  // namespace vantorix::apps::cli
