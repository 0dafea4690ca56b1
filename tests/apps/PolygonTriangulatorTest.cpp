#include <cmath>
#include <random>

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include "apps/render/PolygonTriangulator.h"

namespace vantorix::apps::render {
namespace {

using Eigen::Vector3f;
using Polygon = std::vector<Vector3f>;

Vector3f crossOf(const Vector3f& a, const Vector3f& b, const Vector3f& c) {
    return (b - a).cross(c - a);
}

/// A polygon around the origin that every ray from there meets once, turned anyhow.
Polygon starShape(std::mt19937& random) {
    std::uniform_real_distribution<float> radius(0.05f, 1.0f), turn(-3.0f, 3.0f);
    const Eigen::Quaternionf turned(Eigen::AngleAxisf(turn(random), Vector3f::UnitX()) *
                                    Eigen::AngleAxisf(turn(random), Vector3f::UnitY()));
    Polygon polygon(4 + random() % 60);
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(polygon.size());
        const float r = radius(random);
        polygon[i] = turned * Vector3f(r * std::cos(angle), r * std::sin(angle), 0.5f);
    }
    return polygon;
}

Vector3f areaOf(const Polygon& polygon) {
    Vector3f sum = Vector3f::Zero();
    for (std::size_t i = 2; i < polygon.size(); ++i) {
        sum += crossOf(polygon[0], polygon[i - 1], polygon[i]);
    }
    return sum;
}

/// No triangle is turned over, and together they cover what the polygon does.
void expectCovered(const Polygon& polygon) {
    PolygonTriangulator triangulator;
    const auto& triangles = triangulator.triangulate(polygon);
    ASSERT_EQ(triangles.size(), polygon.size() - 2);
    const Vector3f whole = areaOf(polygon);
    float sum = 0.0f;
    for (const auto& [a, b, c] : triangles) {
        const float area = crossOf(polygon[a], polygon[b], polygon[c]).dot(whole.normalized());
        ASSERT_GE(area, -1e-5f);
        sum += area;
    }
    EXPECT_NEAR(sum, whole.norm(), 1e-3f * whole.norm());
}

TEST(PolygonTriangulator, CoversSimplePolygonsOfAnyShape) {
    std::mt19937 random(5);
    for (int round = 0; round < 500; ++round) expectCovered(starShape(random));
}

TEST(PolygonTriangulator, CutsAComb) {
    Polygon comb;
    for (int tooth = 0; tooth < 100; ++tooth) {
        const float x = static_cast<float>(tooth);
        comb.insert(comb.end(), {Vector3f(x, 0, 0), Vector3f(x + 0.5f, 9, 0)});
    }
    comb.insert(comb.end(), {Vector3f(100, 0, 0), Vector3f(100, -1, 0), Vector3f(0, -1, 0)});
    expectCovered(comb);
}

TEST(PolygonTriangulator, ConvexPolygonsAreFans) {
    PolygonTriangulator triangulator;
    // The second corner lies on the line between its neighbours.
    const auto& fan =
        triangulator.triangulate({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}});
    using Triangle = PolygonTriangulator::Triangle;
    EXPECT_EQ(fan, std::vector<Triangle>({{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

TEST(PolygonTriangulator, EndsForEveryPolygon) {
    std::mt19937 random(6);
    std::uniform_int_distribution<int> coordinate(-2, 2);
    PolygonTriangulator triangulator;
    for (int round = 0; round < 3000; ++round) {
        Polygon polygon(random() % 12);
        for (auto& corner : polygon) {
            for (auto& value : corner) value = static_cast<float>(coordinate(random));
        }
        const auto& triangles = triangulator.triangulate(polygon);
        EXPECT_EQ(triangles.size(), polygon.size() < 3 ? 0 : polygon.size() - 2);
        for (const auto& triangle : triangles) {
            for (const auto corner : triangle) ASSERT_LT(corner, polygon.size());
        }
    }
    Polygon zigzag;  // Searching all of it for ears would take minutes.
    for (int i = 0; i < 200000; ++i) {
        zigzag.emplace_back(static_cast<float>(i % 2), static_cast<float>(i * 7919 % 200000), 0);
    }
    EXPECT_EQ(triangulator.triangulate(zigzag).size(), zigzag.size() - 2);
}

}  // namespace
}  // namespace vantorix::apps::render
