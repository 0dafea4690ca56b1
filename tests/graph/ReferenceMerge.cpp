#include "tests/graph/ReferenceMerge.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::test {

using namespace scene;

namespace {

template <class Map, class Key>
Key lookUp(const Map& map, const Key& key) {
    return map.count(key) > 0 ? map.at(key) : key;
}

boost::shared_ptr<Node> searchBelow(const boost::shared_ptr<Node>& node, const std::string& id) {
    if (node->getID() == id) return node;
    for (unsigned int i = 0; i < node->getChildCount(); ++i) {
        if (const auto found = searchBelow(node->getChildNode(i), id)) return found;
    }
    return nullptr;
}

}  // namespace

void ReferenceMerge::run(int options, const std::string& parentNodeID) {
    geometryMap_ = target_->getGeometryManager()->mergeGeometries(source_->getGeometryManager(),
                                                                  options & 0x01);
    const auto images = mergeImages(options & 0x04);
    const auto effects = mergeEffects();
    materialMap_ = mergeMaterials(effects, images, options & 0x02);
    layerMap_ = target_->getLayerManager()->mergeLayers(source_->getLayerManager(), options & 0x08);
    auto parent = findNode(parentNodeID);
    if (!parent) parent = target_->getRoot();
    mergeNode(parent, shapeOf(source_->getRoot()), options & 0x10, options & 0x20);
    target_->triggerEvent("SceneUpdate", "");
    target_->triggerEvent("SceneUpdate", "MaterialList");
    target_->triggerEvent("SyncScene", "");
}

ReferenceMerge::Shape ReferenceMerge::shapeOf(const NodePtr& node) {
    Shape shape{node, {}};
    for (unsigned int i = 0; i < node->getChildCount(); ++i) {
        shape.children.push_back(shapeOf(node->getChildNode(i)));
    }
    return shape;
}

ReferenceMerge::Renames ReferenceMerge::mergeImages(bool discard) {
    Renames renames;
    auto library = target_->getImageLibrary();
    const auto before = library.size();
    for (const auto& image : source_->getImageLibrary()) {
        auto id = image->getID();
        if (target_->getImageByID(id) && discard) {
            log_.push_back("[INFO] Found repeated Image ID with same filename. Discarded.");
            continue;
        }
        if (target_->getImageByID(id)) {
            renames[id] = id + "__renamed__";
            log_.push_back("[INFO] Found repeated Image ID. Renamed " + id + " to " + renames[id]);
            id = renames[id];
        }
        library.push_back(boost::make_shared<Image>(id, image->getFilename(), image->getName()));
    }
    target_->setImageLibrary(library);
    log_.push_back("[INFO] Added " + std::to_string(library.size() - before) + " new images.");
    return renames;
}

ReferenceMerge::Renames ReferenceMerge::mergeEffects() {
    Renames renames;
    auto library = target_->getEffectLibrary();
    const auto before = library.size();
    for (const auto& effect : source_->getEffectLibrary()) {
        auto id = effect->getID();
        const auto existing = target_->getEffectByID(id);
        if (existing && existing->getFilename() == effect->getFilename()) {
            log_.push_back("[INFO] Found repeated Effect ID with same filename. Discarded.");
            continue;
        }
        if (existing) {
            renames[id] = suffixed(id);
            log_.push_back("[INFO] Found repeated Effect ID. Renamed " + id + " to " + renames[id]);
            id = renames[id];
        }
        library.push_back(boost::make_shared<Effect>(id, effect->getFilename(), effect->getName()));
    }
    target_->setEffectLibrary(library);
    log_.push_back("[INFO] Added " + std::to_string(library.size() - before) + " new effects.");
    return renames;
}

ReferenceMerge::Renames ReferenceMerge::mergeMaterials(const Renames& effects,
                                                       const Renames& images, bool compareEffects) {
    Renames renames;
    auto library = target_->getMaterialList();
    const auto before = library.size();
    for (const auto& material : source_->getMaterialList()) {
        const auto id = material->getMaterialID();
        const auto effectID = lookUp(effects, material->getEffectID());
        const auto existing = target_->getMaterialWithID(id);
        if (existing && compareEffects && existing->getEffectID() == effectID) {
            log_.push_back("[INFO] Found repeated Material ID with same effectID: " + id +
                           ". Discarded.");
            continue;
        }
        const auto copy = boost::make_shared<Material>(*material);
        if (existing) {
            renames[id] = suffixed(id);
            copy->setMaterialID(renames[id]);
            log_.push_back("[INFO] Found repeated Material ID. Renamed " + id + " to " +
                           renames[id]);
        } else {
            log_.push_back("[INFO] Addded new Material: " + id);
        }
        copy->setEffectID(effectID);
        library.push_back(copy);
    }
    for (std::size_t i = before; i < library.size(); ++i) {
        for (const auto& parameter : library[i]->getMaterialParameters()) {
            const bool isTexture = parameter && parameter->getType() == "texture";
            if (isTexture) parameter->setValue(lookUp(images, parameter->getValue()));
        }
    }
    log_.push_back("[INFO] Added " + std::to_string(library.size() - before) + " new Materials.");
    target_->setMaterialList(library);
    return renames;
}

void ReferenceMerge::mergeNode(const NodePtr& parent, const Shape& shape, bool discard,
                               bool intoChild) {
    auto id = shape.node->getID();
    if (findNode(id)) {
        if (discard) {
            log_.push_back("[INFO] Found repeated Node with ID: " + id + ". Discarded.");
            return;
        }
        for (unsigned int i = 0; intoChild && i < parent->getChildCount(); ++i) {
            const auto child = parent->getChildNode(i);
            if (child->getID() != id) continue;
            for (const auto& below : shape.children) mergeNode(child, below, false, intoChild);
            return;
        }
        id = suffixed(id);
        log_.push_back("[INFO] Renamed repeated Node to: " + id);
    }
    const auto copy = copyOf(*shape.node, id);
    parent->addNode(copy);
    for (const auto& below : shape.children) mergeNode(copy, below, discard, intoChild);
}

ReferenceMerge::NodePtr ReferenceMerge::copyOf(const Node& node, const std::string& id) {
    const auto copy = boost::make_shared<Node>(target_);
    copy->setID(id);
    copy->setName(node.getName());
    copy->setTranslation(node.getTranslation());
    copy->setRotation(node.getRotation());
    copy->setScale(node.getScale());
    for (const int layer : node.getLayers()) copy->addToLayer(lookUp(layerMap_, layer));
    for (const auto& instance : node.getInstancedGeometries()) copyInstance(*instance, *copy);
    return copy;
}

void ReferenceMerge::copyInstance(InstanceGeometry& instance, Node& copy) {
    const auto shown = instance.getGeometry();
    const auto id = shown ? lookUp(geometryMap_, shown->getID()) : std::string();
    const auto geometry = shown ? target_->getGeometryManager()->getGeometry(id) : nullptr;
    if (!geometry) {
        log_.push_back("[ERROR] Trying to instantiate a non existent Geometry: " + id);
        return;
    }
    std::map<std::string, boost::shared_ptr<Material>> materials;
    for (const auto& [symbol, material] : instance.getMaterialMap()) {
        const bool isRenamed = material && materialMap_.count(material->getMaterialID()) > 0;
        materials[symbol] =
            isRenamed ? target_->getMaterialWithID(materialMap_.at(material->getMaterialID()))
                      : material;
    }
    copy.addInstanceGeometry(boost::make_shared<InstanceGeometry>(geometry, materials));
}

ReferenceMerge::NodePtr ReferenceMerge::findNode(const std::string& id) const {
    return target_->getNodeArray().empty() ? nullptr : searchBelow(target_->getRoot(), id);
}

std::string ReferenceMerge::suffixed(const std::string& id) {
    return id + "__renamed_" + target_->generateID() + "__";
}

}  // namespace vantorix::test
