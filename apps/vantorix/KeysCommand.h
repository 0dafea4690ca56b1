#pragma once

#include <string>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix keys": the timeline of a model's animations.
class KeysCommand : public Command {
public:
    const char* getName() const override { return "keys"; }
    const char* getSummary() const override {
        return "Show the clips of a model, their frame times, channels and targets";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    std::string file_;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
