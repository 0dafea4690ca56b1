#include <algorithm>
#include <cstddef>
#include <sstream>
#include <utility>

#include <boost/filesystem/path.hpp>

#include "scene/animation/Animation.h"
#include "scene/controller/Controller.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Evaluator.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

const char* const materialListPayload = "MaterialList";

}  // namespace

void SceneManager::addImage(boost::shared_ptr<Image> image) {
    if (!image) return;
    const auto existing = getImageByID(image->getID());
    if (existing && existing->getFilename() == image->getFilename()) {
        logger_ << "[WARN] adding same image to library with repeated ID. Discarding.";
        return;
    }
    if (existing) image->setID(generateID());  // Uses up an ID and, as defined, changes nothing.
    imageLibrary_.push_back(std::move(image));
    send(events::sceneUpdate, "");
}

unsigned int SceneManager::getImageCount() const { return countOf(imageLibrary_); }

boost::shared_ptr<Image> SceneManager::getImageAt(unsigned int index) const {
    return itemAt(imageLibrary_, index);
}

boost::shared_ptr<Image> SceneManager::getImageByID(std::string id) const {
    return findByID(imageLibrary_, id);
}

boost::shared_ptr<Image> SceneManager::getImageByFilename(std::string fileName) const {
    const auto lastPart = boost::filesystem::path(fileName).filename().string();
    for (const auto& wanted : {lastPart, fileName}) {
        const auto found = findItem(
            imageLibrary_, [&](const Image& image) { return image.getFilename() == wanted; });
        if (found) return found;
    }
    return {};
}

void SceneManager::setImageLibrary(std::vector<boost::shared_ptr<Image>> images) {
    imageLibrary_ = std::move(images);
    recordIDs(*this, imageLibrary_);
}

void SceneManager::addEffect(boost::shared_ptr<Effect> effect) {
    if (effect) effectLibrary_.push_back(std::move(effect));
}

void SceneManager::removeEffect(boost::shared_ptr<Effect> effect) {
    if (!effect) return;
    std::vector<boost::shared_ptr<Material>> kept;
    for (const auto& material : materialList_) {
        if (!material || material->getEffectID() != effect->getID()) kept.push_back(material);
    }
    eraseFirst(effectLibrary_, effect);
    ++materialListRewrites_;
    materialList_.swap(kept);  // What is released with the old list finds the new one in place.
}

boost::shared_ptr<Effect> SceneManager::getEffectByID(std::string id) const {
    return findByID(effectLibrary_, id);
}

boost::shared_ptr<Effect> SceneManager::getEffectByFilename(std::string fileName) const {
    return findItem(effectLibrary_,
                    [&](const Effect& effect) { return effect.getFilename() == fileName; });
}

void SceneManager::setEffectLibrary(std::vector<boost::shared_ptr<Effect>> effects) {
    effectLibrary_ = std::move(effects);
    recordIDs(*this, effectLibrary_);
}

std::string SceneManager::effectLibraryToString() const {
    std::string text = "EffectLibrary: (effectID, filename)\n";
    for (const auto& effect : effectLibrary_) {
        if (effect) text += effect->getID() + ", " + effect->getFilename() + "\n";
    }
    return text;
}

void SceneManager::addMaterial(boost::shared_ptr<Material> material) {
    if (!material) return;
    materialList_.push_back(std::move(material));
    send(events::sceneUpdate, materialListPayload);
}

boost::shared_ptr<Material> SceneManager::getMaterialWithID(std::string id) const {
    return findItem(materialList_,
                    [&](const Material& material) { return material.getMaterialID() == id; });
}

void SceneManager::setMaterialList(std::vector<boost::shared_ptr<Material>> materials) {
    ++materialListRewrites_;
    materialList_.swap(materials);
    for (const auto& material : materialList_) {
        if (material) addID(material->getMaterialID());
    }
    send(events::sceneUpdate, materialListPayload);
}

std::string SceneManager::materialLibraryToString() const {
    std::string text;
    for (const auto& material : materialList_) {
        if (material) text += material->toString() + "\n";
    }
    return text;
}

void SceneManager::addAnimation(boost::shared_ptr<Animation> animation) {
    if (animation) animationsLibrary_.push_back(std::move(animation));
}

void SceneManager::removeAnimation(unsigned int index) {
    if (index < animationsLibrary_.size()) {
        animationsLibrary_.erase(animationsLibrary_.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

void SceneManager::removeAllAnimations() { animationsLibrary_.clear(); }

void SceneManager::setAnimationsLibrary(std::vector<boost::shared_ptr<Animation>> animations) {
    animationsLibrary_ = std::move(animations);
    recordIDs(*this, animationsLibrary_);
}

void SceneManager::addController(boost::shared_ptr<Controller> controller) {
    if (controller) controllersLibrary_.push_back(std::move(controller));
}

boost::shared_ptr<Controller> SceneManager::getControllerById(std::string id) const {
    return findByID(controllersLibrary_, id);
}

void SceneManager::setControllersLibrary(std::vector<boost::shared_ptr<Controller>> controllers) {
    controllersLibrary_ = std::move(controllers);
    recordIDs(*this, controllersLibrary_);
}

void SceneManager::addEvaluator(boost::shared_ptr<Evaluator> evaluator) {
    if (evaluator) evaluators_.push_back(std::move(evaluator));
}

void SceneManager::removeEvaluator(boost::shared_ptr<Evaluator> evaluator) {
    eraseFirst(evaluators_, evaluator);
}

unsigned int SceneManager::getEvaluatorsCount() const { return countOf(evaluators_); }

boost::shared_ptr<Evaluator> SceneManager::getEvaluatorAt(unsigned int index) const {
    return itemAt(evaluators_, index);
}

}  // namespace vantorix::scene
