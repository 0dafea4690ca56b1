#pragma once

#include <string>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix dump": all that a model's scene holds, as JSON.
class DumpCommand : public Command {
public:
    const char* getName() const override { return "dump"; }
    const char* getSummary() const override {
        return "Write all that the scene of a model holds as JSON";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    std::string file_;
};

}  // namespace vantorix::apps::cli
