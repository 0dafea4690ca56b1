#include <utility>

#include <boost/make_shared.hpp>

#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneHandlerGate.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::scene {
namespace {

/// Payload of "L_MaterialParameterUpdated". The value comes before the type.
struct ParameterUpdate {
    explicit ParameterUpdate(const core::event::EventData& data)
        : material(data.getArg(1)),
          name(data.getArg(2)),
          value(data.getArg(3)),
          type(data.getArg(4)) {}

    bool isComplete() const {
        return !material.empty() && !name.empty() && !value.empty() && !type.empty();
    }

    std::string material;
    std::string name;
    std::string value;
    std::string type;
};

boost::shared_ptr<MaterialParameter> findOrAddParameter(Material& material,
                                                        const ParameterUpdate& update) {
    auto parameter = material.getParameterByName(update.name);
    if (!parameter) {
        parameter = boost::make_shared<MaterialParameter>(update.name, update.type, update.value);
        material.addMaterialParameter(parameter);
    }
    return parameter;
}

}  // namespace

void SceneManager::registerEventHandlers() {
    registerLocalHandler("L_NewEffect", &SceneManager::localNewEffectHandler);
    registerLocalHandler("L_NewMaterial", &SceneManager::localNewMaterialHandler);
    registerLocalHandler("L_MaterialParameterUpdated",
                         &SceneManager::localMaterialParameterUpdatedHandler);
    registerLocalHandler("L_MaterialTechniqueChanged",
                         &SceneManager::localMaterialTechniqueChangedHandler);
}

void SceneManager::registerLocalHandler(const char* type, LocalHandler handler) {
    registerHandler(core::event::EventType(type),
                    [gate = handlerGate_, handler](const core::event::Event& event) {
                        gate->pass(handler, event);
                    });
}

void SceneManager::localNewEffectHandler(core::event::Event event) {
    const auto id = event.getEventData().getArg(1);
    const auto fileName = event.getEventData().getArg(2);
    if (id.empty() || fileName.empty()) return;
    effectLibrary_.push_back(boost::make_shared<Effect>(id, fileName, ""));
    addID(id);
}

void SceneManager::localNewMaterialHandler(core::event::Event event) {
    const auto id = event.getEventData().getArg(1);
    const auto effectID = event.getEventData().getArg(2);
    if (id.empty() || effectID.empty()) return;
    addID(id);
    addMaterial(boost::make_shared<Material>(id, effectID));
}

void SceneManager::localMaterialParameterUpdatedHandler(core::event::Event event) {
    const ParameterUpdate update(event.getEventData());
    if (!update.isComplete()) return;
    const auto material = getMaterialWithID(update.material);
    if (!material) {
        logger_ << "[WARN] Trying to change a parameter from a non existent material.";
        return;
    }
    const auto parameter = findOrAddParameter(*material, update);
    parameter->setValue(update.type == "texture" ? textureImageID(update.value) : update.value);
    send(events::sceneUpdate, "");
}

// A texture parameter holds an image's ID, never a file name: an unknown file becomes an image.
std::string SceneManager::textureImageID(const std::string& fileName) {
    const auto existing = getImageByFilename(fileName);
    if (existing) return existing->getID();
    const auto image = boost::make_shared<Image>(generateID(), fileName, "");
    addImage(image);
    return image->getID();
}

void SceneManager::localMaterialTechniqueChangedHandler(core::event::Event event) {
    const auto id = event.getEventData().getArg(1);
    if (id.empty()) return;
    const auto material = getMaterialWithID(id);
    if (material) material->setTechnique(event.getEventData().getArg(2));
}

}  // namespace vantorix::scene
