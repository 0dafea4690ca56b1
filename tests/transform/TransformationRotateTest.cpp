#include <cmath>
#include <random>

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include "core_api/utils/Matrix.h"
#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationRotate.h"

namespace vantorix::scene {
namespace {

using core::utils::Matrix;
using Vector3 = core::utils::Vector<float, 3>;

constexpr float radiansPerDegree = 0.017453292f;

Eigen::Vector3f axisOf(const TransformationRotate& element) {
    const auto& axis = element.getRotationAxis();
    return {axis[0], axis[1], axis[2]};
}

Vector3 toVector(const Eigen::Vector3f& v) { return Vector3(v.x(), v.y(), v.z()); }

Eigen::Matrix3f rotation(const Eigen::Vector3f& axis, float degrees) {
    return Eigen::AngleAxisf(degrees * radiansPerDegree, axis).toRotationMatrix();
}

Matrix toMatrix(const Eigen::Matrix3f& linear) {
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix.topLeftCorner<3, 3>() = linear;
    return Matrix(matrix.data());
}

/// Random axes of length 1 and angles of less than half a turn either way.
struct RandomTurns : ::testing::Test {
    std::mt19937 random{20240611u};

    float number(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    }
    Eigen::Vector3f axis() {
        const Eigen::Vector3f v(number(-1, 1), number(-1, 1), number(0.1f, 1));
        return v.normalized();
    }
};

TEST_F(RandomTurns, RotateByComposesWithTheTurnAboutTheNegatedAxis) {
    for (int i = 0; i < 200; ++i) {
        const Eigen::Vector3f stored = axis(), given = axis();
        const float storedAngle = number(-179, 179), angle = number(-179, 179);
        TransformationRotate element(toVector(stored), storedAngle);
        element.rotateBy(toVector(given), angle);

        const Eigen::Matrix3f expected = rotation(stored, storedAngle) * rotation(-given, angle);
        const Eigen::Matrix3f actual = rotation(axisOf(element), element.getAngle());
        ASSERT_TRUE(actual.isApprox(expected, 1e-4f)) << expected << "\n\n" << actual;
    }
}

TEST_F(RandomTurns, SetFromMatrixFindsAxisAndAngleInRadians) {
    for (int i = 0; i < 200; ++i) {
        const Eigen::Vector3f about = axis();
        const float radians = number(0.1f, 3.0f);
        const Eigen::Matrix3f turn = Eigen::AngleAxisf(radians, about).toRotationMatrix();
        TransformationRotate element;
        element.setFromMatrix(toMatrix(turn));
        ASSERT_NEAR(element.getAngle(), radians, 1e-3f);
        ASSERT_TRUE(axisOf(element).isApprox(about, 1e-3f)) << axisOf(element);
    }
}

TEST(TransformationRotate, TurningAboutTheOwnAxisSubtracts) {
    TransformationRotate element(Vector3(0.0f, 0.0f, 1.0f), 50.0f);
    element.rotateBy(element.getRotationAxis(), 20.0f);
    EXPECT_NEAR(element.getAngle(), 30.0f, 1e-3f);
    EXPECT_TRUE(axisOf(element).isApprox(Eigen::Vector3f::UnitZ(), 1e-5f));
    element.rotateBy(element.getRotationAxis(), element.getAngle());
    EXPECT_NEAR(element.getAngle(), 0.0f, 1e-3f);
}

TEST(TransformationRotate, AnAxisWithoutComponentsTurnsNothing) {
    TransformationRotate element;
    element.rotateBy(Vector3(0.0f, 1.0f, 0.0f), 30.0f);
    EXPECT_TRUE(rotation(axisOf(element), element.getAngle())
                    .isApprox(rotation(-Eigen::Vector3f::UnitY(), 30.0f), 1e-4f));
    element.rotateBy(Vector3(), 70.0f);
    EXPECT_TRUE(rotation(axisOf(element), element.getAngle())
                    .isApprox(rotation(-Eigen::Vector3f::UnitY(), 30.0f), 1e-4f));
}

TEST(TransformationRotate, AMatrixThatDoesNotTurnGivesTheXAxisAndNoAngle) {
    // Rounding or scaling pushes the cosine above 1.
    for (const float diagonal : {1.0f, 1.0001f, 2.0f}) {
        TransformationRotate element(Vector3(0.0f, 1.0f, 0.0f), 30.0f);
        element.setFromMatrix(toMatrix(Eigen::Matrix3f::Identity() * diagonal));
        EXPECT_EQ(element.getAngle(), 0.0f);
        EXPECT_EQ(element.getRotationAxis(), Vector3(1.0f, 0.0f, 0.0f));
    }
}

TEST(TransformationRotate, AQuarterTurnIsStoredInRadians) {
    Eigen::Matrix3f quarter;
    quarter << 0, -1, 0, 1, 0, 0, 0, 0, 1;
    TransformationRotate element;
    element.setFromMatrix(toMatrix(quarter));
    EXPECT_EQ(element.getAngle(), 1.5707964f);
    EXPECT_EQ(element.getRotationAxis(), Vector3(0.0f, 0.0f, 1.0f));
}

}  // namespace
}  // namespace vantorix::scene
