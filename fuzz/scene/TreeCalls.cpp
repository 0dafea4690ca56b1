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
    reader_.makeOne([&] { target->removeNode(reader_.of(nodes_)); },
                    [&] { target->removeNodeByID(reader_.name()); },
                    [&] { target->getRoot()->removeChild(reader_.of(nodes_)); },
                    [&] { node()->removeChild(reader_.of(nodes_)); });
}

void SceneFuzzer::renameNode() {
    auto& target = *node();
    const auto setID = [&] { target.setID(reader_.name()); };
    reader_.makeOne([&] { target.setName(reader_.name()); }, [&] { target.setSID(reader_.name()); },
                    [&] { target.setType(reader_.flag() ? "JOINT" : "NODE"); }, setID, setID);
}

void SceneFuzzer::moveNode() {
    auto& target = *node();
    reader_.makeOne([&] { target.move(reader_.vector()); },
                    [&] { target.addTranslation(reader_.vector()); },
                    [&] { target.scale(reader_.vector()); },
                    [&] { target.setTranslation(Eigen::Translation3f(reader_.vector())); },
                    [&] { target.rotate(reader_.matrix().topLeftCorner<3, 3>()); },
                    [&] { target.setRotation(reader_.matrix()); });
}

void SceneFuzzer::transformNode() {
    auto& target = *node();
    reader_.makeOne([&] { target.setTransformations(reader_.matrix()); },
                    [&] { target.addTransformation(reader_.matrix()); },
                    [&] {
                        target.setOriginalTransformations({makeElement(reader_), nullptr});
                    },
                    [&] { target.addTransformation(makeElement(reader_)); });
}

void SceneFuzzer::changeLayers() {
    auto& target = *node();
    reader_.makeOne([&] { target.addToLayer(reader_.integer()); },
                    [&] { target.addToLayer(reader_.name()); },
                    [&] { target.removeFromLayer(reader_.name()); },
                    [&] {
                        target.getLayersNames();
                        target.setVisible(reader_.flag());
                    },
                    [&] { target.removeFromLayer(reader_.integer()); });
}

void SceneFuzzer::instantiate() {
    auto& target = *node();
    const auto instance =
        boost::make_shared<InstanceGeometry>(reader_.of(geometries_), reader_.of(materials_));
    reader_.makeOne(
        [&] {
            target.addInstanceLight(
                boost::make_shared<Light>(scenes_[0], Light::POINT, reader_.name(), "light"));
        },
        [&] {
            target.addInstanceCamera(boost::make_shared<Camera>(scenes_[1], Camera::PERSPECTIVE,
                                                                reader_.name(), "camera"));
        },
        [&] {
            target.addInstanceController(boost::make_shared<InstanceController>(instance, nullptr));
        },
        [&] {
            if (target.getInstanceGeometryCount() == 0) return;
            target.removeInstanceGeometry(target.getInstanceGeometry(0));
        },
        [&] {
            if (target.getInstanceGeometryCount() < 4) target.addInstanceGeometry(instance);
        });
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
