#pragma once

#include "apps/vantorix/GeometryCommand.h"

namespace vantorix::apps::cli {

/// "vantorix subdivide": every triangle becomes four, and skins follow.
class SubdivideCommand : public GeometryCommand {
public:
    const char* getName() const override { return "subdivide"; }
    const char* getSummary() const override {
        return "Split every triangle of a model into four and tell what changed";
    }

protected:
    void declareOptions(CLI::App& app) override;
    ImportOptions importOptions() const override;
    void check(const std::string& file, const std::vector<Target>& targets) const override;
    bool showsEdges() const override { return true; }
    void change(scene::GeometryManager& library, const Target& target) const override;

private:
    int times_ = 1;
};

}  // namespace vantorix::apps::cli
