#pragma once

#include <string>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class SceneManager;

/// Colour, attenuation and fall-off of a light. Where it stands is a matter of its node.
///
/// Setters of the parameters send "LightUpdated" with the light's ID.
/// Ownership: the scene manager is weak; once it is gone the light can be edited but sends nothing.
/// Threads: not locked.
class VANTORIX_SCENE_EXPORT Light {
public:
    /// Stored as given, never interpreted by this library.
    enum LightType : int { AMBIENT = 0, DIRECTIONAL = 1, POINT = 2, SPOT = 3 };

    /// White, without attenuation, fall-off angle 180 and exponent 0.
    Light(boost::shared_ptr<SceneManager> sceneManager, LightType type, std::string id,
          std::string name);
    virtual ~Light();

    std::string getID() const;
    std::string getName() const;
    LightType getLightType() const;

    /// Red, green, blue.
    Eigen::Vector3f getColor() const;
    float getConstantAttenuation() const;
    float getLinearAttenuation() const;
    float getQuadraticAttenuation() const;
    float getFallOffAngle() const;
    float getFallOffExponent() const;

    /// Deliberate: sends no event.
    void setLightType(LightType type);

    void setColor(float red, float green, float blue);
    void setColor(const Eigen::Vector3f& color);
    void setAttenuation(float constant, float linear, float quadratic);

    /// @p angle is in degrees.
    void setFallOff(float angle, float exponent);

protected:
    void triggerUpdateEvent();

private:
    boost::weak_ptr<SceneManager> sceneManager_;
    std::string id_;
    std::string name_;
    LightType type_;
    Eigen::Vector3f color_ = Eigen::Vector3f::Ones();
    float constantAttenuation_ = 1.0f;
    float linearAttenuation_ = 0.0f;
    float quadraticAttenuation_ = 0.0f;
    float fallOffAngle_ = 180.0f;
    float fallOffExponent_ = 0.0f;
};

}  // namespace vantorix::scene
