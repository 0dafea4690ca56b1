#include "scene/animation/CameraInstance.h"

#include <utility>

namespace vantorix::scene {

CameraInstance::CameraInstance(boost::shared_ptr<Node> parentNode, boost::shared_ptr<Camera> camera,
                               std::string sid)
    : parentNode_(parentNode), camera_(camera), sid_(std::move(sid)) {}

CameraInstance::~CameraInstance() = default;

boost::shared_ptr<Camera> CameraInstance::getCamera() const { return camera_.lock(); }

boost::shared_ptr<Node> CameraInstance::getParentNode() const { return parentNode_.lock(); }

std::string CameraInstance::getSID() const { return sid_; }

void CameraInstance::setSID(std::string sid) { sid_ = std::move(sid); }

}  // namespace vantorix::scene
