#pragma once

#include <string>
#include <vector>

#include "apps/vantorix/PairCommand.h"

namespace vantorix::apps::cli {

/// "vantorix morph": a model on its way to another one.
class MorphCommand : public PairCommand {
public:
    const char* getName() const override { return "morph"; }
    const char* getSummary() const override {
        return "Blend model A with model B of the same structure and tell what moved";
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
    /// A geometry's positions, or the joints, and how many of them moved how far at most.
    struct Move {
        std::string what;
        std::size_t points;
        std::size_t moved;
        float farthest;
    };

    float ratio_ = 0.5f;
    std::vector<Move> moves_;
};

}  // namespace vantorix::apps::cli
