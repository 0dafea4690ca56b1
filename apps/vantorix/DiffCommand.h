#pragma once

#include <string>
#include <vector>

#include "apps/vantorix/Command.h"
#include "apps/vantorix/SceneFacts.h"

namespace vantorix::apps::cli {

/// "vantorix diff": what distinguishes two models.
class DiffCommand : public Command {
public:
    const char* getName() const override { return "diff"; }
    const char* getSummary() const override {
        return "Tell in what two models differ; exit code 1 when they do";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    std::string text(const std::vector<SectionDifference>& differences,
                     const Console& console) const;
    std::string json(const std::vector<SectionDifference>& differences) const;

    std::string first_;
    std::string second_;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
