#include "apps/vantorix/NodeDump.h"

#include <nlohmann/json.hpp>

#include "core_api/utils/Matrix.h"
#include "core_api/utils/Vector.h"

#include "apps/vantorix/JsonText.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/IGeometry.h"
#include "scene/graph/Node.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationSkew.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;
using Vector3 = core::utils::Vector<float, 3>;

Json floatsJson(const float* values, std::size_t count) {
    Json list = Json::array();
    for (std::size_t i = 0; i < count; ++i) list.push_back(jsonNumber(values[i]));
    return list;
}

Json vectorJson(const Vector3& vector) {
    Json list = Json::array();
    for (std::size_t i = 0; i < vector.size(); ++i) {
        list.push_back(jsonNumber(vector[i]));
    }
    return list;
}

Json describe(const scene::TransformationLookAt& element) {
    return {{"type", "lookat"},
            {"eye", vectorJson(element.getEyePosition())},
            {"interest", vectorJson(element.getInterestPoint())},
            {"up", vectorJson(element.getUpAxis())}};
}

Json describe(const scene::TransformationMatrix& element) {
    return {{"type", "matrix"}, {"matrix", floatsJson(element.getMatrix().getMatrix(), 16)}};
}

Json describe(const scene::TransformationRotate& element) {
    return {{"type", "rotate"},
            {"axis", vectorJson(element.getRotationAxis())},
            {"degrees", jsonNumber(element.getAngle())}};
}

Json describe(const scene::TransformationScale& element) {
    return {{"type", "scale"}, {"factors", vectorJson(element.getScale())}};
}

Json describe(const scene::TransformationSkew& element) {
    return {{"type", "skew"},
            {"degrees", jsonNumber(element.getAngle())},
            {"rotation", vectorJson(element.getRotation())},
            {"translation", vectorJson(element.getTranslation())}};
}

Json describe(const scene::TransformationTranslate& element) {
    return {{"type", "translate"}, {"offset", vectorJson(element.getTranslation())}};
}

template <typename Element>
bool describeAs(const scene::ITransformation& element, Json& json) {
    const auto* const known = dynamic_cast<const Element*>(&element);
    if (known) json = describe(*known);
    return known != nullptr;
}

Json elementDump(const scene::ITransformation& element) {
    Json json = {{"type", "unknown"}};
    describeAs<scene::TransformationMatrix>(element, json) ||
        describeAs<scene::TransformationTranslate>(element, json) ||
        describeAs<scene::TransformationRotate>(element, json) ||
        describeAs<scene::TransformationScale>(element, json) ||
        describeAs<scene::TransformationLookAt>(element, json) ||
        describeAs<scene::TransformationSkew>(element, json);
    json["sid"] = element.getSid();
    return json;
}

Json instanceDump(scene::InstanceGeometry& instance) {
    const auto geometry = instance.getGeometry();
    Json materials = Json::object();
    for (const auto& [symbol, material] : instance.getMaterialMap()) {
        materials[symbol] = material ? Json(material->getMaterialID()) : Json(nullptr);
    }
    return {{"geometry", geometry ? Json(geometry->getID()) : Json(nullptr)},
            {"materials", materials}};
}

Json instancesDump(const scene::Node& node) {
    Json list = Json::array();
    for (const auto& instance : node.getInstancedGeometries()) {
        list.push_back(instanceDump(*instance));
    }
    for (const auto& instance : node.getInstancedControllers()) {
        const auto shown = instance->getInstanceGeometry();
        const auto controller = instance->getController();
        Json json = shown ? instanceDump(*shown) : Json::object();
        json["controller"] = controller ? Json(controller->getID()) : Json(nullptr);
        json["skeletons"] = instance->getSkeletons();
        list.push_back(std::move(json));
    }
    return list;
}

}  // namespace

nlohmann::ordered_json nodeDump(const scene::Node& node, const NodeNumbers& numbers) {
    const auto parent = numbers.find(node.getParent().get());
    Json elements = Json::array();
    for (const auto& element : node.getOriginalTransformations()) {
        if (element) elements.push_back(elementDump(*element));
    }
    Json cameras = Json::array();
    for (unsigned int i = 0; i < node.getInstanceCameraCount(); ++i) {
        cameras.push_back(node.getInstanceCamera(i)->getID());
    }
    Json lights = Json::array();
    for (unsigned int i = 0; i < node.getInstanceLightCount(); ++i) {
        lights.push_back(node.getInstanceLight(i)->getID());
    }
    const Eigen::Matrix4f& local = node.getTransformations();
    return {{"id", node.getID()},
            {"name", node.getName()},
            {"sid", node.getSID()},
            {"type", node.getType()},
            {"parent", parent == numbers.end() ? Json(nullptr) : Json(parent->second)},
            {"layers", node.getLayersNames()},
            {"matrix", floatsJson(local.data(), 16)},
            {"elements", elements},
            {"instances", instancesDump(node)},
            {"cameras", cameras},
            {"lights", lights}};
}

}  // namespace vantorix::apps::cli
