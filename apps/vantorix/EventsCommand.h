#pragma once

#include <string>

#include "apps/vantorix/Command.h"

namespace vantorix::apps::cli {

/// "vantorix events": what building a model's scene announces.
class EventsCommand : public Command {
public:
    const char* getName() const override { return "events"; }
    const char* getSummary() const override {
        return "List every event that building a model's scene announces";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    std::string file_;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
