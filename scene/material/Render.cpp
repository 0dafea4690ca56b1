#include "scene/material/Render.h"

#include <utility>

namespace vantorix::scene {

Render::Render(boost::shared_ptr<Node> cameraNode, std::list<std::string> layers,
               boost::shared_ptr<Material> material)
    : cameraNode_(std::move(cameraNode)),
      layers_(std::move(layers)),
      material_(std::move(material)) {}

boost::shared_ptr<Node> Render::getCameraNode() const { return cameraNode_; }

std::list<std::string> Render::getLayers() const { return layers_; }

boost::shared_ptr<Material> Render::getMaterial() const { return material_; }

}  // namespace vantorix::scene
