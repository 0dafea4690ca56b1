#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "apps/render/Framing.h"

namespace vantorix::apps::render {
namespace {

using Eigen::Vector3d;
using Eigen::Vector4d;

/// Where a point of the world lands: x and y from -1 to 1 inside the picture, z in depth.
Vector3d project(const Viewpoint& viewpoint, const Vector3d& point) {
    const Vector4d clip =
        viewpoint.projection * viewpoint.view * Vector4d(point.x(), point.y(), point.z(), 1.0);
    return clip.head<3>() / clip.w();
}

Vector3d corner(const Box& box, int i) {
    return {(i & 1 ? box.most : box.least).x(), (i & 2 ? box.most : box.least).y(),
            (i & 4 ? box.most : box.least).z()};
}

TEST(Framing, ShowsAllOfAnyBoxAndFillsThePicture) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-4.0, 4.0), place(-1.0, 1.0);
    for (int round = 0; round < 500; ++round) {
        const double size = std::pow(10.0, exponent(random));
        Box box;
        for (int axis = 0; axis < 3; ++axis) {
            box.least[axis] = place(random) * size * 10;
            box.most[axis] =
                box.least[axis] + (round % 5 == axis ? 0.0 : size * place(random) + size);
        }
        const double aspect = 0.3 + round % 7 * 0.4;
        const Viewpoint viewpoint = frame(box, round % 3, aspect);
        double outermost = 0.0;
        for (int i = 0; i < 8; ++i) {
            const Vector3d shown = project(viewpoint, corner(box, i));
            ASSERT_LT(shown.cwiseAbs().maxCoeff(), 1.0) << "round " << round;
            outermost = std::max({outermost, std::abs(shown.x()), std::abs(shown.y())});
        }
        EXPECT_GT(outermost, 0.85) << "round " << round;
    }
}

TEST(Framing, KeepsTheUpAxisUp) {
    const Box box{Vector3d(-1, -1, -1), Vector3d(1, 1, 1)};
    for (int axis = 0; axis < 3; ++axis) {
        const Viewpoint viewpoint = frame(box, axis, 1.0);
        EXPECT_GT(project(viewpoint, Vector3d::Unit(axis)).y(), 0.2);
        EXPECT_NEAR(project(viewpoint, Vector3d::Unit(axis)).x(), 0.0, 1e-9);
    }
}

TEST(Framing, APointIsInTheMiddle) {
    const Box box{Vector3d(5, 6, 7), Vector3d(5, 6, 7)};
    EXPECT_TRUE(project(frame(box, 1, 1.5), box.least).allFinite());
    EXPECT_NEAR(project(frame(box, 1, 1.5), box.least).head<2>().norm(), 0.0, 1e-9);
}

TEST(Framing, BoxesThatAreNoneAreReplacedByWhatIsDrawn) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE((Box{Vector3d(1, 0, 0), Vector3d(0, 1, 1)}).isUsable());
    EXPECT_FALSE((Box{Vector3d(-infinity, 0, 0), Vector3d(0, 1, 1)}).isUsable());
    EXPECT_FALSE((Box{Vector3d::Constant(-1.7e308), Vector3d::Constant(1.7e308)}).isUsable());

    Corners corners(3, Corner{});
    corners[0].position[0] = 2.0f;
    corners[1].position[1] = std::numeric_limits<float>::quiet_NaN();
    DrawList list;
    list.items.push_back(
        {std::make_shared<Corners>(corners), Eigen::Matrix4d::Identity() * 3, {}, false});
    const Box box = boundsOf(list);
    EXPECT_EQ(box.most, Vector3d(6, 0, 0));
    EXPECT_EQ(box.least, Vector3d(0, 0, 0));
}

TEST(Lens, SeesWhatStandsBeforeTheCamera) {
    Eigen::Matrix4d world = Eigen::Matrix4d::Identity();
    world.col(3) << 10, 0, 5, 1;
    Lens lens;
    lens.yFov = 90.0;
    EXPECT_NEAR(project(throughLens(lens, world, 2.0), {10, 3, 2}).y(), 1.0, 1e-6);
    EXPECT_NEAR(project(throughLens(lens, world, 2.0), {16, 0, 2}).x(), 1.0, 1e-6);
    lens.orthographic = true;
    lens.yFov = 4.0;
    EXPECT_NEAR(project(throughLens(lens, world, 2.0), {18, 0, -20}).x(), 1.0, 1e-6);
}

TEST(Lens, LengthsAreThoseOfTheNode) {
    Eigen::Matrix4d world = Eigen::Matrix4d::Identity();
    world.topLeftCorner<3, 3>() *= 0.01;
    Lens lens;
    lens.zNear = 10.0;
    lens.zFar = 1000.0;
    EXPECT_NEAR(project(throughLens(lens, world, 1.0), {0, 0, -0.1}).z(), -1.0, 1e-6);
    EXPECT_NEAR(project(throughLens(lens, world, 1.0), {0, 0, -10.0}).z(), 1.0, 1e-6);
}

TEST(Lens, SenselessValuesStillMakeAProjection) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double values[] = {nan, -1.0, 0.0, 1e300, 179.9, 1.0};
    const Eigen::Matrix4d worlds[] = {Eigen::Matrix4d::Zero(), Eigen::Matrix4d::Constant(nan),
                                      Eigen::Matrix4d::Constant(1e200), Eigen::Matrix4d::Ones()};
    for (const double a : values) {
        for (const double b : values) {
            for (const auto& world : worlds) {
                for (const bool orthographic : {false, true}) {
                    const auto view = throughLens({orthographic, a, b, a}, world, 1.3);
                    EXPECT_TRUE(view.view.allFinite());
                    EXPECT_TRUE(view.projection.allFinite()) << a << " " << b;
                }
            }
        }
    }
}

}  // namespace
}  // namespace vantorix::apps::render
