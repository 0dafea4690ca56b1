#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/import/ImportLimits.h"
#include "apps/import/ImportReport.h"
#include "apps/import/MeshTotals.h"
#include "apps/import/ModelDocument.h"

struct aiBone;
struct aiMesh;

namespace vantorix::apps::import {

class NodeNames;

/// Copies the bones of meshes and their weights, every index, count and float checked. Bones that
/// name no node, and influences that move nothing, are left out.
class SkinConverter {
public:
    /// Refers to @p nodes and @p report.
    SkinConverter(const ImportLimits& limits, const NodeNames& nodes, ImportReport& report)
        : limits_(limits), nodes_(nodes), report_(report) {}

    /// Gives @p mesh, which was made from @p source, its skin.
    /// @throws LimitError when all meshes up to this one exceed the limits.
    void convert(const aiMesh& source, ModelMesh& mesh);

private:
    void count(const aiMesh& source);
    std::vector<const aiBone*> convertBones(const aiMesh& source, ModelMesh& mesh);
    void convertWeights(const std::vector<const aiBone*>& bones, ModelMesh& mesh);
    void note(const ModelMesh& mesh, const std::string& what);

    ImportLimits limits_;
    const NodeNames& nodes_;
    ImportReport& report_;
    MeshTotals totals_;
};

}  // namespace vantorix::apps::import
