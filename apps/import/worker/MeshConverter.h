#pragma once

#include <cstddef>

#include "apps/import/ImportLimits.h"
#include "apps/import/ImportReport.h"
#include "apps/import/MeshTotals.h"
#include "apps/import/ModelDocument.h"

struct aiMesh;

namespace vantorix::apps::import {

/// Copies the faces of meshes, every index, count and float checked. Skins come later: they refer
/// to nodes.
class MeshConverter {
public:
    /// @p materialCount is the number of materials that a mesh can refer to.
    MeshConverter(const ImportLimits& limits, std::size_t materialCount, ImportReport& report)
        : limits_(limits), materialCount_(materialCount), report_(report) {}

    /// @throws LimitError when all meshes up to this one exceed the limits.
    ModelMesh convert(const aiMesh& source);

private:
    void convertMaterial(const aiMesh& source, ModelMesh& mesh);
    void convertVertices(const aiMesh& source, ModelMesh& mesh);
    void convertTexCoords(const aiMesh& source, ModelMesh& mesh);
    void convertFaces(const aiMesh& source, ModelMesh& mesh);
    void repair(ModelMesh& mesh);
    void count(const aiMesh& source);
    void note(const ModelMesh& mesh, std::size_t count, const char* what);

    ImportLimits limits_;
    std::size_t materialCount_;
    ImportReport& report_;
    MeshTotals totals_;
};

}  // namespace vantorix::apps::import
