#pragma once

#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::render {

/// A material with the given parameters, each a name and a value.
inline boost::shared_ptr<scene::Material> makeMaterial(
    const std::vector<std::pair<std::string, std::string>>& parameters) {
    const auto material = boost::make_shared<scene::Material>("material", "effect");
    for (const auto& [name, value] : parameters) {
        material->addMaterialParameter(
            boost::make_shared<scene::MaterialParameter>(name, "", value));
    }
    return material;
}

inline boost::shared_ptr<scene::Stream> makeStream(const std::string& name, int stride,
                                                   const std::vector<float>& values) {
    const auto stream = boost::make_shared<scene::Stream>(name, stride, true);
    stream->values = values;
    return stream;
}

/// A mesh with a position stream and no primitives.
inline boost::shared_ptr<scene::Mesh> makeMesh(const std::vector<float>& positions) {
    const auto mesh = boost::make_shared<scene::Mesh>("mesh", "");
    const auto stream = makeStream("position_stream", 3, positions);
    mesh->addStream(stream);
    mesh->addVerticesMapping({scene::POSITION, stream, 0});
    return mesh;
}

/// The mapping through which a primitive reaches the positions of its mesh.
inline scene::StreamMapping vertexMapping() {
    return {scene::VERTEX, boost::make_shared<scene::Stream>("vertices", 3, true), 0};
}

/// A rectangle in the x-y plane around the origin, with texture coordinates from 0 to 1.
inline boost::shared_ptr<scene::Mesh> makeRectangle(float width, float height) {
    const float x = width / 2, y = height / 2;
    const auto mesh = makeMesh({-x, -y, 0, x, -y, 0, x, y, 0, -x, y, 0});
    const auto texCoords = makeStream("TEXCOORD_stream", 2, {0, 0, 1, 0, 1, 1, 0, 1});
    const std::vector<scene::StreamMapping> mappings = {vertexMapping(),
                                                        {scene::TEXCOORD0, texCoords, 1}};
    const std::vector<unsigned int> indices = {0, 0, 1, 1, 2, 2, 0, 0, 2, 2, 3, 3};
    mesh->addPrimitive(boost::make_shared<scene::TriangleMeshPrimitive>(mesh, mappings, indices));
    return mesh;
}

/// A running scene that nobody listens to; it ends with this object.
struct QuietScene {
    QuietScene() = default;
    ~QuietScene() { manager->stop(); }
    QuietScene(const QuietScene&) = delete;
    QuietScene& operator=(const QuietScene&) = delete;

    boost::shared_ptr<scene::Node> addNode() {
        const auto node = boost::make_shared<scene::Node>(manager);
        manager->getRoot()->addNode(node);
        return node;
    }

    boost::shared_ptr<scene::Node> show(const boost::shared_ptr<scene::Mesh>& mesh,
                                        const boost::shared_ptr<scene::Material>& material) {
        const auto node = addNode();
        node->addInstanceGeometry(boost::make_shared<scene::InstanceGeometry>(mesh, material));
        return node;
    }

    boost::shared_ptr<scene::SceneManager> manager =
        boost::make_shared<scene::SceneManager>(boost::make_shared<core::event::EventManager>());
};

}  // namespace vantorix::apps::render
