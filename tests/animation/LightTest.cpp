#include <gtest/gtest.h>

#include "scene/animation/Light.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using test::Names;

TEST(Light, UpdatesAreSentForTheParametersButNotForTheType) {
    const test::RecordedScene scene;
    Light light{scene.manager, Light::SPOT, "lamp", "name"};
    scene.forgetEvents();
    light.setColor(0.1f, 0.2f, 0.3f);
    light.setAttenuation(1.0f, 2.0f, 3.0f);
    light.setFallOff(45.0f, 2.0f);
    light.setLightType(Light::POINT);
    EXPECT_EQ(scene.eventLines(), Names(3, "LightUpdated|lamp"));
    EXPECT_EQ(light.getColor(), Eigen::Vector3f(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(light.getConstantAttenuation(), 1.0f);
    EXPECT_EQ(light.getLinearAttenuation(), 2.0f);
    EXPECT_EQ(light.getQuadraticAttenuation(), 3.0f);
    EXPECT_EQ(light.getFallOffAngle(), 45.0f);
    EXPECT_EQ(light.getFallOffExponent(), 2.0f);
}

TEST(Light, StartsWhiteWithoutAttenuationAndFallOff) {
    const Light light(nullptr, static_cast<Light::LightType>(17), "lamp", "name");
    EXPECT_EQ(light.getLightType(), 17);
    EXPECT_EQ(light.getColor(), Eigen::Vector3f::Ones());
    EXPECT_EQ(light.getConstantAttenuation(), 1.0f);
    EXPECT_EQ(light.getLinearAttenuation(), 0.0f);
    EXPECT_EQ(light.getQuadraticAttenuation(), 0.0f);
    EXPECT_EQ(light.getFallOffAngle(), 180.0f);
    EXPECT_EQ(light.getFallOffExponent(), 0.0f);
}

}  // namespace
}  // namespace vantorix::scene
