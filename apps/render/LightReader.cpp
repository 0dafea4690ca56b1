#include "apps/render/LightReader.h"

#include <algorithm>
#include <cmath>

#include "scene/animation/Light.h"

namespace vantorix::apps::render {
namespace {

constexpr double halfDegree = 3.14159265358979323846 / 360.0;

/// A light that never fades would otherwise be divided by nothing.
Eigen::Vector3f attenuationOf(const scene::Light& light) {
    const Eigen::Vector3f attenuation(light.getConstantAttenuation(), light.getLinearAttenuation(),
                                      light.getQuadraticAttenuation());
    const bool usable = attenuation.allFinite() && attenuation.maxCoeff() > 0.0f;
    return usable ? attenuation.cwiseMax(0.0f).eval() : Eigen::Vector3f(1.0f, 0.0f, 0.0f);
}

/// The fall-off angle spans the whole cone.
void addCone(const scene::Light& light, LightSource& source) {
    const float angle = std::clamp(light.getFallOffAngle(), 0.0f, 360.0f);
    if (!std::isfinite(angle)) return;
    source.coneCosine = static_cast<float>(std::cos(angle * halfDegree));
    const float exponent = light.getFallOffExponent();
    if (std::isfinite(exponent)) source.coneExponent = std::clamp(exponent, 0.0f, 128.0f);
}

}  // namespace

void addLight(const scene::Light& light, const Eigen::Matrix4d& world, Lighting& lighting) {
    const Eigen::Vector3f colour = light.getColor();
    if (!colour.allFinite() || !world.allFinite() || colour.maxCoeff() <= 0.0f) return;
    if (light.getLightType() == scene::Light::AMBIENT) {
        lighting.ambient += colour;
        return;
    }
    LightSource source;
    source.colour = colour.cwiseMax(0.0f);
    const Eigen::Vector3d back = world.block<3, 1>(0, 2).stableNormalized();
    source.direction = -back;
    if (light.getLightType() == scene::Light::DIRECTIONAL) {
        source.position << back, 0.0;
    } else {
        source.position << world.block<3, 1>(0, 3), 1.0;
        source.attenuation = attenuationOf(light);
    }
    if (light.getLightType() == scene::Light::SPOT) addCone(light, source);
    lighting.sources.push_back(source);
}

}  // namespace vantorix::apps::render
