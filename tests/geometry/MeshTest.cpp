#include <limits>
#include <tuple>

#include "scene/geometry/Mesh.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

struct MeshTest : QuietTest {
    boost::shared_ptr<Mesh> mesh = boost::make_shared<Mesh>("m", "name");

    boost::shared_ptr<TriangleMeshPrimitive> addPrimitive(const boost::shared_ptr<Mesh>& target) {
        const auto primitive = boost::make_shared<TriangleMeshPrimitive>(
            target, std::vector<StreamMapping>{StreamMapping(VERTEX, {}, 0)});
        target->addPrimitive(primitive);
        return primitive;
    }
};

TEST_F(MeshTest, StreamsAreFoundByNameAndRemovedByIdentity) {
    const auto first = makeStream("s", 3, {1});
    const auto second = makeStream("s", 3, {2});
    mesh->addStream({});
    mesh->addStream(first);
    mesh->addStream(second);
    mesh->removeStream(makeStream("s", 3, {}));
    EXPECT_EQ(mesh->getStream("s"), first);
    mesh->removeStream(first);
    EXPECT_EQ(mesh->getStream("s"), second);
    EXPECT_EQ(mesh->getStreams().size(), 2u);
    EXPECT_FALSE(mesh->getStream("t"));
    mesh->setStreams({first});
    EXPECT_EQ(mesh->getStreams().size(), 1u);
    mesh->clearStreams();
    EXPECT_TRUE(mesh->getStreams().empty());
}

TEST_F(MeshTest, TheFirstVerticesMappingOfASemanticWins) {
    mesh->addVerticesMapping(StreamMapping(POSITION, {}, 1));
    mesh->addVerticesMapping(StreamMapping(POSITION, {}, 2));
    mesh->addVerticesMapping(StreamMapping(NORMAL, {}, 3));
    ASSERT_EQ(mesh->getVertices().size(), 2u);
    EXPECT_EQ(mesh->getVertices()[0].offset, 1);
    mesh->clearVertices();
    EXPECT_TRUE(mesh->getVertices().empty());
}

TEST_F(MeshTest, OutsideTheListThereIsNoPrimitive) {
    mesh->addPrimitive({});
    EXPECT_EQ(mesh->getPrimitiveCount(), 0u);
    const auto primitive = addPrimitive(mesh);
    EXPECT_EQ(mesh->getPrimitive(0), primitive);
    EXPECT_FALSE(mesh->getPrimitive(1));
    EXPECT_EQ(mesh->getMeshPrimitives().size(), 1u);
}

TEST_F(MeshTest, TheCentreIsTheSumOfThoseOfThePrimitives) {
    const auto first = addPrimitive(mesh);
    const auto second = addPrimitive(mesh);
    first->addTriangle(makeTriangle({0, 0, 0}, {1, 1, 1}, {0, 0, 1}), true);
    second->addTriangle(makeTriangle({2, 2, 2}, {3, 3, 3}, {2, 2, 3}), true);
    EXPECT_EQ(mesh->getBVMin(), Vector3f(0, 0, 0));
    EXPECT_EQ(mesh->getBVMax(), Vector3f(3, 3, 3));
    EXPECT_EQ(mesh->getBVCenter(), Vector3f(3, 3, 3));
}

TEST_F(MeshTest, TheFirstQueryFixesTheBoundsAlsoForCopies) {
    addPrimitive(mesh)->addTriangle(makeRightTriangle(), true);
    EXPECT_EQ(mesh->getBVMax(), Vector3f(1, 1, 0));
    addPrimitive(mesh)->addTriangle(makeTriangle({9, 9, 9}, {8, 8, 8}, {7, 9, 9}), true);
    Mesh copy = *mesh;
    EXPECT_EQ(copy.getBVMax(), Vector3f(1, 1, 0));
    EXPECT_EQ(boost::dynamic_pointer_cast<Mesh>(mesh->clone())->getBVMax(), Vector3f(9, 9, 9));
}

TEST_F(MeshTest, WithoutPositionsTheBoxIsAtTheOrigin) {
    EXPECT_EQ(mesh->getBVMin(), Vector3f(0, 0, 0));
    mesh = boost::make_shared<Mesh>("m", "");
    mesh->addVerticesMapping(StreamMapping(POSITION, {}, 0));
    EXPECT_EQ(mesh->getBVCenter(), Vector3f(0, 0, 0));
}

/// Adds another primitive to its mesh whenever it is measured.
struct GrowingPrimitive : TriangleMeshPrimitive {
    explicit GrowingPrimitive(const boost::shared_ptr<Mesh>& mesh)
        : TriangleMeshPrimitive(mesh, {StreamMapping(VERTEX, {}, 0)}), target(*mesh) {}

    core::utils::Vector<float, 3> getBVMin() override {
        return grow(), MeshPrimitiveBase::getBVMin();
    }
    core::utils::Vector<float, 3> getBVMax() override {
        return grow(), MeshPrimitiveBase::getBVMax();
    }
    Vector3f getBVCenter() override { return grow(), MeshPrimitiveBase::getBVCenter(); }
    void grow() {
        if (target.getPrimitiveCount() > 100) return;
        const auto far = target.getPrimitiveCount() % 2 == 0 ? 9.0f : -9.0f;
        const auto added = boost::make_shared<TriangleMeshPrimitive>(
            boost::make_shared<Mesh>("far", ""), std::vector<StreamMapping>());
        added->addTriangle(makeTriangle({far, far, far}, {far, far, far}, {far, far, far}), true);
        target.addPrimitive(added);
    }
    Mesh& target;
};

TEST_F(MeshTest, PrimitivesAddedWhileTheBoxIsMeasuredStayOutside) {
    for (int i = 0; i < 3; ++i) {
        const auto primitive = boost::make_shared<GrowingPrimitive>(mesh);
        primitive->addTriangle(makeRightTriangle(), true);
        mesh->addPrimitive(primitive);
    }
    EXPECT_EQ(mesh->getBVMax(), Vector3f(1, 1, 0));
    EXPECT_EQ(mesh->getBVMin(), Vector3f(0, 0, 0));
    EXPECT_EQ(mesh->getBVCenter(), Vector3f(1.5f, 1.5f, 0));
    EXPECT_EQ(mesh->getPrimitiveCount(), 12u);
}

TEST_F(MeshTest, PositionsThatWereNotCountedAreNotMeasured) {
    mesh = makeMesh({1, 2, 3, 4, 5, 6});
    mesh->getStream("positions")->count = 0;
    EXPECT_EQ(mesh->getBVMax(), Vector3f(0, 0, 0));
}

TEST_F(MeshTest, PositionsWithAFourthComponentRaiseAnError) {
    mesh->addVerticesMapping(StreamMapping(POSITION, makeStream("p", 4, {1, 2, 3, 4}), 0));
    for (int i = 0; i < 2; ++i) {
        try {
            mesh->getBVMin();
            FAIL() << "no error";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
        }
    }
}

/// The box rules as they are defined, on the tuples that are sampled.
std::pair<Vector3f, Vector3f> sampledBox(const Stream& stream) {
    std::size_t step = stream.values.size() / 100000;
    if (step < 2) step = 1;
    Vector3f lowest = Vector3f::Zero(), highest = Vector3f::Zero();
    bool isFirst = true;
    for (std::size_t t = 0; t < static_cast<std::size_t>(stream.count); t += step) {
        for (int axis = 0; axis < 3; ++axis) {
            const float sample = axis < stream.stride
                                     ? stream.values[t * static_cast<std::size_t>(stream.stride) +
                                                     static_cast<std::size_t>(axis)]
                                     : 0;
            if (isFirst || !(sample > lowest[axis])) lowest[axis] = sample;
            if (isFirst || !(highest[axis] > sample)) highest[axis] = sample;
        }
        isFirst = false;
    }
    return {lowest, highest};
}

Floats toFloats(const Vector3f& vector) { return {vector[0], vector[1], vector[2]}; }

TEST_F(MeshTest, TheSampledBoxFollowsTheRulesAtEverySize) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    // Floats, stride, and what stands at some places among ordinary values.
    const std::vector<std::tuple<std::size_t, int, float>> cases = {
        {3, 3, 5.0f},    {300, 3, -5.0f},    {3000, 3, nan},     {3000, 3, -0.0f},
        {3000, 2, 0.0f}, {199998, 3, -5.0f}, {300000, 3, -5.0f}, {299997, 3, nan}};
    unsigned int state = 1;
    for (std::size_t test = 0; test < 3 * cases.size(); ++test) {
        const auto [count, stride, special] = cases[test / 3];
        SCOPED_TRACE(std::to_string(count) + " floats, test " + std::to_string(test));
        Floats values;
        while (values.size() < count) {
            state = state * 1664525u + 1013904223u;
            const bool isSpecial = (state >> 8) % 97 == 0;
            values.push_back(isSpecial ? special : static_cast<float>(state >> 12) + 1.0f);
        }
        const auto stream = makeStream("p", stride, values);
        Mesh measured("m", "");
        measured.addVerticesMapping(StreamMapping(POSITION, stream, 0));
        const auto [lowest, highest] = sampledBox(*stream);
        EXPECT_TRUE(haveSameBytes(toFloats(measured.getBVMin()), toFloats(lowest)));
        EXPECT_TRUE(haveSameBytes(toFloats(measured.getBVMax()), toFloats(highest)));
    }
}

TEST_F(MeshTest, ACloneHasClonedStreamsButTheSourcesMappings) {
    const auto stream = makeStream("p", 3, {1, 2, 3});
    mesh->addStream(stream);
    mesh->addStream({});
    mesh->addVerticesMapping(StreamMapping(POSITION, stream, 0));
    mesh->setID("other");
    EXPECT_EQ(mesh->getVerticesID(), "m_vertices") << "fixed at construction";
    mesh->setVerticesID("changed");
    mesh->setType(IGeometry::SPLINE);
    const auto primitive = addPrimitive(mesh);
    primitive->setMaterialSymbol("red");

    const auto clone = boost::dynamic_pointer_cast<Mesh>(mesh->clone());
    EXPECT_EQ(clone->getVerticesID(), "other_vertices");
    EXPECT_EQ(clone->getType(), IGeometry::MESH);
    ASSERT_EQ(clone->getStreams().size(), 2u);
    EXPECT_NE(clone->getStream("p"), stream);
    EXPECT_EQ(clone->getStream("p")->values, stream->values);
    EXPECT_EQ(clone->getVertices()[0].stream, stream);
    ASSERT_EQ(clone->getPrimitiveCount(), 1u);
    EXPECT_NE(clone->getPrimitive(0), primitive);
    EXPECT_EQ(clone->getPrimitive(0)->getMaterialSymbol(), "vantorix_material");
}

struct MeshOwnership : MeshTest {
    boost::weak_ptr<Mesh> watched = mesh;
};

TEST_F(MeshOwnership, APrimitiveKeepsItsMeshUntilItIsAdded) {
    auto primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    mesh.reset();
    EXPECT_TRUE(primitive->addTriangle(makeRightTriangle(), true));
    watched.lock()->addPrimitive(primitive);
    EXPECT_TRUE(watched.expired());
}

TEST_F(MeshOwnership, APrimitiveOfAnotherMeshKeepsThatOne) {
    const auto primitive =
        boost::make_shared<TriangleMeshPrimitive>(mesh, std::vector<StreamMapping>());
    Mesh other("on", "the stack");
    other.addPrimitive(primitive);
    mesh.reset();
    EXPECT_FALSE(watched.expired());
}

TEST_F(MeshOwnership, APrimitiveThatOutlivesItsMeshAnswersNeutrally) {
    const auto primitive = addPrimitive(mesh);
    primitive->addTriangle(makeRightTriangle(), true);
    mesh.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(primitive->getCount(), 1u);
    EXPECT_EQ(primitive->getTriangleAt(0)->getVertexAt(0)->getElementCount(), 0u);
    EXPECT_FALSE(primitive->addTriangle(makeRightTriangle(), true));
    EXPECT_EQ(primitive->getIndexStream().size(), 3u);
    const auto bare = boost::make_shared<Vertex>();
    EXPECT_TRUE(primitive->addTriangle(boost::make_shared<Triangle>(bare, bare, bare), true));
    EXPECT_EQ(primitive->getIndexStream().size(), 6u);
    primitive->recalculateVertexNormals();
    EXPECT_TRUE(primitive->clone({}));
}

}  // namespace
}  // namespace vantorix::scene
