#pragma once

#include "apps/vantorix/GeometryCommand.h"

namespace vantorix::apps::cli {

/// "vantorix normals": recalculated vertex normals.
class NormalsCommand : public GeometryCommand {
public:
    const char* getName() const override { return "normals"; }
    const char* getSummary() const override {
        return "Recalculate the vertex normals of a model and tell what changed";
    }

protected:
    void declareOptions(CLI::App& app) override;
    bool showsEdges() const override { return false; }
    void change(scene::GeometryManager& library, const Target& target) const override;
};

}  // namespace vantorix::apps::cli
