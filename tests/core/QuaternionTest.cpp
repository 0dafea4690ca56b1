#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "core_api/utils/Quaternion.h"

namespace {

using vantorix::core::utils::Quaternion;
using vantorix::core::utils::Vector;
using Axis = Vector<float, 3>;
using AxisAngle = Vector<float, 4>;

void expectNear(const AxisAngle& actual, const AxisAngle& expected) {
    ASSERT_EQ(actual.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(actual[i], expected[i], i < 3 ? 1e-6 : 1e-4) << "component " << i;
    }
}

TEST(QuaternionTest, ReadsBackTheUnitAxisAndTheDegrees) {
    for (const float angle : {1e-3f, 1.0f, 90.0f, 180.0f, 270.0f, 359.0f}) {
        expectNear(Quaternion(Axis(0, 3, 4), angle).toAxisAngle(),
                   AxisAngle(0.0f, 0.6f, 0.8f, angle));
    }
    expectNear(Quaternion(Axis(0, 0, 1), -30).toAxisAngle(), AxisAngle(0, 0, -1, 30));
}

TEST(QuaternionTest, AnglesAboutOneAxisAddUp) {
    const Axis axis(0, 0, 1);
    expectNear((Quaternion(axis, 30) * Quaternion(axis, 45)).toAxisAngle(), AxisAngle(0, 0, 1, 75));
    expectNear((Quaternion(axis, 170) * Quaternion(axis, 170)).toAxisAngle(),
               AxisAngle(0, 0, 1, 340));
}

TEST(QuaternionTest, TheRightOperandTurnsFirst) {
    const Quaternion aboutX(Axis(1, 0, 0), 90), aboutZ(Axis(0, 0, 1), 90);
    const auto third = static_cast<float>(1 / std::sqrt(3.0));
    // y goes to z with the first factor, x to y with the second.
    expectNear((aboutX * aboutZ).toAxisAngle(), AxisAngle(third, -third, third, 120));
    expectNear((aboutZ * aboutX).toAxisAngle(), AxisAngle(third, third, third, 120));
}

TEST(QuaternionTest, CancellingRotationsGiveAngleZero) {
    for (float angle = -400; angle < 400; angle += 7.3f) {
        const Axis axis(0.3f, -0.2f, 0.9f);
        const auto none = (Quaternion(axis, angle) * Quaternion(axis, -angle)).toAxisAngle();
        EXPECT_EQ(none, AxisAngle(1, 0, 0, 0)) << angle;
    }
}

TEST(QuaternionTest, InputWithoutADirectionTurnsNothing) {
    const float infinite = std::numeric_limits<float>::infinity();
    const AxisAngle none(1, 0, 0, 0);
    EXPECT_EQ(Quaternion(Axis(), 90).toAxisAngle(), none);
    EXPECT_EQ(Quaternion(Axis(0, 0, 0), 90).toAxisAngle(), none);
    EXPECT_EQ(Quaternion(Axis(infinite, 0, 0), 90).toAxisAngle(), none);
    EXPECT_EQ(Quaternion(Axis(1, 0, 0), std::nanf("")).toAxisAngle(), none);
    EXPECT_EQ(Quaternion(Axis(1, 0, 0), 360).toAxisAngle(), none);
}

TEST(QuaternionTest, HugeAndTinyAxesKeepTheirDirection) {
    const float huge = std::numeric_limits<float>::max();
    const float tiny = std::numeric_limits<float>::denorm_min();
    expectNear(Quaternion(Axis(huge, 0, 0), 90).toAxisAngle(), AxisAngle(1, 0, 0, 90));
    expectNear(Quaternion(Axis(0, tiny, 0), 90).toAxisAngle(), AxisAngle(0, 1, 0, 90));
}

}  // namespace
