#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>

#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector2f;
using Eigen::Vector3f;

/// A mesh of one triangle primitive whose positions are reached through VERTEX.
struct TriangleMesh {
    boost::shared_ptr<Mesh> mesh;
    boost::shared_ptr<TriangleMeshPrimitive> primitive;

    TriangleMesh(const Floats& positions, const std::vector<StreamMapping>& mappings,
                 const Indices& indices)
        : mesh(makeMesh(positions)),
          primitive(boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, indices)) {
        mesh->addPrimitive(primitive);
    }
    TriangleMesh(const Floats& positions, const Indices& indices)
        : TriangleMesh(positions, {StreamMapping(VERTEX, {}, 0)}, indices) {}
};

/// Three weights per vertex, one of them shared by all.
boost::shared_ptr<Controller> makeSkin(const boost::shared_ptr<Mesh>& mesh,
                                       const std::vector<std::vector<std::pair<int, float>>>& all) {
    const auto skin = boost::make_shared<Skin>(mesh);
    std::vector<unsigned int> counts;
    std::vector<int> pairs;
    Floats weights;
    for (const auto& vertex : all) {
        counts.push_back(static_cast<unsigned int>(vertex.size()));
        for (const auto& [joint, weight] : vertex) {
            pairs.push_back(joint);
            pairs.push_back(static_cast<int>(weights.size()));
            weights.push_back(weight);
        }
    }
    skin->setStreams({makeStream("weights", 1, weights)});
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount(counts);
    skin->setV(pairs);
    const auto controller = boost::make_shared<Controller>("controller", "");
    controller->setSkin(skin);
    return controller;
}

struct Subdivision : QuietTest {};

TEST_F(Subdivision, ATriangleBecomesFourOfSixPositions) {
    TriangleMesh one({0, 0, 0, 2, 0, 0, 0, 2, 0}, {0, 1, 2});
    one.primitive->setMaterialSymbol("skin");
    one.mesh->subDivide(boost::make_shared<Controller>("no skin", ""));

    EXPECT_EQ(one.primitive->getIndexStream(), (Indices{0, 1, 2, 1, 3, 2, 1, 4, 3, 2, 3, 5}));
    const auto stream = one.mesh->getStream("VTX_SUBDIVIDE_POSITION_STREAM");
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->values, (Floats{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 2, 0, 0, 0, 2, 0}));
    EXPECT_EQ(stream->count, 6);
    EXPECT_FALSE(stream->allowDuplicates);
    EXPECT_EQ(one.mesh->getStreams().size(), 1u);
    ASSERT_EQ(one.primitive->getStreamMapping().size(), 1u);
    const auto& vertex = one.primitive->getStreamMapping()[0];
    EXPECT_EQ(vertex.semantic, VERTEX);
    EXPECT_EQ(vertex.stream->name, one.mesh->getVerticesID());
    EXPECT_EQ(vertex.stream->stride, 0);
    EXPECT_EQ(one.primitive->getMaterialSymbol(), "skin");
    EXPECT_EQ(one.primitive->getCount(), 4u);
}

TEST_F(Subdivision, WhatOneCornerLacksIsDroppedForAll) {
    const std::vector<StreamMapping> mappings = {
        StreamMapping(VERTEX, {}, 0), StreamMapping(NORMAL, makeStream("n", 3, {0, 0, 1}), 1),
        StreamMapping(TEXCOORD0, makeStream("t", 2, {0, 0}), 2)};
    TriangleMesh two({0, 0, 0, 2, 0, 0, 0, 2, 0}, mappings,
                     {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 2, 7, 0, 1, 0, 0});
    two.mesh->subDivide({});
    EXPECT_FALSE(two.mesh->getStream("VTX_SUBDIVIDE_NORMAL_STREAM"));
    EXPECT_TRUE(two.mesh->getStream("VTX_SUBDIVIDE_UV_STREAM"));
    EXPECT_EQ(two.primitive->getIndexStreamStride(), 2);
    EXPECT_EQ(two.primitive->getStreamMapping()[1].offset, 2) << "also without normals";
    EXPECT_EQ(two.primitive->getIndexStream().size(), 48u);
    EXPECT_EQ(two.primitive->getTriangleAt(7)->getVertexAt(2)->getElementCount(), 2u);
}

TEST_F(Subdivision, TheStreamsOfAnotherPrimitiveAreLost) {
    TriangleMesh first({0, 0, 0, 2, 0, 0, 0, 2, 0}, {0, 1, 2});
    const auto second = boost::make_shared<TriangleMeshPrimitive>(
        first.mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, {}, 0)}, Indices{0, 1, 2});
    first.mesh->addPrimitive(second);
    first.mesh->subDivide({});
    EXPECT_EQ(first.mesh->getStreams().size(), 1u);
    // The second was split where the first has left new positions: (0,0,0), (1,0,0), (0,1,0).
    EXPECT_EQ(floatsOf(second->getTriangleAt(3)->getVertexAt(2)->getPosition()), (Floats{0, 1, 0}));
}

TEST_F(Subdivision, WithoutTrianglesOrMeshThereIsNothingToSplit) {
    TriangleMesh none({0, 0, 0}, {0, 0});
    none.mesh->subDivide({});
    EXPECT_EQ(none.primitive->getCount(), 0u);
    EXPECT_FALSE(none.mesh->getStream("VTX_SUBDIVIDE_NORMAL_STREAM"));

    TriangleMesh orphan({0, 0, 0, 2, 0, 0, 0, 2, 0}, {0, 1, 2});
    orphan.mesh.reset();
    orphan.primitive->subDivide({});
    EXPECT_EQ(orphan.primitive->getIndexStream(), (Indices{0, 1, 2}));
}

// Against a model that takes every step for every corner, and searches from the front.

using Bytes = std::vector<unsigned char>;
template <typename Value>
Bytes bytesOf(const Value& value) {
    const auto* const first = reinterpret_cast<const unsigned char*>(value.data());
    return Bytes(first, first + static_cast<std::size_t>(value.size()) * sizeof(float));
}

/// The midpoint that the first triangle to meet the edge gives it.
template <typename Value>
struct ModelMidpoints {
    std::map<std::set<Bytes>, Value> known;

    Value operator()(const Value& from, const Value& to) {
        return known.emplace(std::set<Bytes>{bytesOf(from), bytesOf(to)}, from + (to - from) * 0.5f)
            .first->second;
    }
};

template <typename Value, typename Midpoint>
std::vector<Value> modelCorners(const std::array<Value, 3>& corner, Midpoint&& midpoint) {
    const Value ab = midpoint(corner[0], corner[1]);
    const Value ac = midpoint(corner[0], corner[2]);
    const Value bc = midpoint(corner[1], corner[2]);
    return {corner[0], ab, ac, ab, bc, ac, ab, corner[1], bc, ac, bc, corner[2]};
}

Vector3f modelNormal(const Vector3f& from, const Vector3f& to) {
    return ((from + to) / 2.0f).normalized();
}

struct ModelValues {
    int stride;
    Floats values;

    /// The place of the first equal tuple, which is appended when there is none.
    template <typename Value>
    unsigned int insert(const Value& value) {
        for (std::size_t i = 0; i < values.size(); i += static_cast<std::size_t>(stride)) {
            const Eigen::Map<const Value> tuple(&values[i]);
            if (bytesOf(Value(tuple)) == bytesOf(value)) {
                return static_cast<unsigned int>(i) / static_cast<unsigned int>(stride);
            }
        }
        values.insert(values.end(), value.data(), value.data() + stride);
        return static_cast<unsigned int>(values.size()) / static_cast<unsigned int>(stride) - 1;
    }
};

using Influences = std::pair<std::vector<int>, Floats>;

std::vector<Influences> modelInfluences(const Skin& skin, const unsigned int* corner) {
    const auto at = [&](unsigned int vertex) {
        Influences result;
        skin.getVertexJointsAndWeights(vertex, result.first, result.second);
        return result;
    };
    const auto between = [&](unsigned int a, unsigned int b) {
        Influences result;
        skin.calculateNewJointsAndWeights(a, b, result.first, result.second);
        return result;
    };
    const auto ab = between(corner[0], corner[1]);
    const auto ac = between(corner[0], corner[2]);
    const auto bc = between(corner[1], corner[2]);
    return {at(corner[0]), ab, ac, ab, bc, ac, ab, at(corner[1]), bc, ac, bc, at(corner[2])};
}

/// A random mesh whose positions, normals and texture coordinates repeat by value and by index.
struct RandomMesh {
    static constexpr std::size_t triangleCount = 200;

    explicit RandomMesh(unsigned int seed) : random(seed) {
        vertices = makeStream("p", 3, values(300));
        normals = makeStream("n", 3, values(300));
        textures = makeStream("t", 2, values(200));
        if (seed >= 12) takeDistinctStreams(seed);
        std::vector<StreamMapping> mappings = {StreamMapping(VERTEX, {}, 0)};
        sharesNormals = seed % 3 == 0;
        hasTextures = seed % 2 == 0;
        if (!sharesNormals) mappings.emplace_back(NORMAL, normals, 1);
        if (hasTextures) mappings.emplace_back(TEXCOORD0, textures, 2);
        // The first triangles name the same tuple of every stream.
        const std::size_t alike = 45 * std::size_t{seed % 5};
        // In a fan, more edges meet at its tip than a list of them holds.
        const bool isFan = seed % 4 == 3;
        const unsigned int reach = isFan ? 100 : 10;
        for (std::size_t corner = 0; corner < 3 * triangleCount; ++corner) {
            indices.push_back(isFan && corner % 3 == 0 ? 0 : below(reach));
            for (std::size_t i = 1; i < mappings.size(); ++i) {
                indices.push_back(corner < 3 * alike ? indices.back() : below(reach));
            }
        }
        stride = mappings.size();
        mesh = boost::make_shared<Mesh>("m", "");
        mesh->addVerticesMapping(StreamMapping(POSITION, vertices, 0));
        if (sharesNormals) mesh->addVerticesMapping(StreamMapping(NORMAL, normals, 0));
        primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, mappings, indices);
        mesh->addPrimitive(primitive);
    }

    /// Streams that know no two of their tuples to be equal, until somebody writes to one.
    void takeDistinctStreams(unsigned int seed) {
        vertices = makeDistinctStream("p", 3);
        normals = makeDistinctStream("n", 3);
        textures = makeDistinctStream("t", 2);
        if (seed % 4 < 2) return;
        std::copy_n(vertices->values.begin(), 9, vertices->values.begin() + 9);
        std::copy_n(textures->values.begin(), 4, textures->values.begin() + 8);
    }

    boost::shared_ptr<Stream> makeDistinctStream(const char* name, int size) {
        const auto stream = boost::make_shared<Stream>(name, size, false);
        while (stream->count < 100) {
            auto tuple = values(static_cast<std::size_t>(size));
            tuple[0] += 0.1f * static_cast<float>(below(20));
            stream->insertValue(size, tuple.data());
        }
        return stream;
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random()) % limit; }

    Floats values(std::size_t count) {
        // Few different ones, thirds among them: their sums round, and -0 is there beside 0.
        const float choices[] = {0.0f, -0.0f, 1 / 3.0f, -0.7f, 1e8f, 0.1f};
        Floats list(count);
        for (auto& value : list) value = choices[below(6)];
        return list;
    }

    template <int Size>
    std::array<Eigen::Matrix<float, Size, 1>, 3> read(const Stream& stream, std::size_t slot,
                                                      std::size_t triangle) const {
        std::array<Eigen::Matrix<float, Size, 1>, 3> corners;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t tuple = indices[(3 * triangle + i) * stride + slot];
            const auto& floats = stream.values;
            corners[i] = Eigen::Map<const Eigen::Matrix<float, Size, 1>>(&floats[tuple * Size]);
        }
        return corners;
    }

    std::mt19937 random;
    boost::shared_ptr<Stream> vertices, normals, textures;
    boost::shared_ptr<Mesh> mesh;
    boost::shared_ptr<TriangleMeshPrimitive> primitive;
    Indices indices;
    std::size_t stride = 0;
    bool sharesNormals = false;
    bool hasTextures = false;
};

struct SubdivisionModel : QuietTest, ::testing::WithParamInterface<unsigned int> {};

TEST_P(SubdivisionModel, GivesTheSameStreamsRecordsAndInfluences) {
    RandomMesh random(GetParam());
    std::vector<std::vector<std::pair<int, float>>> vertices(9);  // One less than positions.
    for (auto& vertex : vertices) {
        for (auto count = random.below(4); count > 0; --count) {
            vertex.emplace_back(random.below(5), static_cast<float>(random.below(8)) / 4.0f);
        }
    }
    const auto controller = makeSkin(random.mesh, vertices);
    const Skin before = *controller->getSkin();

    ModelValues positions{3, {}}, normals{3, {}}, textures{2, {}}, weights{1, {}};
    ModelMidpoints<Vector3f> middlePosition;
    ModelMidpoints<Vector2f> middleTexture;
    Indices records;
    std::vector<unsigned int> counts;
    std::vector<int> pairs;
    for (std::size_t triangle = 0; triangle < RandomMesh::triangleCount; ++triangle) {
        const auto p = modelCorners(random.read<3>(*random.vertices, 0, triangle), middlePosition);
        const auto n = modelCorners(
            random.read<3>(*random.normals, random.sharesNormals ? 0 : 1, triangle), modelNormal);
        std::array<unsigned int, 3> corner;
        for (std::size_t i = 0; i < 3; ++i) {
            corner[i] = random.indices[(3 * triangle + i) * random.stride];
        }
        const auto influences = modelInfluences(before, corner.data());
        std::vector<Vector2f> t(12);
        if (random.hasTextures) {
            t = modelCorners(random.read<2>(*random.textures, random.stride - 1, triangle),
                             middleTexture);
        }
        for (std::size_t k = 0; k < 12; ++k) {
            const std::size_t known = positions.values.size();
            records.push_back(positions.insert(p[k]));
            records.push_back(normals.insert(n[k]));
            if (random.hasTextures) records.push_back(textures.insert(t[k]));
            if (positions.values.size() == known) continue;
            counts.push_back(static_cast<unsigned int>(influences[k].first.size()));
            for (std::size_t i = 0; i < influences[k].first.size(); ++i) {
                const Eigen::Matrix<float, 1, 1> weight(influences[k].second[i]);
                pairs.push_back(influences[k].first[i]);
                pairs.push_back(static_cast<int>(weights.insert(weight)));
            }
        }
    }

    random.mesh->subDivide(controller);
    const auto& mesh = *random.mesh;
    EXPECT_EQ(random.primitive->getIndexStream(), records);
    EXPECT_TRUE(
        haveSameBytes(mesh.getStream("VTX_SUBDIVIDE_POSITION_STREAM")->values, positions.values));
    EXPECT_TRUE(
        haveSameBytes(mesh.getStream("VTX_SUBDIVIDE_NORMAL_STREAM")->values, normals.values));
    if (random.hasTextures) {
        EXPECT_TRUE(
            haveSameBytes(mesh.getStream("VTX_SUBDIVIDE_UV_STREAM")->values, textures.values));
    }
    const auto& skin = *controller->getSkin();
    EXPECT_EQ(skin.getVCount(), counts);
    EXPECT_EQ(skin.getV(), pairs);
    EXPECT_TRUE(haveSameBytes(skin.getVertexWeightsInput("WEIGHT")->values, weights.values));
}

INSTANTIATE_TEST_SUITE_P(Meshes, SubdivisionModel, ::testing::Range(0u, 24u));

}  // namespace
}  // namespace vantorix::scene
