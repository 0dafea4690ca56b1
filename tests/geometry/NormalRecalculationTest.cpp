#include <random>

#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

struct NormalRecalculation : QuietTest {
    boost::shared_ptr<Mesh> mesh;
    boost::shared_ptr<TriangleMeshPrimitive> primitive;

    void make(const Floats& positions, const std::vector<StreamMapping>& mappings,
              const Indices& indices) {
        mesh = makeMesh(positions);
        primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, indices);
        mesh->addPrimitive(primitive);
    }
    /// Two triangles in the x-y plane.
    void makeSquare(const std::vector<StreamMapping>& mappings, const Indices& indices) {
        make({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, mappings, indices);
    }
    const StreamMapping vertex = StreamMapping(VERTEX, {}, 0);
};

bool areUpwards(const FloatArray& normals, std::size_t count) {
    for (std::size_t i = 0; i + 2 < normals.size(); i += 3) {
        const Vector3f normal(normals[i], normals[i + 1], normals[i + 2]);
        if (!normal.isApprox(Vector3f(0, 0, 1))) return false;
    }
    return normals.size() == 3 * count;
}

TEST_F(NormalRecalculation, AMeshWithoutNormalsGetsASharedStream) {
    makeSquare({vertex}, {0, 1, 2, 0, 2, 3});
    mesh->recalculateVertexNormals();
    const auto stream = mesh->getStream("VT_Calculated_Normals");
    ASSERT_TRUE(stream);
    EXPECT_TRUE(areUpwards(stream->values, 4));
    EXPECT_EQ(stream->count, 0);
    EXPECT_EQ(mesh->getVertices().back().semantic, NORMAL);
    EXPECT_EQ(primitive->getTriangleAt(1)->getVertexAt(2)->getElementCount(), 2u);

    stream->values.clear();
    mesh->recalculateVertexNormals();
    EXPECT_EQ(mesh->getStreams().size(), 2u);
    EXPECT_TRUE(areUpwards(stream->values, 4));
}

TEST_F(NormalRecalculation, NormalsOfTheMeshKeepTheirStream) {
    makeSquare({vertex}, {0, 1, 2, 0, 2, 3});
    const auto normals = makeStream("n", 3, {1, 2, 3});
    mesh->addVerticesMapping(StreamMapping(NORMAL, normals, 0));
    mesh->recalculateVertexNormals();
    EXPECT_EQ(mesh->getVertices()[1].stream, normals);
    EXPECT_TRUE(areUpwards(normals->values, 4));
    EXPECT_EQ(normals->count, 1);
}

TEST_F(NormalRecalculation, OwnNormalsAreReplacedAndStoredOncePerValue) {
    const auto old = makeStream("n", 3, Floats(18, 5.0f));
    makeSquare({vertex, StreamMapping(NORMAL, old, 1)}, {1, 5, 2, 4, 0, 3, 3, 2, 0, 1, 2, 0});
    mesh->addStream(old);
    mesh->recalculateVertexNormals();
    const auto stream = mesh->getStream("n");
    EXPECT_NE(stream, old);
    EXPECT_EQ(primitive->getStreamMapping()[1].stream, stream);
    EXPECT_EQ(stream->values, (Floats{0, 0, 1}));
    EXPECT_EQ(stream->count, 1);
    EXPECT_EQ(primitive->getIndexStream(), (Indices{1, 0, 2, 0, 0, 0, 3, 0, 0, 0, 2, 0}));
    EXPECT_EQ(old->values.size(), 18u);
}

TEST_F(NormalRecalculation, OnlyCountedPositionsGetNormals) {
    makeSquare({vertex}, {0, 1, 2, 0, 2, 3});
    mesh->getStream("positions")->count = 2;
    mesh->recalculateVertexNormals();
    EXPECT_TRUE(areUpwards(mesh->getStream("VT_Calculated_Normals")->values, 2));
}

TEST_F(NormalRecalculation, WithoutPositionsNothingHappens) {
    makeSquare({vertex}, {0, 1, 2});
    mesh->clearVertices();
    mesh->recalculateVertexNormals();
    mesh->addVerticesMapping(StreamMapping(POSITION, {}, 0));
    mesh->recalculateVertexNormals();
    EXPECT_FALSE(mesh->getStream("VT_Calculated_Normals"));
    makeSquare({StreamMapping(COLOR, {}, 0)}, {0, 1, 2});
    mesh->recalculateVertexNormals();
    EXPECT_FALSE(mesh->getStream("VT_Calculated_Normals"));
}

/// What the operation does, through face objects.
Floats normalsThroughObjects(TriangleMeshPrimitive& primitive, std::size_t slot,
                             std::size_t count) {
    std::vector<Vector3f> sums(count, Vector3f::Zero());
    const auto faces = primitive.getPrimitives();
    const auto stride = static_cast<std::size_t>(primitive.getIndexStreamStride());
    for (std::size_t face = 0; face < faces.size(); ++face) {
        const auto normal = faces[face]->getFaceNormal();
        for (std::size_t corner = 3 * face; corner < 3 * face + 3; ++corner) {
            const auto position = primitive.getIndexStream()[corner * stride + slot];
            if (position < count) sums[position] += normal;
        }
    }
    Floats normals;
    for (auto& sum : sums) {
        sum *= 1.0f / sum.norm();
        normals.insert(normals.end(), sum.data(), sum.data() + 3);
    }
    return normals;
}

struct NormalsAgainstObjects : NormalRecalculation, ::testing::WithParamInterface<int> {};

TEST_P(NormalsAgainstObjects, AreTheSameToTheBit) {
    std::mt19937 random(static_cast<unsigned int>(GetParam()));
    // Some positions repeat, so that there are edges of length 0; the last is used by no face.
    Floats positions;
    for (int i = 0; i < 303; ++i) {
        positions.push_back(static_cast<float>(static_cast<int>(random() % 9)) / 3 - 1);
    }
    Indices indices;
    for (int i = 0; i < 600; ++i) {
        indices.push_back(static_cast<unsigned int>(random()) % 100);
        indices.push_back(static_cast<unsigned int>(random()) % (GetParam() % 2 ? 100 : 120));
    }
    // Positions at the first or the second place, or at both: then the last one is the face's.
    std::vector<StreamMapping> mappings = {vertex, StreamMapping(COLOR, {}, 1)};
    if (GetParam() % 3 == 1) std::swap(mappings[0], mappings[1]);
    if (GetParam() % 3 == 2) mappings[1].semantic = VERTEX;
    make(positions, mappings, indices);
    const std::size_t slot = GetParam() % 3 == 1 ? 1 : 0;
    const auto expected = normalsThroughObjects(*primitive, slot, 101);
    mesh->recalculateVertexNormals();
    EXPECT_TRUE(haveSameBytes(mesh->getStream("VT_Calculated_Normals")->values, expected));
}

INSTANTIATE_TEST_SUITE_P(Meshes, NormalsAgainstObjects, ::testing::Range(0, 12));

}  // namespace
}  // namespace vantorix::scene
