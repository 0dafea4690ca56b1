#include <boost/make_shared.hpp>

#include "fuzz/scene/SceneFuzzer.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::fuzz {

using namespace scene;

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

}  // namespace vantorix::fuzz
