#pragma once

#include <map>
#include <string>

#include "apps/import/ImportReport.h"
#include "apps/import/ModelDocument.h"

struct aiCamera;
struct aiLight;

namespace vantorix::apps::import {

/// Turns cameras and lights, which Assimp attaches to nodes by name, into placed records.
class ViewConverter {
public:
    /// Refers to @p nodes, which must be complete, and to @p report.
    ViewConverter(const ModelDocument& document, ImportReport& report);

    ModelCamera convert(const aiCamera& source);
    ModelLight convert(const aiLight& source);

private:
    std::uint32_t nodeNamed(const std::string& name, const char* kind);

    ImportReport& report_;
    bool cameraHeightsGiven_;
    std::map<std::string, std::uint32_t> nodes_;
};

}  // namespace vantorix::apps::import
