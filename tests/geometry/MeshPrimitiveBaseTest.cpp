#include <limits>

#include "scene/geometry/MeshPrimitiveBase.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

const char* const noVertexText =
    " [ERROR] Found a TriangleMeshPrimitive with no VERTEX stream mapping.";
const char* const noPositionText =
    "[WARN] could not calculate min/max for MeshPrimitive. No Position semantic.";

/// Lets the tests reach what only primitives see.
struct OpenPrimitive : TriangleMeshPrimitive {
    using MeshPrimitiveBase::getStreamBySemantic;
    using MeshPrimitiveBase::getStreamMappingIndexForSemantic;
    using MeshPrimitiveBase::getStreamMappingOffsetForSemantic;
    using TriangleMeshPrimitive::TriangleMeshPrimitive;
};

struct MeshPrimitiveBaseTest : QuietTest {
    boost::shared_ptr<Mesh> mesh = makeMesh({0, 0, 0, 1, 2, 3, -4, 5, 6, 9, 9, 9});
    boost::shared_ptr<Stream> positions = mesh->getStream("positions");
    boost::shared_ptr<Stream> normals = makeStream("n", 3, {});

    OpenPrimitive make(const std::vector<StreamMapping>& mappings, const Indices& indices = {}) {
        return OpenPrimitive(mesh, mappings, indices);
    }
};

TEST_F(MeshPrimitiveBaseTest, TheStrideCountsDistinctOffsets) {
    const std::vector<std::pair<std::vector<int>, int>> cases = {
        {{}, 0}, {{0}, 1}, {{0, 0, 1}, 2}, {{0, 2}, 2}, {{5, -1, 5, 3}, 3}};
    for (const auto& [offsets, stride] : cases) {
        std::vector<StreamMapping> mappings;
        for (const int offset : offsets) mappings.emplace_back(VERTEX, positions, offset);
        EXPECT_EQ(make(mappings).getIndexStreamStride(), stride);
    }
}

TEST_F(MeshPrimitiveBaseTest, StartsWithDefaults) {
    auto primitive = make({});
    EXPECT_EQ(primitive.getMaterialSymbol(), "vantorix_material");
    EXPECT_EQ(primitive.getType(), IMeshPrimitive::TRIANGLES);
    const float largest = std::numeric_limits<float>::max();
    EXPECT_EQ(minimumOf(primitive), Vector3f::Constant(largest));
    EXPECT_EQ(maximumOf(primitive), Vector3f::Constant(-largest));
    EXPECT_EQ(primitive.getBVCenter(), Vector3f::Constant(-std::numeric_limits<float>::infinity()));
}

TEST_F(MeshPrimitiveBaseTest, TheBoxHoldsThePositionsThatAreUsed) {
    auto primitive = make({StreamMapping(VERTEX, {}, 0)}, {0, 1, 2});
    EXPECT_EQ(minimumOf(primitive), Vector3f(-4, 0, 0));
    EXPECT_EQ(maximumOf(primitive), Vector3f(1, 5, 6));
    EXPECT_EQ(primitive.getBVCenter(), Vector3f(-1.5f, 2.5f, 3));
}

TEST_F(MeshPrimitiveBaseTest, TheBoxReadsListPositionsAndNotOffsets) {
    // The normals come first in the list, so position indices are read at place 1.
    auto primitive =
        make({StreamMapping(NORMAL, normals, 1), StreamMapping(VERTEX, {}, 0)}, {3, 1, 3, 1});
    EXPECT_EQ(minimumOf(primitive), Vector3f(1, 2, 3));
    EXPECT_EQ(maximumOf(primitive), Vector3f(1, 2, 3));
}

TEST_F(MeshPrimitiveBaseTest, TheBoxForgetsWhatCameBeforeANaN) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    positions->values = {-9, 9, 0, nan, nan, nan, 1, 1, 1, 2, 0, 2};
    auto primitive = make({StreamMapping(VERTEX, {}, 0)}, {0, 1, 2, 3});
    EXPECT_EQ(minimumOf(primitive), Vector3f(1, 0, 1));
    EXPECT_EQ(maximumOf(primitive), Vector3f(2, 1, 2));
}

TEST_F(MeshPrimitiveBaseTest, WithoutPositionsTheBoxIsUnknownAndThatIsLogged) {
    core::logger::Logger::active = true;
    mesh->clearVertices();
    mesh->addVerticesMapping(StreamMapping(POSITION, {}, 0));
    EXPECT_THAT(logOf([&] { make({}); }), ::testing::HasSubstr(noPositionText));
    mesh->addVerticesMapping(StreamMapping(NORMAL, normals, 0));
    mesh->setVertices({StreamMapping(POSITION, {}, 0), StreamMapping(POSITION, positions, 0)});
    EXPECT_EQ(logOf([&] { make({}); }), "");
}

TEST_F(MeshPrimitiveBaseTest, ACornerWithAFourthComponentRaisesAnError) {
    positions->stride = 4;
    EXPECT_THROW(make({StreamMapping(VERTEX, {}, 0)}, {0}), std::out_of_range);
    EXPECT_NO_THROW(make({StreamMapping(VERTEX, {}, 0)}, {}));
}

TEST_F(MeshPrimitiveBaseTest, OwnMappingsComeBeforeThoseOfTheMesh) {
    const auto own = makeStream("own", 3, {});
    EXPECT_EQ(make({StreamMapping(VERTEX, {}, 0)}).getStreamBySemantic(POSITION), positions);
    EXPECT_EQ(make({StreamMapping(POSITION, own, 0)}).getStreamBySemantic(POSITION), own);
    EXPECT_FALSE(make({}).getStreamBySemantic(NORMAL));
}

TEST_F(MeshPrimitiveBaseTest, SemanticsOfTheMeshAreReachedThroughVertex) {
    auto primitive = make({StreamMapping(VERTEX, {}, 4), StreamMapping(NORMAL, normals, 2),
                           StreamMapping(VERTEX, {}, 7)});
    EXPECT_EQ(primitive.getStreamMappingIndexForSemantic(NORMAL), 1);
    EXPECT_EQ(primitive.getStreamMappingOffsetForSemantic(NORMAL), 2);
    EXPECT_EQ(primitive.getStreamMappingIndexForSemantic(VERTEX), 0);
    EXPECT_EQ(primitive.getStreamMappingIndexForSemantic(POSITION), 2) << "the last VERTEX";
    EXPECT_EQ(primitive.getStreamMappingOffsetForSemantic(POSITION), 7);
    EXPECT_EQ(primitive.getStreamMappingOffsetForSemantic(COLOR), -1);
}

TEST_F(MeshPrimitiveBaseTest, AMissingVertexMappingIsLogged) {
    core::logger::Logger::active = true;
    for (const auto& mappings :
         {std::vector<StreamMapping>(), {StreamMapping(NORMAL, normals, 0)}}) {
        auto primitive = make(mappings);
        const auto log =
            logOf([&] { EXPECT_EQ(primitive.getStreamMappingIndexForSemantic(POSITION), -1); });
        EXPECT_THAT(log, ::testing::HasSubstr(noVertexText));
    }
    auto complete = make({StreamMapping(VERTEX, {}, 0)});
    EXPECT_EQ(logOf([&] { complete.getStreamMappingOffsetForSemantic(COLOR); }), "");
}

TEST_F(MeshPrimitiveBaseTest, AListedInputWithoutAStreamTakesNoFaces) {
    const auto corner = makeVertex({1, 2, 3}, {0, 0, 1});
    const auto face = boost::make_shared<Triangle>(corner, corner, corner);
    const auto expectNothingAdded = [&](OpenPrimitive primitive) {
        const auto mappings = primitive.getStreamMapping().size();
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(primitive.addTriangle(face, true));
        EXPECT_EQ(primitive.getStreamMapping().size(), mappings);
        EXPECT_TRUE(primitive.getIndexStream().empty());
        EXPECT_GT(minimumOf(primitive).x(), 1e38f);
        EXPECT_TRUE(mesh->getStreams().empty());
    };
    mesh = boost::make_shared<Mesh>("m", "");
    for (const auto semantic : {NORMAL, POSITION}) {
        expectNothingAdded(make({StreamMapping(semantic, {}, 0)}));
        expectNothingAdded(make({StreamMapping(VERTEX, {}, 0), StreamMapping(semantic, {}, 1)}));
    }
    for (const auto semantic : {NORMAL, POSITION}) {
        mesh->setVertices({StreamMapping(semantic, {}, 0)});
        expectNothingAdded(make({StreamMapping(VERTEX, {}, 0)}));
    }
}

}  // namespace
}  // namespace vantorix::scene
