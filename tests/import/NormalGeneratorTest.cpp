#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "apps/import/NormalGenerator.h"
#include "scene/geometry/Stream.h"

using namespace vantorix::apps::import;
using vantorix::scene::Stream;

namespace {

struct Surface {
    void addFace(std::initializer_list<unsigned int> face) {
        corners.insert(corners.end(), face);
        sizes.push_back(static_cast<unsigned int>(face.size()));
    }
    void addQuad(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
        if (asPolygons) {
            addFace({a, b, c, d});
        } else {
            addFace({a, b, c});
            addFace({a, c, d});
        }
    }
    Eigen::Vector3f position(std::size_t number) const {
        return Eigen::Map<const Eigen::Vector3f>(&positions[number * 3]);
    }
    /// The normal of each corner.
    std::vector<Eigen::Vector3f> normals() {
        std::vector<Eigen::Vector3f> result;
        for (const auto tuple : NormalGenerator(positions, corners, sizes).storeIn(stream)) {
            result.push_back(
                Eigen::Map<const Eigen::Vector3f>(&std::as_const(stream).values[tuple * 3]));
        }
        return result;
    }

    std::vector<float> positions;
    bool asPolygons = false;
    std::vector<unsigned int> corners;
    std::vector<unsigned int> sizes;
    Stream stream{"normals", 3, false};
};

/// A grid of @p rings by @p rings over a ball.
Surface ball(unsigned int rings, bool asPolygons) {
    Surface surface;
    surface.asPolygons = asPolygons;
    for (unsigned int i = 0; i <= rings; ++i) {
        for (unsigned int j = 0; j < rings; ++j) {
            const float polar =
                3.1415927f * (static_cast<float>(i) + 0.5f) / (static_cast<float>(rings) + 1.0f);
            const float around = 6.2831853f * static_cast<float>(j) / static_cast<float>(rings);
            surface.positions.insert(surface.positions.end(),
                                     {std::sin(polar) * std::cos(around),
                                      std::sin(polar) * std::sin(around), std::cos(polar)});
            if (i == rings) continue;
            const unsigned int k = (j + 1) % rings;
            surface.addQuad(i * rings + j, (i + 1) * rings + j, (i + 1) * rings + k, i * rings + k);
        }
    }
    return surface;
}

}  // namespace

struct NormalGeneratorOf : ::testing::TestWithParam<bool> {};

TEST_P(NormalGeneratorOf, ABoxKeepsItsEdges) {
    Surface box;
    box.asPolygons = GetParam();
    for (int i = 0; i < 8; ++i) {
        box.positions.insert(box.positions.end(),
                             {i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : -1.0f});
    }
    box.addQuad(0, 2, 3, 1);
    box.addQuad(4, 5, 7, 6);
    box.addQuad(0, 1, 5, 4);
    box.addQuad(2, 6, 7, 3);
    box.addQuad(0, 4, 6, 2);
    box.addQuad(1, 3, 7, 5);
    const auto normals = box.normals();
    EXPECT_EQ(box.stream.count, 6);
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        EXPECT_EQ(normals[corner].squaredNorm(), 1.0f);
        EXPECT_EQ(normals[corner].dot(box.position(box.corners[corner])), 1.0f) << corner;
    }
}

TEST_P(NormalGeneratorOf, ABallIsSmooth) {
    auto surface = ball(24, GetParam());
    const auto normals = surface.normals();
    EXPECT_EQ(surface.stream.count, 24 * 25);
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        EXPECT_GT(normals[corner].dot(surface.position(surface.corners[corner])), 0.97f);
    }
}

INSTANTIATE_TEST_SUITE_P(Faces, NormalGeneratorOf, ::testing::Values(false, true),
                         [](const auto& test) { return test.param ? "Polygons" : "Triangles"; });

TEST(NormalGenerator, AConcavePolygonFacesWhereMostOfItDoes) {
    Surface arrow;  // Its second corner is the reflex one.
    arrow.positions = {-2, -2, 0, 0, 1, 0, 2, -2, 0, 0, 4, 0};
    arrow.addFace({1, 0, 3, 2});
    for (const auto& normal : arrow.normals()) EXPECT_EQ(normal.z(), -1.0f);
}

TEST(NormalGenerator, EveryCornerGetsAUnitNormalWhateverTheFaces) {
    constexpr float huge = std::numeric_limits<float>::max();
    Surface odd;
    odd.positions = {0, 0, 0,    1,    0,      0, huge, 0, 0, 0, -huge,
                     0, 0, huge, huge, 1e-30f, 0, 0,    0, 1, 0};
    for (unsigned int i = 0; i < 7; ++i) {
        for (unsigned int j = 0; j < 7; ++j) odd.addFace({i, j, (i * j) % 7});
        odd.addFace({i, 1, 2, 3, 4, 5, 6});
    }
    for (const auto& normal : odd.normals()) EXPECT_NEAR(normal.norm(), 1.0f, 1e-3f);
}

TEST(NormalGenerator, AFanOfManyFacesCostsNoSquare) {
    Surface fan;
    constexpr unsigned int faces = 300000;
    fan.positions = {0, 0, 1};
    for (unsigned int i = 0; i < faces; ++i) {
        const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(faces);
        fan.positions.insert(fan.positions.end(), {std::cos(angle), std::sin(angle), 0});
        fan.addFace({0, i + 1, (i + 1) % faces + 1});
    }
    EXPECT_NEAR(fan.normals()[0].z(), 1.0f, 1e-3f);  // Would take hours otherwise.
}
