#pragma once

#include <string>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix journal": every event that building a model's scene announces, a JSON line each.
class JournalCommand : public Command {
public:
    const char* getName() const override { return "journal"; }
    const char* getSummary() const override {
        return "Write the events of building a model's scene, one JSON line each";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    std::string file_;
};

}  // namespace vantorix::apps::cli
