#include <cmath>
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

TEST_F(NormalRecalculation, FacesWeighAsTheSineOfTheirFirstAngle) {
    // At position 0 a right angle in the x-y plane and one of 30 degrees in the x-z plane.
    const float c = std::sqrt(3.0f);
    make({0, 0, 0, 1, 0, 0, 0, 1, 0, c, 0, -1}, {vertex}, {0, 1, 2, 0, 1, 3});
    mesh->recalculateVertexNormals();
    const auto values = mesh->getStream("VT_Calculated_Normals")->values;
    EXPECT_TRUE(
        Vector3f(values[0], values[1], values[2]).isApprox(Vector3f(0, 0.5f, 1).normalized()));
}

/// A sphere of radius 2: its positions are twice its normals.
struct Sphere {
    explicit Sphere(unsigned int rings) {
        const unsigned int sides = 2 * rings;
        positions = {0, 0, 2, 0, 0, -2};
        for (unsigned int ring = 1; ring < rings; ++ring) {
            for (unsigned int side = 0; side < sides; ++side) addPosition(ring, side, rings);
        }
        const auto at = [&](unsigned int ring, unsigned int side) {
            return 2 + (ring - 1) * sides + side % sides;
        };
        for (unsigned int side = 0; side < sides; ++side) {
            addFace(0, at(1, side), at(1, side + 1));
            for (unsigned int ring = 1; ring + 1 < rings; ++ring) {
                addFace(at(ring, side), at(ring + 1, side), at(ring + 1, side + 1));
                addFace(at(ring, side), at(ring + 1, side + 1), at(ring, side + 1));
            }
            addFace(at(rings - 1, side), 1, at(rings - 1, side + 1));
        }
    }
    void addPosition(unsigned int ring, unsigned int side, unsigned int rings) {
        const float down = 3.14159265f * static_cast<float>(ring) / static_cast<float>(rings);
        const float around = 3.14159265f * static_cast<float>(side) / static_cast<float>(rings);
        const Vector3f position(2 * std::sin(down) * std::cos(around),
                                2 * std::sin(down) * std::sin(around), 2 * std::cos(down));
        positions.insert(positions.end(), position.data(), position.data() + 3);
    }
    void addFace(unsigned int a, unsigned int b, unsigned int c) {
        indices.insert(indices.end(), {a, b, c});
    }
    Floats positions;
    Indices indices;
};

TEST_F(NormalRecalculation, NormalsOfASphereAreThoseOfTheSurface) {
    for (const unsigned int rings : {16u, 32u, 64u}) {
        const Sphere sphere(rings);
        make(sphere.positions, {vertex}, sphere.indices);
        mesh->recalculateVertexNormals();
        const auto normals = mesh->getStream("VT_Calculated_Normals")->values;
        ASSERT_EQ(normals.size(), sphere.positions.size());
        // The chord error of a face that spans this angle; halving the faces halves it.
        const float tolerance = 3.14159265f / static_cast<float>(rings);
        float worst = 0;
        for (std::size_t i = 0; i < normals.size(); i += 3) {
            const Eigen::Map<const Vector3f> normal(&normals[i]);
            const Eigen::Map<const Vector3f> position(&sphere.positions[i]);
            worst = std::max(worst, (normal - position / 2).norm());
        }
        EXPECT_LT(worst, tolerance) << rings << " rings";
    }
}

TEST_F(NormalRecalculation, APositionWithoutFacesHasNoNormal) {
    make({0, 0, 0, 1, 0, 0, 0, 1, 0, 9, 9, 9}, {vertex}, {0, 1, 2});
    mesh->recalculateVertexNormals();
    const auto values = mesh->getStream("VT_Calculated_Normals")->values;
    EXPECT_EQ(values[2], 1);
    EXPECT_FALSE(std::isfinite(values[9]));
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
