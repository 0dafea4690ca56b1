#pragma once

#include <set>
#include <string>
#include <vector>

#include "apps/vantorix/MergeReport.h"
#include "apps/vantorix/PairCommand.h"

namespace vantorix::apps::cli {

/// "vantorix merge": one model taken into the scene of another.
class MergeCommand : public PairCommand {
public:
    const char* getName() const override { return "merge"; }
    const char* getSummary() const override {
        return "Merge model B into model A and tell what became of everything in B";
    }

protected:
    void declareOptions(CLI::App& app) override;
    void check() override;
    void change(const LoadedModel& target, const LoadedModel& source) override;
    render::ImageSource imagesAfter(const LoadedModel& target,
                                    const LoadedModel& source) const override;
    std::string reportText(const Console& console) const override;
    std::string reportJson() const override;

private:
    std::string treeText(const Console& console) const;

    std::string into_;
    std::string optionsText_ = "0";
    int options_ = 0;
    int flags_ = 0;
    std::vector<LibraryFates> fates_;
    std::vector<NodeSummary> tree_;
    std::set<std::string> newNodes_;
    Counts leftBehind_;
};

}  // namespace vantorix::apps::cli
