#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/IdRegistry.h"
#include "apps/import/ImportResult.h"
#include "apps/import/ModelDocument.h"
#include "apps/import/TextureFinder.h"

namespace vantorix::scene {
class Material;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

/// Adds the effects, images and materials of a document to a scene.
///
/// Effects: one per shading model, "import_phong" with the file "phong.fx", shared by all imports
/// into the scene. Parameters: "diffuse", "ambient", "specular", "emissive" (float4, "r g b a"),
/// "shininess", "opacity", "metallic", "roughness", ... (float), "twoSided" (bool), "alphaMode"
/// (string). A texture parameter ("diffuseTexture", "normalTexture", "emissiveTexture", ...) has
/// the type "texture" and an image id as its value; where it does not use the first texture
/// coordinates, an int parameter ("diffuseTextureSet") has their number.
class MaterialBuilder {
public:
    /// @p result gets the image sources and notes.
    MaterialBuilder(const ModelDocument& document, const std::string& modelFile,
                    boost::shared_ptr<scene::SceneManager> scene, ImportResult& result);

    void build();

    /// By material number of the document.
    const std::vector<std::string>& getIds() const { return ids_; }
    const std::vector<boost::shared_ptr<scene::Material>>& getMaterials() const {
        return materials_;
    }

private:
    void reserveIds();
    void buildMaterial(const ModelMaterial& source);
    std::string effectFor(const std::string& shading);
    std::string imageFor(const ModelTextureUse& use);
    ImageSource sourceOf(const ModelTextureUse& use);
    boost::shared_ptr<const ModelTexture> embedded(std::int32_t number);

    const ModelDocument& document_;
    boost::shared_ptr<scene::SceneManager> scene_;
    ImportResult& result_;
    TextureFinder finder_;
    IdRegistry materialIds_;
    IdRegistry imageIds_;
    std::map<std::string, std::string> imagesByFile_;
    std::map<std::int32_t, std::string> imagesByNumber_;
    std::vector<std::string> ids_;
    std::vector<boost::shared_ptr<scene::Material>> materials_;
};

}  // namespace vantorix::apps::import
