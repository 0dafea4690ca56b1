#include <boost/make_shared.hpp>

#include "fuzz/scene/SceneFuzzer.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::fuzz {
namespace {

using namespace scene;
using Vector3 = core::utils::Vector<float, 3>;

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

}  // namespace vantorix::fuzz
