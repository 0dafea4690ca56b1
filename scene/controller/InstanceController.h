#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Controller;
class InstanceGeometry;

/// A controller in the scene: the geometry instance that it deforms and the skeletons it binds to.
class VANTORIX_SCENE_EXPORT InstanceController {
public:
    InstanceController(boost::shared_ptr<InstanceGeometry> instanceGeometry,
                       boost::shared_ptr<Controller> controller);
    virtual ~InstanceController();

    boost::shared_ptr<InstanceGeometry> getInstanceGeometry() const;
    boost::shared_ptr<Controller> getController() const;

    /// IDs of the nodes at the roots of the skeletons.
    const std::vector<std::string>& getSkeletons() const;
    void setSkeletons(std::vector<std::string> skeletons);

private:
    boost::shared_ptr<InstanceGeometry> instanceGeometry_;
    boost::shared_ptr<Controller> controller_;
    std::vector<std::string> skeletons_;
};

}  // namespace vantorix::scene
