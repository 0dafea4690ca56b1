#include "apps/render/DefaultLighting.h"

#include <algorithm>

namespace vantorix::apps::render {
namespace {

constexpr float mostArriving = 1.5f;
constexpr float leastAmbience = 0.03f;

/// @p towards is given as the viewer sees it: x to the right, y up, z to the viewer.
LightSource distantLight(const Viewpoint& viewpoint, const Eigen::Vector3d& towards, float power) {
    LightSource light;
    light.colour.setConstant(power);
    const Eigen::Matrix3d turn = viewpoint.view.topLeftCorner<3, 3>();
    light.position << turn.transpose() * towards.normalized(), 0.0;
    return light;
}

float arriving(const LightSource& light, const Eigen::Vector3d& point) {
    if (light.position.w() == 0.0) return light.colour.maxCoeff();
    const auto range = static_cast<float>((light.position.head<3>() - point).norm());
    const float fade = light.attenuation.dot(Eigen::Vector3f(1.0f, range, range * range));
    return light.colour.maxCoeff() / std::max(fade, 1e-6f);
}

}  // namespace

void helpByDefaultLight(const Viewpoint& viewpoint, Lighting& lighting) {
    lighting.ambient.array() += 0.14f;
    // In front: a shader takes only so many lights.
    lighting.sources.insert(lighting.sources.begin(),
                            {distantLight(viewpoint, {-0.5, 0.8, 0.7}, 0.85f),
                             distantLight(viewpoint, {0.3, -0.1, 1.0}, 0.4f)});
}

void balanceExposure(const Eigen::Vector3d& point, Lighting& lighting) {
    float sum = lighting.ambient.maxCoeff();
    for (const auto& light : lighting.sources) sum += arriving(light, point);
    if (sum > mostArriving) {
        const float factor = mostArriving / sum;
        lighting.ambient *= factor;
        for (auto& light : lighting.sources) light.colour *= factor;
    }
    lighting.ambient = lighting.ambient.cwiseMax(leastAmbience);
}

}  // namespace vantorix::apps::render
