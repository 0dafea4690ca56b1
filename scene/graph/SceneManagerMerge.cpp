#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>
#include <boost/unordered/unordered_map.hpp>

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/NumberedID.h"
#include "scene/graph/SceneEvents.h"
#include "scene/graph/SceneIdentifiers.h"
#include "scene/graph/SceneLibrary.h"
#include "scene/graph/SceneManager.h"
#include "scene/graph/SceneMerge.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::scene {
namespace {

using RenamedIDs = std::map<std::string, std::string>;

template <class Item>
using ItemsByID = boost::unordered_map<std::string, boost::shared_ptr<Item>>;

const std::string& libraryID(const Effect& effect) { return effect.getID(); }
const std::string& libraryID(const Image& image) { return image.getID(); }
std::string libraryID(const Material& material) { return material.getMaterialID(); }

/// The first item of each ID.
template <class Item>
ItemsByID<Item> firstByID(const std::vector<boost::shared_ptr<Item>>& library) {
    ItemsByID<Item> first;
    for (const auto& item : library) {
        if (item) first.emplace(libraryID(*item), item);
    }
    return first;
}

/// What effects and images, both named files, have in common when they are merged.
struct FileMergeTexts {
    const char* kind;
    const char* plural;
};

/// @p discards takes the existing and the incoming item, @p newID the repeated ID.
template <class Item, class Discards, class NewID>
RenamedIDs mergeFileItems(std::vector<boost::shared_ptr<Item>>& library,
                          const std::vector<boost::shared_ptr<Item>>& incoming,
                          core::logger::Logger& logger, const FileMergeTexts& texts,
                          Discards discards, NewID newID) {
    RenamedIDs renamed;
    std::vector<boost::shared_ptr<Item>> added;
    const auto taken = firstByID(library);
    const auto repeated = std::string("[INFO] Found repeated ") + texts.kind + " ID";
    for (const auto& item : incoming) {
        if (!item) continue;
        auto id = item->getID();
        const auto existing = taken.find(id);
        if (existing != taken.end()) {
            if (discards(*existing->second, *item)) {
                logger << repeated + " with same filename. Discarded.";
                continue;
            }
            id = renamed[item->getID()] = newID(item->getID());
            logger << repeated + ". Renamed " + item->getID() + " to " + id;
        }
        added.push_back(boost::make_shared<Item>(id, item->getFilename(), item->getName()));
    }
    library.insert(library.end(), added.begin(), added.end());
    logger << "[INFO] Added " + std::to_string(added.size()) + " new " + texts.plural + ".";
    return renamed;
}

void translateTextures(const Material& material, const RenamedIDs& images) {
    for (const auto& parameter : material.getMaterialParameters()) {
        if (!parameter || parameter->getType() != "texture") continue;
        parameter->setValue(translatedID(images, parameter->getValue()));
    }
}

/// Copies what both meshes map to the same semantic, if it is of the same count.
void copySharedStreams(const Mesh& source, const Mesh& target) {
    for (int value = VERTEX; value < INVALID; ++value) {
        const auto semantic = static_cast<StreamSemantic>(value);
        const auto* const from = findBySemantic(source.getVertices(), semantic);
        const auto* const to = findBySemantic(target.getVertices(), semantic);
        if (!from || !to || !from->stream || !to->stream) continue;
        if (from->stream->count == to->stream->count) to->stream->values = from->stream->values;
    }
}

}  // namespace

bool SceneManager::mergeSceneManager(boost::shared_ptr<SceneManager> other, int options,
                                     std::string parentNodeID) {
    if (other) SceneMerge(shared_from_this(), std::move(other), options).run(parentNodeID);
    return true;
}

std::map<std::string, std::string> SceneManager::mergeEffectLibrary(
    std::vector<boost::shared_ptr<Effect>> effects) {
    return mergeFileItems(
        effectLibrary_, effects, logger_, {"Effect", "effects"},
        [](const Effect& existing, const Effect& incoming) {
            return existing.getFilename() == incoming.getFilename();
        },
        [this](const std::string& id) { return renamedID(id); });
}

std::map<std::string, std::string> SceneManager::mergeImageLibrary(
    std::vector<boost::shared_ptr<Image>> images, bool discardRepeated) {
    return mergeFileItems(
        imageLibrary_, images, logger_, {"Image", "images"},
        [discardRepeated](const Image&, const Image&) { return discardRepeated; },
        [](const std::string& id) { return id + "__renamed__"; });
}

std::map<std::string, std::string> SceneManager::mergeMaterialLibrary(
    std::vector<boost::shared_ptr<Material>> materials,
    std::map<std::string, std::string> effectMap, std::map<std::string, std::string> imageMap,
    bool compareEffects) {
    const auto self = weak_from_this().lock();
    RenamedIDs renamed;
    std::vector<boost::shared_ptr<Material>> added;
    const auto taken = firstByID(materialList_);
    for (const auto& material : materials) {
        if (!material) continue;
        const auto id = material->getMaterialID();
        const auto effectID = translatedID(effectMap, material->getEffectID());
        const auto existing = taken.find(id);
        const bool isTaken = existing != taken.end();
        if (isTaken && compareEffects && existing->second->getEffectID() == effectID) {
            logger_ << "[INFO] Found repeated Material ID with same effectID: " + id +
                           ". Discarded.";
            continue;
        }
        added.push_back(boost::make_shared<Material>(*material));
        added.back()->setEffectID(effectID);
        if (isTaken) {
            added.back()->setMaterialID(renamed[id] = renamedID(id));
            logger_ << "[INFO] Found repeated Material ID. Renamed " + id + " to " + renamed[id];
        } else {
            logger_ << "[INFO] Addded new Material: " + id;  // The third d belongs to the text.
        }
    }
    for (const auto& material : added) translateTextures(*material, imageMap);
    addMerged(added);
    return renamed;
}

void SceneManager::addMerged(const std::vector<boost::shared_ptr<Material>>& materials) {
    materialList_.insert(materialList_.end(), materials.begin(), materials.end());
    logger_ << "[INFO] Added " + std::to_string(materials.size()) + " new Materials.";
    send(events::sceneUpdate, "MaterialList");
}

std::string SceneManager::renamedID(const std::string& id) {
    const auto number = identifiers_->generateNumber();
    return textAround({id, "__renamed_", SceneIdentifiers::prefix}, number, "__");
}

void SceneManager::replaceSharedStreams(boost::shared_ptr<SceneManager> other) {
    if (!other) return;
    std::vector<boost::shared_ptr<IGeometry>> targets;
    std::vector<boost::shared_ptr<IGeometry>> sources;
    geometryManager_->getGeometries(targets);
    other->geometryManager_->getGeometries(sources);
    if (targets.size() != sources.size()) return;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const auto type = targets[i]->getType();
        if (type != sources[i]->getType()) return;
        const auto target = boost::dynamic_pointer_cast<Mesh>(targets[i]);
        const auto source = boost::dynamic_pointer_cast<Mesh>(sources[i]);
        if (type == IGeometry::MESH && target && source) copySharedStreams(*source, *target);
    }
}

}  // namespace vantorix::scene
