#include "apps/render/SceneReader.h"

#include <map>
#include <unordered_set>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "apps/render/LightReader.h"
#include "apps/render/MeshFlattener.h"
#include "apps/render/RenderError.h"
#include "apps/render/SceneGuard.h"
#include "apps/render/SkinPose.h"
#include "apps/render/SurfaceReader.h"
#include "scene/animation/Camera.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::apps::render {
namespace {

using scene::Node;

Eigen::Matrix4d worldOf(const Node& node) {
    return node.getCombinedTransformations().cast<double>();
}

scene::StreamSemantic texCoordSemantic(int set) {
    return static_cast<scene::StreamSemantic>(scene::TEXCOORD0 + set);
}

/// Reads primitives and materials once, however many nodes show them.
class GeometryReader {
public:
    explicit GeometryReader(DrawList& list) : list_(list) {}

    void add(const scene::InstanceGeometry& instance, const Eigen::Matrix4d& world) {
        addMesh(instance, world, nullptr);
    }

    /// A geometry that was put into the world by a skin.
    void addPosed(const scene::InstanceGeometry& instance, const SkinPose& pose) {
        addMesh(instance, Eigen::Matrix4d::Identity(), &pose);
        hasPosed_ = true;
    }

    bool hasPosed() const { return hasPosed_; }

private:
    /// One primitive with one set of texture coordinates.
    using FlatKey = std::pair<const scene::IMeshPrimitive*, scene::StreamSemantic>;

    void addMesh(const scene::InstanceGeometry& instance, const Eigen::Matrix4d& world,
                 const SkinPose* pose) {
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(instance.getGeometry());
        if (!mesh || !world.allFinite()) return;
        for (const auto& primitive : mesh->getMeshPrimitives()) {
            if (!primitive) continue;
            const auto material = instance.getMaterial(primitive->getMaterialSymbol());
            DrawItem item{{}, world, surfaceOf(material)};
            const auto texCoords = texCoordSemantic(item.surface.texCoordSet);
            addItem(item, pose ? stored(flatten(*mesh, *primitive, texCoords, pose))
                               : flatOf(*mesh, *primitive, texCoords));
        }
    }

    void addItem(DrawItem& item, const std::shared_ptr<const FlatPrimitive>& flat) {
        if (flat->corners.empty()) return;
        count(flat->corners, drawn_, mostDrawnTriangles);
        item.corners = std::shared_ptr<const Corners>(flat, &flat->corners);
        item.hasTransparentCorners = flat->hasTransparentCorners;
        if (!flat->hasTexCoords) item.surface.imageId.clear();
        list_.items.push_back(std::move(item));
    }

    const Surface& surfaceOf(const boost::shared_ptr<scene::Material>& material) {
        const auto known = surfaces_.find(material.get());
        if (known != surfaces_.end()) return known->second;
        return surfaces_[material.get()] = material ? readSurface(*material) : Surface();
    }

    std::shared_ptr<const FlatPrimitive> flatOf(const scene::Mesh& mesh,
                                                scene::IMeshPrimitive& primitive,
                                                scene::StreamSemantic texCoords) {
        auto& flat = flats_[{&primitive, texCoords}];
        if (!flat) flat = stored(flatten(mesh, primitive, texCoords));
        return flat;
    }

    std::shared_ptr<const FlatPrimitive> stored(FlatPrimitive flat) {
        count(flat.corners, stored_, mostStoredTriangles);
        return std::make_shared<const FlatPrimitive>(std::move(flat));
    }

    static void count(const Corners& corners, std::size_t& triangles, std::size_t allowed) {
        triangles += corners.size() / 3;
        if (triangles <= allowed) return;
        throw RenderLimit("more than " + std::to_string(allowed) + " triangles to draw");
    }

    DrawList& list_;
    bool hasPosed_ = false;
    std::size_t stored_ = 0;
    std::size_t drawn_ = 0;
    std::map<const scene::Material*, Surface> surfaces_;
    std::map<FlatKey, std::shared_ptr<const FlatPrimitive>> flats_;
};

/// Visible nodes in depth-first order, each once, without recursion: trees may be very deep.
std::vector<boost::shared_ptr<Node>> visibleNodes(const boost::shared_ptr<Node>& root) {
    std::vector<boost::shared_ptr<Node>> visible;
    std::unordered_set<const Node*> met;
    std::vector<boost::shared_ptr<Node>> waiting{root};
    while (!waiting.empty()) {
        const auto node = waiting.back();
        waiting.pop_back();
        if (!node->isVisible() || !met.insert(node.get()).second) continue;
        visible.push_back(node);
        for (unsigned int i = node->getChildCount(); i > 0; --i) {
            waiting.push_back(node->getChildNode(i - 1));
        }
    }
    return visible;
}

CameraPlace placeOf(const scene::Camera& camera, const Node& node) {
    CameraPlace place;
    place.id = camera.getID();
    place.name = camera.getName();
    place.nodeId = node.getID();
    place.nodeName = node.getName();
    place.world = worldOf(node);
    place.lens.orthographic = camera.getCameraType() == scene::Camera::ORTHOGRAPHIC;
    place.lens.yFov = camera.getYFov();
    place.lens.zNear = camera.getZNear();
    place.lens.zFar = camera.getZFar();
    return place;
}

/// SIDs of camera instances by camera and node.
using InstanceSids = std::map<std::pair<const scene::Camera*, const Node*>, std::string>;

InstanceSids instanceSids(const scene::SceneManager& manager) {
    InstanceSids sids;
    for (unsigned int i = 0; i < manager.getCameraInstanceCount(); ++i) {
        const auto instance = manager.getCameraInstanceAt(i);
        if (!instance) continue;
        sids.emplace(std::make_pair(instance->getCamera().get(), instance->getParentNode().get()),
                     instance->getSID());
    }
    return sids;
}

std::vector<CameraPlace> readCameras(const scene::SceneManager& manager) {
    std::vector<CameraPlace> places;
    const auto sids = instanceSids(manager);
    for (const auto& node : manager.getNodeArray()) {
        for (unsigned int i = 0; i < node->getInstanceCameraCount(); ++i) {
            const auto camera = node->getInstanceCamera(i);
            places.push_back(placeOf(*camera, *node));
            const auto sid = sids.find({camera.get(), node.get()});
            if (sid != sids.end()) places.back().sid = sid->second;
        }
    }
    return places;
}

void readController(const scene::InstanceController& instance, const Node& node,
                    const scene::SceneManager& manager, GeometryReader& geometry) {
    const auto shown = instance.getInstanceGeometry();
    const auto controller = instance.getController();
    if (!shown) return;
    const auto skin = controller ? controller->getSkin() : nullptr;
    if (skin) {
        geometry.addPosed(*shown, SkinPose(manager, skin, node.getCombinedTransformations()));
    } else {
        geometry.add(*shown, worldOf(node));
    }
}

void readNode(const Node& node, const scene::SceneManager& manager, GeometryReader& geometry,
              Lighting& lighting) {
    const unsigned int lights = node.getInstanceLightCount();
    const auto instances = node.getInstancedGeometries();
    for (unsigned int i = 0; i < node.getInstanceControllerCount(); ++i) {
        readController(*node.getInstanceController(i), node, manager, geometry);
    }
    if (lights == 0 && instances.empty()) return;
    const Eigen::Matrix4d world = worldOf(node);
    for (unsigned int i = 0; i < lights; ++i) addLight(*node.getInstanceLight(i), world, lighting);
    for (const auto& instance : instances) geometry.add(*instance, world);
}

/// The root's bounding volume, or where that is of no use the box of what is drawn.
Box boxOf(const Node& root, const GeometryReader& geometry, const DrawList& list) {
    // Nodes know nothing of where a skin puts its geometry.
    if (geometry.hasPosed()) return boundsOf(list);
    const Box box{root.getBVMin().cast<double>(), root.getBVMax().cast<double>()};
    return box.isUsable() ? box : boundsOf(list);
}

}  // namespace

SceneContents readScene(scene::SceneManager& manager) {
    const SceneGuard guard(manager);
    const auto root = manager.getRoot();
    SceneContents contents;
    GeometryReader geometry(contents.list);
    for (const auto& node : visibleNodes(root)) {
        readNode(*node, manager, geometry, contents.list.lighting);
    }
    contents.cameras = readCameras(manager);
    contents.box = boxOf(*root, geometry, contents.list);
    contents.upAxis = manager.getUpAxis();
    return contents;
}

}  // namespace vantorix::apps::render
