#pragma once

#include <string>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Camera;
class Node;

/// A camera at the place of a node. Keeps neither of them alive.
class VANTORIX_SCENE_EXPORT CameraInstance {
public:
    CameraInstance(boost::shared_ptr<Node> parentNode, boost::shared_ptr<Camera> camera,
                   std::string sid);
    virtual ~CameraInstance();

    /// Empty once the camera is gone.
    boost::shared_ptr<Camera> getCamera() const;

    /// Empty once the node is gone.
    boost::shared_ptr<Node> getParentNode() const;

    std::string getSID() const;
    void setSID(std::string sid);

private:
    boost::weak_ptr<Node> parentNode_;
    boost::weak_ptr<Camera> camera_;
    std::string sid_;
};

}  // namespace vantorix::scene
