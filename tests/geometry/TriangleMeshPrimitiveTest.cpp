#include "core_api/logger/Logger.h"

#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/VertexElement.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

const char* const noSlotText = " [ERROR] Invalid stream mapping index for this vertex semantic.";

struct TriangleMeshPrimitiveTest : QuietTest {
    boost::shared_ptr<Mesh> mesh = boost::make_shared<Mesh>("m", "");
    TriangleMeshPrimitive primitive{mesh, {}};

    /// A triangle whose corners all have these elements.
    static boost::shared_ptr<Triangle> ofElements(
        const std::vector<boost::shared_ptr<VertexElement>>& elements) {
        const auto vertex = boost::make_shared<Vertex>();
        for (const auto& element : elements) vertex->addElement(element, true);
        return boost::make_shared<Triangle>(vertex, vertex, vertex);
    }
    static boost::shared_ptr<VertexElement> element(StreamSemantic semantic, const Floats& values) {
        return VertexElement::create(semantic, static_cast<int>(values.size()), values.data());
    }
};

TEST_F(TriangleMeshPrimitiveTest, AFailureLeavesEarlierCornersBehind) {
    core::logger::Logger::active = true;
    // Without positions there is no VERTEX slot for a stream that keeps duplicates.
    const auto bare = boost::make_shared<Vertex>();
    const auto triangle = boost::make_shared<Triangle>(
        bare, ofElements({element(NORMAL, {0, 0, 1})})->getVertexAt(0), bare);
    const auto log = logOf([&] { EXPECT_FALSE(primitive.addTriangle(triangle, false)); });
    EXPECT_THAT(log, ::testing::HasSubstr("no VERTEX stream mapping."));
    EXPECT_THAT(log, ::testing::HasSubstr(noSlotText));
    EXPECT_EQ(primitive.getIndexStream(), (Indices{0}));
    EXPECT_EQ(mesh->getStream("NORMAL_stream")->count, 1);
}

TEST_F(TriangleMeshPrimitiveTest, ASlotOutsideTheRecordIsNoSlot) {
    const auto normals = makeStream("n", 3, {});
    TriangleMeshPrimitive gap(mesh,
                              {StreamMapping(VERTEX, {}, 0), StreamMapping(NORMAL, normals, 2)});
    EXPECT_FALSE(gap.addTriangle(ofElements({element(NORMAL, {0, 0, 1})}), true));
    EXPECT_TRUE(gap.getIndexStream().empty());
}

TEST_F(TriangleMeshPrimitiveTest, APositionWithAFourthComponentRaisesAnError) {
    const auto triangle = ofElements({element(POSITION, {1, 2, 3, 4})});
    EXPECT_THROW(primitive.addTriangle(triangle, true), std::out_of_range);
    EXPECT_TRUE(primitive.getIndexStream().empty());
}

TEST_F(TriangleMeshPrimitiveTest, ElementsWithoutFloatsAndMissingVerticesAreRefused) {
    const auto record = boost::make_shared<VertexElement>();
    record->semantic = NORMAL;
    record->size = 3;
    EXPECT_FALSE(primitive.addTriangle(ofElements({record}), true));
    record->semantic = POSITION;
    EXPECT_FALSE(primitive.addTriangle(ofElements({record}), true));
    record->size = 0;
    EXPECT_FALSE(primitive.addTriangle(ofElements({record}), true));
    EXPECT_FALSE(primitive.addTriangle(
        boost::make_shared<Triangle>(makeVertex({0, 0, 0}), nullptr, nullptr), true));
    EXPECT_TRUE(primitive.getIndexStream().empty());
}

TEST_F(TriangleMeshPrimitiveTest, CountsWholeTrianglesOnly) {
    mesh = makeMesh({0, 0, 0});
    TriangleMeshPrimitive seven(mesh, {StreamMapping(VERTEX, {}, 0)}, Indices(7, 0));
    EXPECT_EQ(seven.getCount(), 2u);
    EXPECT_EQ(seven.getPrimitives().size(), 2u);
    EXPECT_TRUE(seven.getTriangleAt(2)) << "starts inside the index stream";
    EXPECT_FALSE(seven.getTriangleAt(3));
    EXPECT_FALSE(seven.getPrimitiveAt(4294967295u));
    EXPECT_EQ(TriangleMeshPrimitive(mesh, {}, {1, 2, 3}).getCount(), 0u);
}

TEST_F(TriangleMeshPrimitiveTest, EveryValueButAnOwnPositionIsReadBack) {
    mesh = makeMesh({1, 2, 3});
    mesh->addVerticesMapping(StreamMapping(COLOR, makeStream("c", 4, {4, 5, 6, 7}), 0));
    mesh->addVerticesMapping(StreamMapping(INVALID, makeStream("i", 1, {9}), 0));
    TriangleMeshPrimitive mixed(
        mesh,
        {StreamMapping(POSITION, makeStream("p", 3, {9, 9, 9}), 0), StreamMapping(VERTEX, {}, 1),
         StreamMapping(TEXCOORD0, makeStream("t", 2, {0, 0, 8, 9}), 2),
         StreamMapping(TANGENT, makeStream("a", 1, {10}), 3)},
        {0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0});
    using Contents = std::vector<std::pair<StreamSemantic, Floats>>;
    const auto contents = contentsOf(*mixed.getTriangleAt(0));
    const Contents expected = {
        {POSITION, {1, 2, 3}}, {COLOR, {4, 5, 6, 7}}, {TEXCOORD0, {8, 9}}, {TANGENT, {10}}};
    EXPECT_EQ(contents[0], expected);
    EXPECT_EQ(contents[1][2].second, (Floats{0, 0}));
}

TEST_F(TriangleMeshPrimitiveTest, OfTwoMappingsOfOneSemanticTheLastValueCounts) {
    mesh = makeMesh({1, 2, 3, 4, 5, 6});
    TriangleMeshPrimitive twice(mesh, {StreamMapping(VERTEX, {}, 0), StreamMapping(VERTEX, {}, 1)},
                                {0, 1, 0, 9, 1, 0});
    const auto triangle = twice.getTriangleAt(0);
    ASSERT_EQ(triangle->getVertexAt(0)->getElementCount(), 1u);
    EXPECT_EQ(triangle->getVertexAt(0)->getPositionVector(), Vector3f(4, 5, 6));
    EXPECT_EQ(triangle->getVertexAt(1)->getPositionVector(), Vector3f(1, 2, 3));
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity() * 2;
    const auto moved = twice.getTriangleAt(0);
    moved->applyTransform(matrix);
    EXPECT_EQ(moved->getVertexAt(0)->getPositionVector(), Vector3f(8, 10, 12));
}

TEST_F(TriangleMeshPrimitiveTest, ACloneSharesStreamsButNotTheMaterialSymbol) {
    const Vector3f up(0, 0, 1);
    primitive.addTriangle(
        boost::make_shared<Triangle>(makeVertex({0, 0, 0}, up), makeVertex({1, 0, 0}, up),
                                     makeVertex({0, 1, 0}, up)),
        true);
    primitive.setMaterialSymbol("red");
    const auto target = makeMesh({5, 5, 5, 6, 6, 6, 7, 7, 7});
    const auto clone = primitive.clone(target);
    EXPECT_EQ(clone->getMaterialSymbol(), "vantorix_material");
    EXPECT_EQ(clone->getIndexStream(), primitive.getIndexStream());
    EXPECT_EQ(clone->getStreamMapping()[1].stream, primitive.getStreamMapping()[1].stream);
    EXPECT_EQ(maximumOf(*clone), Vector3f(7, 7, 7));
    EXPECT_EQ(outputOf([&] { clone->print(); }), "Implement me TriangleMeshPrimitive::print()\n");
}

TEST_F(TriangleMeshPrimitiveTest, ManyPrimitivesAreCheap) {
    std::vector<boost::shared_ptr<TriangleMeshPrimitive>> primitives;
    for (int i = 0; i < 100000; ++i) {
        primitives.push_back(
            boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>()));
        mesh->addPrimitive(primitives.back());
    }
    EXPECT_EQ(mesh->getPrimitiveCount(), 100000u);
}

}  // namespace
}  // namespace vantorix::scene
