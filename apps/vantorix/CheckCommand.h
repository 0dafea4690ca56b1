#pragma once

#include <string>
#include <vector>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix check": everything in a model that cannot be meant.
class CheckCommand : public Command {
public:
    const char* getName() const override { return "check"; }
    const char* getSummary() const override {
        return "List everything in models that cannot be meant";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    ExitCode writeText(const Console& console);
    ExitCode writeJson(const Console& console);

    std::vector<std::string> files_;
    bool json_ = false;
    bool isClean_ = true;
};

}  // namespace vantorix::apps::cli
