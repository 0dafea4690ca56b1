#pragma once

#include <list>
#include <string>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Material;
class Node;

/// One render pass, immutable: the node to look from, the layers to draw and, optionally, a
/// material that replaces those of the scene.
class VANTORIX_SCENE_EXPORT Render {
public:
    Render(boost::shared_ptr<Node> cameraNode, std::list<std::string> layers,
           boost::shared_ptr<Material> material);

    boost::shared_ptr<Node> getCameraNode() const;
    std::list<std::string> getLayers() const;

    /// Empty when the pass uses the scene's materials.
    boost::shared_ptr<Material> getMaterial() const;

private:
    boost::shared_ptr<Node> cameraNode_;
    std::list<std::string> layers_;
    boost::shared_ptr<Material> material_;
};

}  // namespace vantorix::scene
