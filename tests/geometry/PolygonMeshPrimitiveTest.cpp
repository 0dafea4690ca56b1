#include <numeric>

#include "scene/geometry/Polygon.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

struct PolygonMeshPrimitiveTest : QuietTest {
    boost::shared_ptr<Mesh> mesh = makeMesh({0, 0, 0});
    const std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0),
                                                 StreamMapping(TANGENT, {}, 1)};

    static boost::shared_ptr<Polygon> makePolygon(int corners) {
        const auto polygon = boost::make_shared<Polygon>();
        for (int i = 0; i < corners; ++i) {
            polygon->addVertex(makeVertex({static_cast<float>(i), 0, 0}, {0, 0, 1}));
        }
        return polygon;
    }
};

TEST_F(PolygonMeshPrimitiveTest, AddedPolygonsCountTheirCorners) {
    PolygonMeshPrimitive primitive(boost::make_shared<Mesh>("m", ""), {});
    EXPECT_EQ(primitive.getType(), IMeshPrimitive::POLYGONS);
    EXPECT_FALSE(primitive.addPolygon({}, true));
    EXPECT_TRUE(primitive.addPolygon(makePolygon(5), true));
    EXPECT_TRUE(primitive.addPolygon(makePolygon(4), true));
    EXPECT_EQ(primitive.getPolygonStream(), (Indices{5, 0, 4, 10}));
    EXPECT_EQ(primitive.getIndexStream().size(), 18u);
    EXPECT_EQ(primitive.getTotalVertexCount(), 9);
    EXPECT_EQ(primitive.getCount(), 2u);
}

TEST_F(PolygonMeshPrimitiveTest, GivenPolygonsCountTheirTriangles) {
    PolygonMeshPrimitive primitive(mesh, mappings, Indices(14, 0), {4, 0, 3, 8});
    EXPECT_EQ(primitive.getTotalVertexCount(), 9);
    const auto clone = boost::dynamic_pointer_cast<PolygonMeshPrimitive>(primitive.clone(mesh));
    EXPECT_EQ(clone->getPolygonStream(), primitive.getPolygonStream());
    EXPECT_EQ(clone->getTotalVertexCount(), 9);
}

TEST_F(PolygonMeshPrimitiveTest, ReadPolygonsHaveEmptyVertices) {
    PolygonMeshPrimitive primitive(mesh, mappings, Indices(14, 0), {4, 0, 3, 8});
    const auto output = outputOf([&] {
        const auto polygon = primitive.getPolygonAt(0);
        ASSERT_EQ(polygon->getVertexCount(), 4u);
        EXPECT_EQ(polygon->getVertexAt(3)->getElementCount(), 0u);
    });
    EXPECT_EQ(output,
              "TANGENT not handled\nTANGENT not handled\nTANGENT not handled\n"
              "TANGENT not handled\n");
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(primitive.getPrimitives().size(), 2u); }).size(), 7u * 20u);
}

std::vector<unsigned int> cornerCounts(PolygonMeshPrimitive& primitive) {
    std::vector<unsigned int> counts;
    for (const auto& face : primitive.getPrimitives()) {
        counts.push_back(boost::dynamic_pointer_cast<Polygon>(face)->getVertexCount());
    }
    return counts;
}

TEST_F(PolygonMeshPrimitiveTest, WrongCornerCountsDoNotExhaustTheMemory) {
    constexpr std::size_t polygons = 3000;
    Indices stream;
    for (std::size_t i = 0; i < polygons; ++i) stream.insert(stream.end(), {4294967295u, 0});
    PolygonMeshPrimitive primitive(mesh, {}, {}, stream);
    const auto counts = cornerCounts(primitive);
    EXPECT_EQ(counts.size(), polygons);
    EXPECT_LT(std::accumulate(counts.begin(), counts.end(), 0u), 10 * polygons);
}

TEST_F(PolygonMeshPrimitiveTest, OrdinaryCornerCountsAreReadWithAndWithoutIndices) {
    PolygonMeshPrimitive pair(mesh, {}, {}, {4, 0, 3, 8});
    EXPECT_EQ(cornerCounts(pair), Indices({4, 3}));
    Indices stream, expected;
    for (unsigned int i = 0; i < 5000; ++i) {
        expected.push_back(i % 7);
        stream.insert(stream.end(), {i % 7, 0});
    }
    PolygonMeshPrimitive small(mesh, {}, {}, stream);
    EXPECT_EQ(cornerCounts(small), expected);
    PolygonMeshPrimitive large(mesh, {}, Indices(9000, 0), {4000, 0, 5000, 4000});
    EXPECT_EQ(cornerCounts(large), Indices({4000, 5000}));
}

TEST_F(PolygonMeshPrimitiveTest, EveryUnhandledInputIsNamedOncePerVertex) {
    std::vector<StreamMapping> all;
    for (int semantic = 0; semantic < 15; ++semantic) {
        all.emplace_back(static_cast<StreamSemantic>(semantic), boost::shared_ptr<Stream>(), 0);
    }
    PolygonMeshPrimitive primitive(mesh, all, {0}, {1, 0});
    EXPECT_EQ(outputOf([&] { primitive.getPrimitiveAt(0); }),
              "TEXCOORD1 not handled\nTEXCOORD2 not handled\nTEXCOORD3 not handled\n"
              "TEXCOORD4 not handled\nTEXCOORD5 not handled\nTEXCOORD6 not handled\n"
              "TEXCOORD7 not handled\nBINORMAL not handled\nTANGENT not handled\n");
}

TEST_F(PolygonMeshPrimitiveTest, TheBoundOfRequestsIsLoose) {
    PolygonMeshPrimitive primitive(mesh, {}, {}, {3, 0});
    EXPECT_EQ(primitive.getPolygonAt(0)->getVertexCount(), 3u);
    EXPECT_EQ(primitive.getPolygonAt(1)->getVertexCount(), 0u);
    EXPECT_TRUE(primitive.getPolygonAt(4));
    EXPECT_FALSE(primitive.getPolygonAt(5));
}

TEST_F(PolygonMeshPrimitiveTest, UnfinishedOperationsOnlyWriteTheirLines) {
    PolygonMeshPrimitive primitive(mesh, mappings, Indices(6, 0), {3, 0});
    EXPECT_EQ(outputOf([&] { primitive.print(); }), "Implement me PolygonMeshPrimitive::print()\n");
    EXPECT_EQ(outputOf([&] { primitive.recalculateVertexNormals(); }),
              "PolygonMeshPrimitive::recalculateVertexNormals(): Implement me!\n");
    EXPECT_EQ(outputOf([&] { primitive.subDivide({}); }),
              "PolygonMeshPrimitive::subDivide(): Implement me!\n");
    EXPECT_EQ(primitive.getIndexStream(), Indices(6, 0));
    EXPECT_EQ(mesh->getStreams().size(), 1u);
}

}  // namespace
}  // namespace vantorix::scene
