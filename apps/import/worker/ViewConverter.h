#pragma once

#include <string>

#include "apps/import/ImportReport.h"
#include "apps/import/ModelDocument.h"

struct aiCamera;
struct aiLight;

namespace vantorix::apps::import {

class NodeNames;

/// Turns cameras and lights, which Assimp attaches to nodes by name, into placed records.
class ViewConverter {
public:
    /// Refers to @p nodes and @p report. @p format is the name of the file format.
    ViewConverter(const std::string& format, const NodeNames& nodes, ImportReport& report);

    ModelCamera convert(const aiCamera& source);
    ModelLight convert(const aiLight& source);

private:
    std::uint32_t nodeNamed(const std::string& name, const char* kind);

    const NodeNames& nodes_;
    ImportReport& report_;
    bool cameraHeightsGiven_;
};

}  // namespace vantorix::apps::import
