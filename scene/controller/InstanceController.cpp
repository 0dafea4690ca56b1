#include "scene/controller/InstanceController.h"

#include <utility>

namespace vantorix::scene {

InstanceController::InstanceController(boost::shared_ptr<InstanceGeometry> instanceGeometry,
                                       boost::shared_ptr<Controller> controller)
    : instanceGeometry_(std::move(instanceGeometry)), controller_(std::move(controller)) {}

InstanceController::~InstanceController() = default;

boost::shared_ptr<InstanceGeometry> InstanceController::getInstanceGeometry() const {
    return instanceGeometry_;
}

boost::shared_ptr<Controller> InstanceController::getController() const { return controller_; }

const std::vector<std::string>& InstanceController::getSkeletons() const { return skeletons_; }

void InstanceController::setSkeletons(std::vector<std::string> skeletons) {
    skeletons_ = std::move(skeletons);
}

}  // namespace vantorix::scene
