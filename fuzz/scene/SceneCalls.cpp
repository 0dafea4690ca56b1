#include <boost/make_shared.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"

#include "fuzz/scene/SceneFuzzer.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Evaluator.h"
#include "scene/material/Image.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "scene/material/Render.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::fuzz {
namespace {

using namespace scene;
using core::event::EventType;
using Vector3 = core::utils::Vector<float, 3>;

constexpr std::size_t mostPlaces = 200;
constexpr unsigned int mostBigCalls = 6;

EventType eventType(CallReader& reader) {
    static const std::array<const char*, 12> names{"SceneUpdate",
                                                   "SceneTopologyUpdate",
                                                   "NodeTransformationUpdate",
                                                   "NodeNewChild",
                                                   "NodeAddedLayer",
                                                   "NodeMaterialChanged",
                                                   "NodeAddedLight",
                                                   "GeometryTopologyUpdate",
                                                   "SceneNewCamera",
                                                   "SceneSurroundingUpdate",
                                                   "L_NewMaterial",
                                                   "DisplayMessageAt"};
    return EventType(reader.of(names));
}

/// Makes the fuzzer's next call whenever it hears something. May be destroyed by that call.
class Meddler : public core::event::EventListener {
public:
    explicit Meddler(SceneFuzzer& fuzzer) : fuzzer_(fuzzer) {}
    ~Meddler() override { endDeliveries(); }
    void handleEvent(core::event::Event) override { fuzzer_.stepInHandler(); }

private:
    SceneFuzzer& fuzzer_;
};

/// Handles by functions of its own, of which one may be added later.
class MeddlingBase : public core::event::EventBase {
public:
    MeddlingBase(boost::shared_ptr<core::event::EventManager> events, SceneFuzzer& fuzzer)
        : EventBase(std::move(events)), fuzzer_(fuzzer) {}
    void listenTo(const EventType& type) {
        registerHandler(type, [this](const core::event::Event&) { fuzzer_.stepInHandler(); });
    }

private:
    SceneFuzzer& fuzzer_;
};

boost::shared_ptr<ITransformation> makeElement(CallReader& reader) {
    const unsigned int kind = reader.below(5);
    const float x = reader.real(), y = reader.real(), z = reader.real();
    if (kind == 0) return boost::make_shared<TransformationTranslate>(Vector3(x, y, z));
    if (kind == 1) return boost::make_shared<TransformationScale>(Vector3(x, y, z));
    if (kind == 2) return boost::make_shared<TransformationRotate>(Vector3(x, y, z), 90.0f);
    if (kind == 3) return boost::make_shared<TransformationMatrix>(reader.matrix().eval().data());
    return boost::make_shared<TransformationRotate>();
}

}  // namespace

void SceneFuzzer::makeNode() {
    auto& slot = reader_.of(nodes_);
    slot = boost::make_shared<Node>(scene());
}

void SceneFuzzer::takeNode() {
    const auto all = scene()->getNodeArray();
    auto& slot = reader_.of(nodes_);
    if (!all.empty()) slot = all[reader_.below(256) % all.size()];
}

void SceneFuzzer::dropNode() { reader_.of(nodes_).reset(); }

void SceneFuzzer::addNode() {
    const auto parent = reader_.oneIn(4) ? scene()->getRoot() : node();
    const auto child = node();
    if (countPlaces(*parent) + countPlaces(*child) > mostPlaces) return;
    parent->addNode(child);
    // A node that stands in several places multiplies what is below it.
    for (const auto& manager : scenes_) {
        if (!isSmall(*manager)) manager->setRoot(boost::make_shared<Node>(manager));
    }
}

void SceneFuzzer::removeNode() {
    const auto target = scene();
    switch (reader_.below(4)) {
        case 0:
            return target->removeNode(reader_.of(nodes_));
        case 1:
            return target->removeNodeByID(reader_.name());
        case 2:
            return target->getRoot()->removeChild(reader_.of(nodes_));
        default:
            node()->removeChild(reader_.of(nodes_));
    }
}

void SceneFuzzer::renameNode() {
    auto& target = *node();
    switch (reader_.below(5)) {
        case 0:
            return target.setName(reader_.name());
        case 1:
            return target.setSID(reader_.name());
        case 2:
            return target.setType(reader_.flag() ? "JOINT" : "NODE");
        default:
            target.setID(reader_.name());
    }
}

void SceneFuzzer::moveNode() {
    auto& target = *node();
    switch (reader_.below(6)) {
        case 0:
            return target.move(reader_.vector());
        case 1:
            return target.addTranslation(reader_.vector());
        case 2:
            return target.scale(reader_.vector());
        case 3:
            return target.setTranslation(Eigen::Translation3f(reader_.vector()));
        case 4:
            return target.rotate(reader_.matrix().topLeftCorner<3, 3>());
        default:
            target.setRotation(reader_.matrix());
    }
}

void SceneFuzzer::transformNode() {
    auto& target = *node();
    switch (reader_.below(4)) {
        case 0:
            return target.setTransformations(reader_.matrix());
        case 1:
            return target.addTransformation(reader_.matrix());
        case 2:
            return target.setOriginalTransformations({makeElement(reader_), nullptr});
        default:
            target.addTransformation(makeElement(reader_));
    }
}

void SceneFuzzer::changeLayers() {
    auto& target = *node();
    switch (reader_.below(5)) {
        case 0:
            return target.addToLayer(reader_.integer());
        case 1:
            return target.addToLayer(reader_.name());
        case 2:
            return target.removeFromLayer(reader_.name());
        case 3:
            target.getLayersNames();
            return target.setVisible(reader_.flag());
        default:
            target.removeFromLayer(reader_.integer());
    }
}

void SceneFuzzer::instantiate() {
    auto& target = *node();
    const auto instance =
        boost::make_shared<InstanceGeometry>(reader_.of(geometries_), reader_.of(materials_));
    switch (reader_.below(5)) {
        case 0:
            return target.addInstanceLight(
                boost::make_shared<Light>(scenes_[0], Light::POINT, reader_.name(), "light"));
        case 1:
            return target.addInstanceCamera(boost::make_shared<Camera>(
                scenes_[1], Camera::PERSPECTIVE, reader_.name(), "camera"));
        case 2:
            return target.addInstanceController(
                boost::make_shared<InstanceController>(instance, nullptr));
        case 3:
            if (target.getInstanceGeometryCount() == 0) return;
            return target.removeInstanceGeometry(target.getInstanceGeometry(0));
        default:
            if (target.getInstanceGeometryCount() < 4) target.addInstanceGeometry(instance);
    }
}

void SceneFuzzer::setMaterial() {
    auto& target = *node();
    const auto& material = reader_.of(materials_);
    const unsigned int instance = reader_.index();
    target.setMaterial(material, instance, reader_.index());
}

void SceneFuzzer::replaceRoot() {
    const auto target = scene();
    const auto root = reader_.of(nodes_);
    if (root && countPlaces(*root) > mostPlaces) return;
    target->setRoot(root);
}

void SceneFuzzer::lookUp() {
    const auto target = scene();
    const auto name = reader_.name();
    target->getNodeByID(name);
    target->getNodeByName(name);
    target->getMaterialWithID(name);
    target->getImageByFilename(name);
    target->getCameraInstanceBySID(name);
    target->getLayerManager()->getLayerName(reader_.integer());
    target->generateID();
    target->materialLibraryToString();
    target->effectLibraryToString();
}

void SceneFuzzer::askBounds() {
    auto& target = *node();
    target.getBVCenter();
    target.getCombinedRotations();
    checkWorldMatrix(target);
}

void SceneFuzzer::createCameraOrLight() {
    const auto target = scene();
    const auto id = reader_.name(), parent = reader_.name();
    if (++bigCalls_ > 4 * mostBigCalls) return;
    if (reader_.flag()) target->setUpAxis(static_cast<UpAxis>(reader_.integer()));
    if (reader_.flag()) {
        target->createNewCamera(Camera::ORTHOGRAPHIC, id, parent);
    } else {
        target->createNewLight(Light::SPOT, reader_.name(), id, parent);
    }
}

void SceneFuzzer::editImages() {
    const auto target = scene();
    const auto id = reader_.name(), file = reader_.name();
    const auto image = boost::make_shared<Image>(id, "folder/" + file, "image");
    switch (reader_.below(4)) {
        case 0:
            return target->setSurrounding(reader_.flag() ? image : nullptr);
        case 1:
            return target->setImageLibrary({image, nullptr, image});
        case 2:
            target->getImageAt(reader_.index());
            return;
        default:
            target->addImage(image);
    }
}

void SceneFuzzer::editMaterials() {
    const auto target = scene();
    const auto id = reader_.name(), effectID = reader_.name();
    const auto effect = boost::make_shared<Effect>(effectID, reader_.name(), "effect");
    auto& slot = reader_.of(materials_);
    switch (reader_.below(6)) {
        case 0:
            return target->addEffect(effect);
        case 1:
            return target->removeEffect(target->getEffectByID(effectID));
        case 2:
            return target->setEffectLibrary({effect, nullptr});
        case 3:
            return target->setMaterialList({slot, nullptr, slot});
        case 4:
            slot = boost::make_shared<Material>(id, effectID);
            slot->addMaterialParameter(
                boost::make_shared<MaterialParameter>("map", "texture", reader_.name()));
            break;
        default:
            if (slot) slot->setMaterialID(id);
    }
    target->addMaterial(slot);
}

boost::shared_ptr<IGeometry> SceneFuzzer::makeGeometry() {
    const auto id = reader_.name();
    const auto mesh = reader_.oneIn(4) ? boost::make_shared<ConvexMesh>(id, "mesh")
                                       : boost::make_shared<Mesh>(id, "mesh");
    const auto primitive =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    mesh->addPrimitive(primitive);
    for (unsigned int faces = reader_.below(4); faces > 0; --faces) {
        std::array<boost::shared_ptr<Vertex>, 3> corners;
        for (auto& corner : corners) {
            corner = boost::make_shared<Vertex>();
            const Eigen::Vector3f position = reader_.vector();
            corner->setPosition(position.x(), position.y(), position.z());
        }
        primitive->addTriangle(boost::make_shared<Triangle>(corners[0], corners[1], corners[2]),
                               reader_.flag());
    }
    if (reader_.oneIn(8)) mesh->setType(static_cast<IGeometry::Type>(reader_.below(5)));
    return mesh;
}

void SceneFuzzer::editGeometries() {
    const auto target = scene();
    const auto manager = target->getGeometryManager();
    if (!manager) return;
    auto& slot = reader_.of(geometries_);
    switch (reader_.below(6)) {
        case 0:
            return manager->recalculateVertexNormals(reader_.name());
        case 1:
            if (++bigCalls_ > mostBigCalls) return;
            return manager->subDivideGeometry(reader_.name(), nullptr);
        case 2:
            return target->setGeometryManager(reader_.oneIn(4) ? nullptr
                                                               : scene()->getGeometryManager());
        case 3:
            if (slot) slot->setID(reader_.name());
            return;
        default:
            slot = makeGeometry();
            manager->addGeometry(slot);
    }
}

void SceneFuzzer::mergeLibraries() {
    const auto target = scene(), source = scene();
    if (++bigCalls_ > mostBigCalls) return;
    switch (reader_.below(5)) {
        case 0:
            target->mergeEffectLibrary(source->getEffectLibrary());
            return;
        case 1:
            target->mergeImageLibrary(source->getImageLibrary(), reader_.flag());
            return;
        case 2:
            target->mergeMaterialLibrary(source->getMaterialList(), {{"a", "b"}}, {{"c", "d"}},
                                         reader_.flag());
            return;
        case 3:
            target->getLayerManager()->mergeLayers(source->getLayerManager(), reader_.flag());
            return;
        default:
            if (!target->getGeometryManager()) return;
            target->getGeometryManager()->mergeGeometries(source->getGeometryManager(),
                                                          reader_.flag());
    }
}

void SceneFuzzer::mergeScenes() {
    const auto source = scene();
    auto& target = scene();
    const int options = static_cast<int>(reader_.below(64));
    const auto parent = reader_.name();
    if (++bigCalls_ > mostBigCalls || !isSmall(*target) || !isSmall(*source)) return;
    target->mergeSceneManager(source, options, parent);
}

void SceneFuzzer::blendScenes() {
    const auto source = scene();
    auto& target = scene();
    switch (reader_.below(4)) {
        case 0:
            return target->replaceJoints(source);
        case 1:
            return target->replaceSharedStreams(source);
        case 2: {
            if (!target->getControllersLibrary().empty()) return;
            const auto controller = boost::make_shared<Controller>(reader_.name(), "skin");
            controller->setSkin(boost::make_shared<Skin>(reader_.of(geometries_)));
            return target->addController(controller);
        }
        default:
            if (++bigCalls_ <= mostBigCalls) target->morph(source, reader_.real());
    }
}

void SceneFuzzer::sendLocalEvent() {
    static constexpr std::array<const char*, 5> names{"L_NewEffect", "L_NewMaterial",
                                                      "L_MaterialParameterUpdated",
                                                      "L_MaterialTechniqueChanged", "SceneUpdate"};
    auto& manager = events();
    const char* const name = reader_.of(names);
    auto payload = reader_.name();
    for (unsigned int i = reader_.below(4); i > 0; --i) payload += "," + reader_.name();
    manager->triggerEvent(name, reader_.flag() ? payload + ",texture" : payload);
}

void SceneFuzzer::changeListeners() {
    auto& slot = reader_.of(listeners_);
    const auto manager = events();
    const auto type = eventType(reader_);
    if (!slot) {
        if (reader_.flag()) {
            slot = boost::make_shared<Meddler>(*this);
        } else {
            slot = boost::make_shared<MeddlingBase>(manager, *this);
        }
    }
    const auto base = boost::dynamic_pointer_cast<MeddlingBase>(slot);
    switch (reader_.below(6)) {
        case 0:
            manager->unregisterListener(type, slot.get());
            return;
        case 1:
            manager->unregisterFromAll(slot.get());
            return;
        case 2:
            if (base) base->setEventManager(reader_.flag() ? manager : nullptr);
            return;
        default:
            if (base) return base->listenTo(type);
            manager->registerListener(type, slot.get());
    }
}

void SceneFuzzer::dropListener() { reader_.of(listeners_).reset(); }

void SceneFuzzer::replaceEvents() {
    auto& slot = events();
    auto& target = scene();
    switch (reader_.below(3)) {
        case 0:
            slot = makeEvents();
            return;
        case 1:
            return target->setEventManager(nullptr);
        default:
            target->setEventManager(slot);
    }
}

void SceneFuzzer::replaceScene() {
    auto& slot = scene();
    if (++bigCalls_ > mostBigCalls) return;
    if (reader_.flag()) slot->stop();
    if (reader_.flag()) slot = boost::make_shared<SceneManager>(events());
}

bool SceneFuzzer::isSmall(SceneManager& manager) const {
    return countPlaces(*manager.getRoot()) <= mostPlaces;
}

void SceneFuzzer::checkNow() { checkTree(*scene()); }

}  // namespace vantorix::fuzz
