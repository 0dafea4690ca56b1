#include "scene/animation/Camera.h"

#include <utility>

#include "core_api/event/EventType.h"

#include "scene/animation/UpdateEvent.h"

namespace vantorix::scene {

Camera::Camera(boost::shared_ptr<SceneManager> sceneManager, Type type, std::string id,
               std::string name)
    : sceneManager_(sceneManager), id_(std::move(id)), name_(std::move(name)), type_(type) {
    if (type != PERSPECTIVE && type != ORTHOGRAPHIC) return;
    yFov_ = type == PERSPECTIVE ? 45.0f : 1.0f;
    zNear_ = 0.1f;
    zFar_ = 10000.0f;
}

Camera::~Camera() = default;

std::string Camera::getID() const { return id_; }

std::string Camera::getName() const { return name_; }

Camera::Type Camera::getCameraType() const { return type_; }

float Camera::getYFov() const { return yFov_; }

float Camera::getZNear() const { return zNear_; }

float Camera::getZFar() const { return zFar_; }

void Camera::setCameraType(Type type) { type_ = type; }  // Without an event, on purpose.

void Camera::setYFov(float yFov) {
    yFov_ = yFov;
    triggerUpdateEvent();
}

void Camera::setZNear(float zNear) {
    zNear_ = zNear;
    triggerUpdateEvent();
}

void Camera::setZFar(float zFar) {
    zFar_ = zFar;
    triggerUpdateEvent();
}

void Camera::triggerUpdateEvent() {
    static const core::event::EventType updated("CameraUpdated");
    sendUpdateEvent(sceneManager_, updated, id_);
}

}  // namespace vantorix::scene
