#pragma once

#include <string>
#include <vector>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix info": what a model holds.
class InfoCommand : public Command {
public:
    const char* getName() const override { return "info"; }
    const char* getSummary() const override {
        return "Show the tree, bounds, layers, materials and libraries of models";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    ExitCode writeText(const Console& console) const;
    ExitCode writeJson(const Console& console) const;

    std::vector<std::string> files_;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
