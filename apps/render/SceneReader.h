#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "apps/render/DrawList.h"
#include "apps/render/Framing.h"

namespace vantorix::scene {
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// A camera of a scene at one of the places where it stands.
struct CameraPlace {
    std::string id;
    std::string name;
    std::string sid;  ///< Of the camera's instance; empty for cameras that only a node holds.
    std::string nodeId;
    std::string nodeName;
    Lens lens;
    Eigen::Matrix4d world = Eigen::Matrix4d::Identity();
};

/// What a picture needs to know of a scene.
struct SceneContents {
    DrawList list;
    std::vector<CameraPlace> cameras;  ///< In the order of the tree.
    Box box;                           ///< Of all that is drawn.
    int upAxis = 1;
};

/// Triangles at most: in memory, and counted as often as nodes show them.
constexpr std::size_t mostStoredTriangles = 20000000;
constexpr std::size_t mostDrawnTriangles = 100000000;

/// Reads the whole tree under the scene lock. Hidden nodes are left out with all that stands
/// below them, but for cameras.
/// @throws RenderLimit when the scene shows more triangles than the limits above.
SceneContents readScene(scene::SceneManager& manager);

}  // namespace vantorix::apps::render
