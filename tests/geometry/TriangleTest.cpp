#include <random>

#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/spatial/Ray.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

boost::shared_ptr<Ray> makeRay(const Vector3f& origin, const Vector3f& direction) {
    return boost::make_shared<Ray>(origin, direction);
}

TEST(Triangle, TheFaceNormalIsAsLongAsTheSineOfTheFirstAngle) {
    EXPECT_EQ(makeRightTriangle()->getFaceNormal(), Vector3f(0, 0, 1));
    EXPECT_EQ(makeTriangle({0, 0, 0}, {49, 0, 0}, {0, 41, 0})->getFaceNormal(), Vector3f(0, 0, 1));
    const auto half = makeTriangle({0, 0, 0}, {1, 0, 0}, {1, 1, 0})->getFaceNormal();
    EXPECT_TRUE(half.isApprox(Vector3f(0, 0, 0.7071068f)));
}

TEST(Triangle, TheWholeParallelogramIsHit) {
    const auto triangle = makeTriangle({0, 0, 0}, {2, 0, 0}, {0, 2, 0});
    struct Case {
        const char* name;
        Vector3f origin, direction;
        bool isHit;
    };
    const std::vector<Case> cases = {
        {"inside", {0.5f, 0.5f, 1}, {0, 0, -1}, true},
        {"beyond the diagonal", {1.8f, 1.8f, 1}, {0, 0, -1}, true},
        {"the far corner", {2, 2, 1}, {0, 0, -1}, true},
        {"behind the origin", {0.5f, 0.5f, 1}, {0, 0, 1}, true},
        {"from the back", {0.5f, 0.5f, -1}, {0, 0, 1}, true},
        {"past edge 1", {0.5f, -0.01f, 1}, {0, 0, -1}, false},
        {"past edge 2", {-0.01f, 0.5f, 1}, {0, 0, -1}, false},
        {"past the parallelogram", {2.01f, 0.5f, 1}, {0, 0, -1}, false},
        {"parallel", {0, 0, 1}, {1, 1, 0}, false},
        {"in the plane", {0, 0, 0}, {1, 1, 0}, false},
        {"no direction", {0.5f, 0.5f, 1}, {0, 0, 0}, false},
    };
    for (const auto& [name, origin, direction, isHit] : cases) {
        EXPECT_EQ(triangle->intersects(makeRay(origin, direction)), isHit) << name;
    }
    EXPECT_FALSE(triangle->intersects(boost::shared_ptr<Ray>()));
}

TEST(Triangle, CoincidentPositionsAreNudgedAndNeverHit) {
    const auto point = makeTriangle({1, 1, 1}, {1, 1, 1}, {1, 1, 1});
    EXPECT_EQ(point->getFaceNormal(), Vector3f(0, 0, 0));
    EXPECT_FALSE(point->intersects(makeRay({1, 1, 5}, {0, 0, -1})));
    // Only the zero edge is moved: with edges (0.001, 0, 0) and (0, 1, 0) there is a normal.
    EXPECT_EQ(makeTriangle({0, 0, 0}, {0, 0, 0}, {0, 1, 0})->getFaceNormal(), Vector3f(0, 0, 1));
}

TEST(Triangle, OverlapsBoxesUpToItsPlane) {
    const auto triangle = makeTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    struct Case {
        const char* name;
        Vector3f minimum, maximum;
        bool overlaps;
    };
    const std::vector<Case> cases = {
        {"around everything", {-1, -1, -1}, {5, 5, 5}, true},
        {"around a corner", {-1, -1, -1}, {1, 1, 1}, true},
        {"inside the face", {1, 1, -0.1f}, {1.1f, 1.1f, 0.1f}, true},
        {"touching", {4, 0, 0}, {5, 1, 1}, true},
        {"beside it", {4.1f, 0, -1}, {5, 1, 1}, false},
        {"beyond the long edge", {3, 3, -1}, {4, 4, 1}, false},
        {"above it", {1, 1, 0.1f}, {2, 2, 1}, false},
        {"below it", {1, 1, -1}, {2, 2, -0.1f}, false},
    };
    for (const auto& [name, minimum, maximum, overlaps] : cases) {
        EXPECT_EQ(triangle->intersects(minimum, maximum), overlaps) << name;
    }
}

TEST(Triangle, ABoxBehindATiltedTriangleOverlapsAndOneInFrontDoesNot) {
    const Vector3f a(4, 0, 0), b(0, 4, 0), c(0, 0, 4);  // The normal points away from (0, 0, 0).
    const Vector3f behind(0, 0, 0), before(3, 3, 3);
    const Vector3f size = Vector3f::Constant(0.5f);
    EXPECT_TRUE(makeTriangle(a, b, c)->intersects(behind, behind + size));
    EXPECT_FALSE(makeTriangle(c, b, a)->intersects(behind, behind + size));
    EXPECT_FALSE(makeTriangle(a, b, c)->intersects(before, before + size));
}

TEST(Triangle, OverlapsEveryBoxThatHoldsOneOfItsPoints) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> coordinate(-1, 1), share(0, 1);
    const auto point = [&] {
        return Vector3f(coordinate(random), coordinate(random), coordinate(random));
    };
    for (int i = 0; i < 2000; ++i) {
        const Vector3f a = point(), b = point(), c = point();
        const float u = share(random), v = share(random) * (1 - u);
        const Vector3f inside = a + (b - a) * u + (c - a) * v;
        const Vector3f half = point().cwiseAbs() * 0.3f + Vector3f::Constant(1e-3f);
        ASSERT_TRUE(makeTriangle(a, b, c)->intersects(inside - half, inside + half)) << i;
    }
}

TEST(Triangle, ATransformMovesTheSharedVertices) {
    const auto shared = makeVertex({1, 0, 0});
    Triangle triangle(makeVertex({0, 0, 0}), shared, makeVertex({0, 1, 0}));
    const Triangle copy = triangle;
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix(0, 0) = 2;
    matrix(2, 3) = 5;
    matrix(3, 3) = 4;  // Not divided by.
    triangle.applyTransform(matrix);
    EXPECT_EQ(shared->getPositionVector(), Vector3f(2, 0, 5));
    EXPECT_EQ(copy.getVertexAt(1), shared);
    EXPECT_TRUE(triangle.intersects(makeRay({1.9f, 0.1f, 9}, {0, 0, -1})));
    EXPECT_FALSE(Triangle(copy).intersects(Vector3f(-1, -1, 4), Vector3f(1, 1, 6)))
        << "the cache of a copy is its own";
}

TEST(Triangle, MissingVerticesAndPositionsCountAsTheOrigin) {
    Triangle triangle({}, boost::make_shared<Vertex>(), makeVertex({0, 1, 0}));
    EXPECT_FALSE(triangle.getVertexAt(0));
    EXPECT_EQ(triangle.getFaceNormal(), Vector3f(0, 0, 1));
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Identity();
    matrix(0, 3) = 1;
    triangle.applyTransform(matrix);
    EXPECT_EQ(triangle.getVertexAt(1)->getPositionVector(), Vector3f(1, 0, 0));
    EXPECT_EQ(outputOf([&] { triangle.print(); }),
              "Triangle:\n Vertex 1:  Vertex 2: 1, 0, 0 Vertex 3: 1, 1, 0");
}

/// A triangle as it comes out of a mesh, whose vertices are made when they are asked for.
struct ReadTriangle : QuietTest {
    boost::shared_ptr<Mesh> mesh = boost::make_shared<Mesh>("m", "");
    TriangleMeshPrimitive primitive{mesh, {}};

    boost::shared_ptr<Triangle> read() {
        primitive.addTriangle(boost::make_shared<Triangle>(makeVertex({0, 0, 0}, {0, 0, 1}),
                                                           makeVertex({1, 0, 0}, {0, 1, 0}),
                                                           makeVertex({0, 1, 0}, {1, 0, 0})),
                              true);
        return primitive.getTriangleAt(0);
    }
};

TEST_F(ReadTriangle, HandsOutTheSameVerticesEachTime) {
    const auto triangle = read();
    const auto vertex = triangle->getVertexAt(1);
    EXPECT_EQ(triangle->getVertexArray()[1], vertex);
    EXPECT_EQ(vertex->getPositionVector(), Vector3f(1, 0, 0));
    EXPECT_EQ(floatsOf(vertex->getNormal()), (Floats{0, 1, 0}));
    EXPECT_NE(primitive.getTriangleAt(0)->getVertexAt(1), vertex);
}

TEST_F(ReadTriangle, TransformsAlikeBeforeAndAfterItsVerticesWereRead) {
    const auto fresh = read();
    const auto touched = read();
    touched->getVertexArray();
    Eigen::Matrix4f matrix = Eigen::Matrix4f::Random();
    fresh->applyTransform(matrix);
    touched->applyTransform(matrix);
    EXPECT_EQ(contentsOf(*fresh), contentsOf(*touched));
    EXPECT_EQ(fresh->getFaceNormal(), touched->getFaceNormal());
}

TEST_F(ReadTriangle, KeepsItsValuesWhenTheMeshChanges) {
    const auto triangle = read();
    mesh->getStream("position_stream")->values.clear();
    EXPECT_EQ(triangle->getVertexAt(1)->getPositionVector(), Vector3f(1, 0, 0));
}

TEST_F(ReadTriangle, PartsOutliveTheTriangle) {
    auto triangle = read();
    const Triangle copy = *triangle;
    const auto vertex = triangle->getVertexAt(2);
    const auto element = triangle->getVertexAt(1)->getPosition();
    triangle.reset();
    EXPECT_EQ(vertex->getPositionVector(), Vector3f(0, 1, 0));
    EXPECT_EQ(floatsOf(element), (Floats{1, 0, 0}));
    EXPECT_EQ(copy.getVertexAt(2), vertex);
}

TEST_F(ReadTriangle, CanBeAssignedTo) {
    const auto triangle = read();
    const auto other = makeTriangle({5, 5, 5}, {6, 5, 5}, {5, 6, 5});
    *triangle = *other;
    EXPECT_EQ(triangle->getVertexAt(0), other->getVertexAt(0));
    *other = *read();
    EXPECT_EQ(other->getVertexAt(0)->getPositionVector(), Vector3f(0, 0, 0));
}

TEST_F(ReadTriangle, ManyThreadsMayReadOne) {
    for (int round = 0; round < 200; ++round) {
        const auto triangle = read();
        boost::shared_ptr<VertexElement> seen[4];
        boost::barrier gate(4);
        boost::thread_group threads;
        for (auto& position : seen) {
            threads.create_thread([&] {
                gate.wait();
                position = triangle->getVertexAt(0)->getPosition();
            });
        }
        threads.join_all();
        ASSERT_TRUE(seen[0]);
        for (const auto& position : seen) ASSERT_EQ(position, seen[0]);
        ASSERT_EQ(triangle->getVertexAt(0)->getElementCount(), 2u);
    }
}

}  // namespace
}  // namespace vantorix::scene
