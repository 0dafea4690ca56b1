#include "apps/import/MaterialBuilder.h"

#include <boost/make_shared.hpp>

#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::import {

using namespace scene;

namespace {

std::string bareName(const std::string& path) {
    const auto separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

boost::shared_ptr<MaterialParameter> parameter(const std::string& name, const std::string& type,
                                               const std::string& value) {
    return boost::make_shared<MaterialParameter>(name, type, value);
}

}  // namespace

MaterialBuilder::MaterialBuilder(const ModelDocument& document, const std::string& modelFile,
                                 boost::shared_ptr<SceneManager> scene, ImportResult& result)
    : document_(document),
      scene_(scene),
      result_(result),
      finder_(modelFile),
      materialIds_("material", result.report),
      imageIds_("image", result.report) {}

void MaterialBuilder::build() {
    reserveIds();
    for (const auto& material : document_.materials) buildMaterial(material);
}

void MaterialBuilder::reserveIds() {
    for (const auto& material : scene_->getMaterialList()) {
        materialIds_.reserve(material->getMaterialID());
    }
    for (const auto& image : scene_->getImageLibrary()) imageIds_.reserve(image->getID());
}

void MaterialBuilder::buildMaterial(const ModelMaterial& source) {
    const auto material =
        boost::make_shared<Material>(materialIds_.take(source.name), effectFor(source.shading));
    std::vector<boost::shared_ptr<MaterialParameter>> parameters;
    for (const auto& given : source.parameters) {
        parameters.push_back(parameter(given.name, given.type, given.text));
    }
    for (const auto& use : source.textures) {
        parameters.push_back(parameter(use.name, "texture", imageFor(use)));
        if (use.texCoordSet == 0) continue;
        parameters.push_back(parameter(use.name + "Set", "int", std::to_string(use.texCoordSet)));
    }
    material->setMaterialParameters(parameters);
    scene_->addMaterial(material);
    ids_.push_back(material->getMaterialID());
    materials_.push_back(material);
}

std::string MaterialBuilder::effectFor(const std::string& shading) {
    const std::string id = "import_" + shading;
    if (!scene_->getEffectByID(id)) {
        scene_->addEffect(boost::make_shared<Effect>(id, shading + ".fx", shading));
    }
    return id;
}

std::string MaterialBuilder::imageFor(const ModelTextureUse& use) {
    std::string& known = use.embedded < 0 ? imagesByFile_[use.file] : imagesByNumber_[use.embedded];
    if (!known.empty()) return known;
    const std::string name = bareName(use.file);
    known = imageIds_.take(name);
    scene_->addImage(boost::make_shared<Image>(known, use.file, name));
    result_.images[known] = sourceOf(use);
    return known;
}

ImageSource MaterialBuilder::sourceOf(const ModelTextureUse& use) {
    if (use.embedded >= 0) return {"", embedded(use.embedded)};
    const std::string path = finder_.find(use.file);
    if (path.empty()) result_.report.add("image \"" + use.file + "\": there is no such file");
    return {path, {}};
}

boost::shared_ptr<const ModelTexture> MaterialBuilder::embedded(std::int32_t number) {
    return boost::make_shared<ModelTexture>(document_.textures[static_cast<std::size_t>(number)]);
}

}  // namespace vantorix::apps::import
