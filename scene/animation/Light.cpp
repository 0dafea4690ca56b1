#include "scene/animation/Light.h"

#include <utility>

#include "core_api/event/EventType.h"

#include "scene/animation/UpdateEvent.h"

namespace vantorix::scene {

Light::Light(boost::shared_ptr<SceneManager> sceneManager, LightType type, std::string id,
             std::string name)
    : sceneManager_(sceneManager), id_(std::move(id)), name_(std::move(name)), type_(type) {}

Light::~Light() = default;

std::string Light::getID() const { return id_; }

std::string Light::getName() const { return name_; }

Light::LightType Light::getLightType() const { return type_; }

Eigen::Vector3f Light::getColor() const { return color_; }

float Light::getConstantAttenuation() const { return constantAttenuation_; }

float Light::getLinearAttenuation() const { return linearAttenuation_; }

float Light::getQuadraticAttenuation() const { return quadraticAttenuation_; }

float Light::getFallOffAngle() const { return fallOffAngle_; }

float Light::getFallOffExponent() const { return fallOffExponent_; }

void Light::setLightType(LightType type) { type_ = type; }  // Without an event, on purpose.

void Light::setColor(float red, float green, float blue) {
    setColor(Eigen::Vector3f(red, green, blue));
}

void Light::setColor(const Eigen::Vector3f& color) {
    color_ = color;
    triggerUpdateEvent();
}

void Light::setAttenuation(float constant, float linear, float quadratic) {
    constantAttenuation_ = constant;
    linearAttenuation_ = linear;
    quadraticAttenuation_ = quadratic;
    triggerUpdateEvent();
}

void Light::setFallOff(float angle, float exponent) {
    fallOffAngle_ = angle;
    fallOffExponent_ = exponent;
    triggerUpdateEvent();
}

void Light::triggerUpdateEvent() {
    static const core::event::EventType updated("LightUpdated");
    sendUpdateEvent(sceneManager_, updated, id_);
}

}  // namespace vantorix::scene
