#pragma once

#include <string>

#include "apps/import/ImportLimits.h"
#include "apps/import/ImportReport.h"
#include "apps/import/ModelDocument.h"

struct aiNode;
struct aiScene;

namespace vantorix::apps::import {

class NodeNames;

/// Copies what Assimp read into a document that passes checkDocument: nothing that Assimp
/// returns is used before it is checked, and what cannot be kept is noted and left out.
class SceneConverter {
public:
    SceneConverter(const aiScene& scene, const ImportLimits& limits)
        : scene_(scene), limits_(limits) {}

    /// @p format is the name of the file format. Call it once.
    /// @throws LimitError, and RefusedError for a file without a node.
    ModelDocument convert(const std::string& format);

private:
    void convertNodes();
    void convertNode(const aiNode& source, std::uint32_t parent);
    void convertMetadata();
    void convertMaterials();
    void convertMeshes();
    void convertTextures();
    void convertSkins(const NodeNames& names);
    void convertViews(const NodeNames& names);
    void convertClips(const NodeNames& names);

    const aiScene& scene_;
    ImportLimits limits_;
    ImportReport report_;
    ModelDocument document_;
};

}  // namespace vantorix::apps::import
