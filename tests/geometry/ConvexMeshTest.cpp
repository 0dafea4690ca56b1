#include "scene/geometry/ConvexMesh.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;

struct ConvexMeshTest : QuietTest {
    boost::shared_ptr<ConvexMesh> convex = makeConvex(1);

    /// Its own box ends at @p size on each axis.
    static boost::shared_ptr<ConvexMesh> makeConvex(float size) {
        const auto mesh = boost::make_shared<ConvexMesh>("c", "convex");
        mesh->setVertices(makeMesh({0, 0, 0, size, size, size})->getVertices());
        return mesh;
    }
};

TEST_F(ConvexMeshTest, HasTheBoundsOfItsHullsSource) {
    EXPECT_EQ(convex->getType(), IGeometry::CONVEX_MESH);
    EXPECT_EQ(convex->getBVMax(), Vector3f(1, 1, 1));
    const auto hull = makeMesh({2, 2, 2, 4, 4, 4});
    convex->setConvexHullOf(hull);
    convex->setConvexHullOf({});
    EXPECT_EQ(convex->getConvexHullOf(), hull);
    EXPECT_EQ(convex->getBVMin(), Vector3f(2, 2, 2));
    EXPECT_EQ(convex->getBVMax(), Vector3f(4, 4, 4));
    EXPECT_EQ(convex->getBVCenter(), Vector3f(3, 3, 3));
}

TEST_F(ConvexMeshTest, ACloneIsConvexAndSharesTheHull) {
    const auto hull = makeMesh({2, 2, 2});
    convex->setConvexHullOf(hull);
    convex->addStream(makeStream("s", 1, {5}));
    const auto clone = boost::dynamic_pointer_cast<ConvexMesh>(convex->clone());
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->getType(), IGeometry::CONVEX_MESH);
    EXPECT_EQ(clone->getConvexHullOf(), hull);
    EXPECT_EQ(clone->getStream("s")->values, Floats{5});
}

TEST_F(ConvexMeshTest, IsNeverItsOwnHull) {
    convex->setConvexHullOf(convex);
    EXPECT_EQ(convex->getBVMax(), Vector3f(1, 1, 1));

    const auto second = makeConvex(2);
    const auto third = makeConvex(3);
    convex->setConvexHullOf(second);
    second->setConvexHullOf(third);
    third->setConvexHullOf(convex);
    EXPECT_EQ(convex->getBVMax(), Vector3f(3, 3, 3));
    EXPECT_EQ(third->getBVMax(), Vector3f(3, 3, 3));

    *third = *convex;  // Would bring the hull in by assignment.
    EXPECT_FALSE(third->getConvexHullOf());
}

TEST_F(ConvexMeshTest, AVeryLongChainIsFollowedAndReleased) {
    auto last = convex;
    for (int i = 0; i < 200000; ++i) {
        const auto next = boost::make_shared<ConvexMesh>("", "");
        next->setConvexHullOf(last);
        last = next;
    }
    convex.reset();
    EXPECT_EQ(last->getBVMax(), Vector3f(1, 1, 1));
}

}  // namespace
}  // namespace vantorix::scene
