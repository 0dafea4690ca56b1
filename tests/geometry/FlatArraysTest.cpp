// What comes in by the call against the same one by one: tuples of a stream, triangles of a mesh.

#include <array>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <utility>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/VertexElement.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using CornerValues = TriangleMeshPrimitive::CornerValues;

class RandomFloats {
public:
    explicit RandomFloats(unsigned int seed) : random_(seed) {}

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }

    /// Few different ones, and some that are equal without having the same bytes.
    Floats values(std::size_t count, unsigned int different) {
        Floats floats(count);
        for (auto& value : floats) value = static_cast<float>(below(different));
        for (std::size_t i = below(40); i < count; i += 40) floats[i] = -0.0f;
        for (std::size_t i = below(90); i < count; i += 90) {
            floats[i] = std::numeric_limits<float>::quiet_NaN();
        }
        return floats;
    }

private:
    std::mt19937 random_;
};

void expectSame(const Stream& actual, const Stream& expected) {
    EXPECT_EQ(actual.name, expected.name);
    EXPECT_EQ(actual.stride, expected.stride);
    EXPECT_EQ(actual.count, expected.count);
    EXPECT_EQ(actual.allowDuplicates, expected.allowDuplicates);
    EXPECT_TRUE(haveSameBytes(actual.values, expected.values));
}

/// Inserts the same tuples into both streams: at once, and one by one.
void insertBoth(Stream& together, Stream& single, int stride, const Floats& floats,
                std::size_t count) {
    std::vector<int> indices(count);
    together.insertValues(stride, floats.data(), count, indices.data());
    for (std::size_t i = 0; i < count; ++i) {
        const float* const tuple = floats.data() + static_cast<int>(i) * std::max(stride, 0);
        ASSERT_EQ(indices[i], single.insertValue(stride, tuple)) << i;
    }
    expectSame(together, single);
}

TEST(FlatArrays, TuplesComeIntoAStreamAsOneByOne) {
    for (unsigned int seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        RandomFloats random(seed);
        const int stride = static_cast<int>(random.below(6)) - 1;
        Stream together("stream", stride, random.below(8) == 0);
        Stream single(together);
        for (int batch = 0; batch < 6; ++batch) {
            const std::size_t count = random.below(300);
            const auto floats = random.values(count * 5, 2 + random.below(8));
            insertBoth(together, single, random.below(12) == 0 ? 3 : stride, floats, count);
            // Between two calls anybody may write.
            if (random.below(2) == 0 && !together.values.empty()) {
                together.values.back() = single.values.back() = 3;
            }
            if (random.below(4) == 0) {
                together.values.push_back(1);
                single.values.push_back(1);
            }
            if (random.below(3) == 0) together.values.shrink_to_fit();
        }
    }
}

TEST(FlatArrays, TuplesMayComeFromTheStreamItself) {
    Stream stream("stream", 2, true);
    for (int i = 0; i < 100; ++i) {
        const Floats tuple = {static_cast<float>(i), 1};
        stream.insertValue(2, tuple.data());
    }
    const Floats before = stream.values;
    std::vector<int> indices(100);
    stream.insertValues(2, std::as_const(stream.values).data(), 100, indices.data());
    EXPECT_EQ(indices.front(), 100);
    EXPECT_TRUE(haveSameBytes(Floats(stream.values.begin() + 200, stream.values.end()), before));
    stream.insertValues(2, std::as_const(stream.values).data() + 399, 100, indices.data());
    EXPECT_EQ(stream.count, 300);
    stream.insertValues(2, before.data(), 100, nullptr);
    EXPECT_EQ(stream.count, 300);
}

/// A mesh to which triangles are added, with streams that stood there before in some.
struct Filled {
    explicit Filled(unsigned int kind) {
        if (kind < 7) mappings.emplace_back(VERTEX, boost::shared_ptr<Stream>(), 0);
        if (kind == 1) shareWithPositions(NORMAL, makeStream("shared", 3, {1, 2, 3}));
        if (kind == 2) shareWithPositions(NORMAL, mesh->getVertices().front().stream);
        if (kind == 3) mappings.emplace_back(TEXCOORD0, makeStream("wide", 3, {}), 1);
        if (kind == 4) mappings.emplace_back(NORMAL, boost::shared_ptr<Stream>(), 1);
        if (kind == 5) mesh->clearVertices();
        if (kind == 6) mesh->getVertices().front().stream->allowDuplicates = true;
        primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, mappings);
        mesh->addPrimitive(primitive);
    }

    void shareWithPositions(StreamSemantic semantic, const boost::shared_ptr<Stream>& stream) {
        mesh->addVerticesMapping(StreamMapping(semantic, stream, 0));
    }

    boost::shared_ptr<Mesh> mesh = makeMesh({0, 0, 0, 1, 1, 1});
    std::vector<StreamMapping> mappings;
    boost::shared_ptr<TriangleMeshPrimitive> primitive;
};

/// The definition of addTriangles.
bool addOneByOne(TriangleMeshPrimitive& primitive, const std::vector<CornerValues>& corners,
                 std::size_t count, bool deduplicate) {
    for (std::size_t triangle = 0; triangle < count; ++triangle) {
        std::array<boost::shared_ptr<Vertex>, 3> vertices;
        for (std::size_t i = 0; i < 3; ++i) {
            vertices[i] = boost::make_shared<Vertex>();
            for (const auto& corner : corners) {
                const auto first = (3 * triangle + i) * static_cast<std::size_t>(corner.size);
                vertices[i]->addElement(
                    VertexElement::create(corner.semantic, corner.size, corner.values + first),
                    true);
            }
        }
        const auto made = boost::make_shared<Triangle>(vertices[0], vertices[1], vertices[2]);
        if (!primitive.addTriangle(made, deduplicate)) return false;
    }
    return true;
}

Floats boxOf(IMeshPrimitive& primitive) {
    const auto minimum = minimumOf(primitive);
    const auto maximum = maximumOf(primitive);
    return {minimum[0], minimum[1], minimum[2], maximum[0], maximum[1], maximum[2]};
}

void expectSame(Filled& actual, Filled& expected) {
    EXPECT_EQ(actual.primitive->getIndexStream(), expected.primitive->getIndexStream());
    EXPECT_TRUE(haveSameBytes(boxOf(*actual.primitive), boxOf(*expected.primitive)));
    const auto streams = actual.mesh->getStreams();
    const auto expectedStreams = expected.mesh->getStreams();
    ASSERT_EQ(streams.size(), expectedStreams.size());
    for (std::size_t i = 0; i < streams.size(); ++i) expectSame(*streams[i], *expectedStreams[i]);
    const auto& mappings = actual.primitive->getStreamMapping();
    const auto& expectedMappings = expected.primitive->getStreamMapping();
    ASSERT_EQ(mappings.size(), expectedMappings.size());
    for (std::size_t i = 0; i < mappings.size(); ++i) {
        EXPECT_EQ(mappings[i].semantic, expectedMappings[i].semantic);
        EXPECT_EQ(mappings[i].offset, expectedMappings[i].offset);
    }
}

/// Writes the same over tuples of both meshes' streams, so that some are equal to others.
void overwriteBoth(Filled& left, Filled& right, RandomFloats& random) {
    for (std::size_t i = 0; i < left.mesh->getStreams().size(); ++i) {
        Floats values = left.mesh->getStreams()[i]->values;
        const std::size_t limit = random.below(30);
        for (std::size_t k = 0; k + 3 < std::min(values.size(), limit); ++k) {
            values[k + 3] = values[k];
        }
        left.mesh->getStreams()[i]->values = values;
        right.mesh->getStreams()[i]->values = values;
    }
}

struct FlatTriangles : QuietTest {};

TEST_F(FlatTriangles, LeaveWhatSingleTrianglesLeave) {
    const std::array<StreamSemantic, 5> semantics = {POSITION, NORMAL, TEXCOORD0, COLOR, INVALID};
    for (unsigned int seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        RandomFloats random(seed);
        Filled together(seed % 8);
        Filled single(seed % 8);
        for (int batch = 0; batch < 3; ++batch) {
            const std::size_t count = random.below(8) == 0 ? 1200 : random.below(60);
            std::vector<Floats> values;
            std::vector<CornerValues> corners = {{POSITION, 3, nullptr}};
            for (unsigned int i = random.below(4); i > 0; --i) {
                corners.push_back({semantics[random.below(20) % 5], 3, nullptr});
            }
            if (random.below(6) == 0) corners.back().size = static_cast<int>(random.below(4));
            for (auto& corner : corners) {
                values.push_back(random.values(count * 9, 2 + random.below(5)));
                if (values.back().empty()) values.back().push_back(0);
                corner.values = values.back().data();
            }
            const bool deduplicate = random.below(4) != 0;
            EXPECT_EQ(together.primitive->addTriangles(corners, count, deduplicate),
                      addOneByOne(*single.primitive, corners, count, deduplicate));
            if (random.below(3) == 0) overwriteBoth(together, single, random);
        }
        expectSame(together, single);
    }
}

TEST_F(FlatTriangles, MayComeFromTheStreamsThatTheyAreAddedTo) {
    // All values differ, so that the streams move again and again.
    Floats values(std::size_t{3} * 3 * 3000);
    std::iota(values.begin(), values.end(), 1.0f);
    Filled own(0);
    Filled copied(0);
    const Stream& positions = *own.mesh->getVertices().front().stream;
    for (auto* const filled : {&own, &copied}) {
        const std::vector<CornerValues> corners = {{POSITION, 3, values.data()},
                                                   {NORMAL, 3, values.data()}};
        ASSERT_TRUE(filled->primitive->addTriangles(corners, 3000, true));
    }
    const Floats before = positions.values;
    const auto shifted = [](const Floats& floats) {
        return std::vector<CornerValues>{{POSITION, 3, floats.data() + 1},
                                         {NORMAL, 3, floats.data() + 2}};
    };
    EXPECT_TRUE(own.primitive->addTriangles(shifted(positions.values), 2900, true));
    EXPECT_TRUE(copied.primitive->addTriangles(shifted(before), 2900, true));
    expectSame(own, copied);
}

TEST_F(FlatTriangles, NeedTheirValues) {
    Filled filled(5);
    EXPECT_FALSE(filled.primitive->addTriangles({{POSITION, 3, nullptr}}, 1, true));
    const Floats values(12, 1.0f);
    const std::vector<CornerValues> wide = {{COLOR, 4, values.data()},
                                            {POSITION, 4, values.data()}};
    EXPECT_THROW(filled.primitive->addTriangles(wide, 1, true), std::out_of_range);
    const auto primitive = filled.primitive;
    filled.mesh.reset();
    EXPECT_FALSE(primitive->addTriangles({{POSITION, 3, values.data()}}, 1, true));
}

}  // namespace
}  // namespace vantorix::scene
