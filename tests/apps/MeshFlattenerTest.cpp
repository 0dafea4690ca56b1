#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "apps/render/MeshFlattener.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "tests/apps/SceneMaking.h"

namespace vantorix::apps::render {
namespace {

using scene::StreamMapping;
using Indices = std::vector<unsigned int>;

const std::vector<float> square = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 2, 2};

FlatPrimitive flattenTriangles(const boost::shared_ptr<scene::Mesh>& mesh,
                               const std::vector<StreamMapping>& mappings, const Indices& indices) {
    scene::TriangleMeshPrimitive primitive(mesh, mappings, indices);
    return flatten(*mesh, primitive, scene::TEXCOORD0);
}

TEST(MeshFlattener, ReadsEachValueThroughItsSlot) {
    const auto mesh = makeMesh(square);
    const auto flat =
        flattenTriangles(mesh,
                         {vertexMapping(),
                          {scene::NORMAL, makeStream("normals", 3, {0, 3, 4, 0, 0, 0}), 1},
                          {scene::TEXCOORD0, makeStream("uv", 2, {.25f, .5f}), 2},
                          {scene::COLOR, makeStream("colors", 3, {0.5f, 2, -1}), 2}},
                         {0, 0, 0, 1, 1, 0, 2, 1, 0});
    ASSERT_EQ(flat.corners.size(), 3u);
    EXPECT_TRUE(flat.hasTexCoords);
    const Corner& first = flat.corners[0];
    EXPECT_FLOAT_EQ(first.normal[1], 0.6f);
    EXPECT_FLOAT_EQ(first.normal[2], 0.8f);
    EXPECT_FLOAT_EQ(first.texCoord[1], 0.5f);
    EXPECT_EQ(first.colour[0], 128);
    EXPECT_EQ(first.colour[1], 255);
    EXPECT_EQ(first.colour[2], 0);
    EXPECT_EQ(first.colour[3], 255);
    EXPECT_EQ(flat.corners[1].position[0], 1.0f);
    EXPECT_EQ(flat.corners[1].normal[2], 1.0f) << "a zero normal becomes that of the face";
}

TEST(MeshFlattener, PolygonsBecomeFans) {
    const auto mesh = makeMesh(square);
    const Indices indices = {4, 0, 1, 2, 3};
    scene::PolygonMeshPrimitive primitive(mesh, {vertexMapping()}, indices,
                                          {4, 1, 2, 0, 3, 0, 9, 3, 4, 99});
    const auto corners = flatten(*mesh, primitive, scene::TEXCOORD0).corners;
    // The square, nothing for two corners, one triangle, nothing for what is cut off.
    ASSERT_EQ(corners.size(), 9u);
    EXPECT_EQ(corners[3].position[0], 0.0f);
    EXPECT_EQ(corners[4].position[1], 1.0f);
    EXPECT_EQ(corners[5].position[1], 1.0f);
    EXPECT_EQ(corners[6].position[2], 2.0f);
}

TEST(MeshFlattener, ConcavePolygonsAreNotFans) {
    const auto mesh = makeMesh({0, 0, 0, 2, 0, 0, 2, 2, 0, 1, 0.5f, 0, 0, 2, 0});
    const Indices indices = {0, 1, 2, 3, 4};
    scene::PolygonMeshPrimitive primitive(mesh, {vertexMapping()}, indices, {5, 0});
    const auto corners = flatten(*mesh, primitive, scene::TEXCOORD0).corners;
    ASSERT_EQ(corners.size(), 9u);
    for (const auto& corner : corners) EXPECT_EQ(corner.normal[2], 1.0f);
}

TEST(MeshFlattener, LeavesOutFacesWhosePositionsAreMissing) {
    auto positions = square;
    positions[10] = std::numeric_limits<float>::infinity();
    const auto mesh = makeMesh(positions);
    EXPECT_EQ(
        flattenTriangles(mesh, {vertexMapping()}, {0, 1, 2, 0, 1, 3, 0, 1, 5, 0, 1}).corners.size(),
        3u);
    EXPECT_TRUE(flattenTriangles(mesh, {}, {0, 1, 2}).corners.empty());
}

TEST(MeshFlattener, ColorsThatWereNeverSetAreWhite) {
    const auto mesh = makeMesh(square);
    const auto colors = makeStream("colors", 4, {0, 0, 0, 0});
    const auto corners =
        flattenTriangles(mesh, {vertexMapping(), {scene::COLOR, colors, 1}}, {0, 0, 1, 0, 2, 0})
            .corners;
    ASSERT_EQ(corners.size(), 3u);
    EXPECT_EQ(corners[0].colour[0], 255);
    EXPECT_EQ(corners[0].colour[3], 255);
}

TEST(MeshFlattener, SurvivesAnyIndicesAndMappings) {
    std::mt19937 random(11);
    const auto any = [&random] { return static_cast<unsigned int>(random()); };
    const auto pick = [&any](unsigned int count) { return any() % count; };
    for (int round = 0; round < 3000; ++round) {
        const auto mesh = makeMesh(square);
        std::vector<StreamMapping> mappings;
        for (unsigned int i = pick(5); i > 0; --i) {
            const auto stream = boost::make_shared<scene::Stream>("s", 0, true);
            stream->stride = static_cast<int>(pick(6)) - 1;
            stream->values.assign(pick(20), 1.0f);
            mappings.push_back({static_cast<scene::StreamSemantic>(pick(16)),
                                pick(6) ? stream : nullptr, static_cast<int>(pick(7)) - 2});
        }
        Indices indices(pick(40));
        for (auto& index : indices) index = pick(8) ? pick(6) : any();
        scene::TriangleMeshPrimitive triangles(mesh, mappings, indices);
        for (const auto& corner : flatten(*mesh, triangles, scene::TEXCOORD0).corners) {
            ASSERT_TRUE(std::isfinite(corner.position[0]) && std::isfinite(corner.normal[0]));
        }
        Indices polygons(pick(10));
        for (auto& value : polygons) value = pick(4) ? pick(9) : any();
        scene::PolygonMeshPrimitive fans(mesh, mappings, indices, polygons);
        EXPECT_EQ(flatten(*mesh, fans, scene::TEXCOORD1).corners.size() % 3, 0u);
    }
}

}  // namespace
}  // namespace vantorix::apps::render
