#pragma once

#include "apps/import/ImportReport.h"
#include "apps/import/ModelDocument.h"

struct aiMaterial;
struct aiScene;

namespace vantorix::apps::import {

/// Turns Assimp's material properties into named textual parameters and texture references.
class MaterialConverter {
public:
    /// Refers to both; texture references are resolved against the scene's embedded textures.
    MaterialConverter(const aiScene& scene, ImportReport& report)
        : scene_(scene), report_(report) {}

    ModelMaterial convert(const aiMaterial& source);

private:
    void addColors(const aiMaterial& source, ModelMaterial& material);
    void addNumbers(const aiMaterial& source, ModelMaterial& material);
    void addFlags(const aiMaterial& source, ModelMaterial& material);
    void addTextures(const aiMaterial& source, ModelMaterial& material);
    void note(const ModelMaterial& material, const char* what);
    std::int32_t findEmbedded(const std::string& file) const;

    const aiScene& scene_;
    ImportReport& report_;
};

}  // namespace vantorix::apps::import
