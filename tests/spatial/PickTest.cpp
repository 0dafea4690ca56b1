#include "scene/geometry/IPrimitive.h"
#include "scene/geometry/Polygon.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"
#include "tests/spatial/SpatialSupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3d;
using Eigen::Vector3f;
using test::quietly;

struct WorldTriangle {
    std::array<Vector3f, 3> corners;
    boost::shared_ptr<Node> node;
    unsigned int primitive, face;
};

/// Reads all faces from the streams, polygons as fans.
void collect(const boost::shared_ptr<Node>& node, std::vector<WorldTriangle>& found) {
    const Eigen::Matrix4f world = node->getCombinedTransformations();
    for (unsigned int i = 0; i < node->getInstanceGeometryCount(); ++i) {
        const auto mesh =
            boost::dynamic_pointer_cast<Mesh>(node->getInstanceGeometry(i)->getGeometry());
        const auto& values = std::as_const(mesh->getVertices()[0].stream->values);
        const auto at = [&](unsigned int index) {
            const Vector3f position(values[3 * index], values[3 * index + 1],
                                    values[3 * index + 2]);
            return Vector3f((world * position.homogeneous()).head<3>());
        };
        const auto& triangles = mesh->getPrimitive(0)->getIndexStream();
        for (unsigned int k = 0; k + 2 < triangles.size(); k += 3) {
            found.push_back(
                {{at(triangles[k]), at(triangles[k + 1]), at(triangles[k + 2])}, node, 0, k / 3});
        }
        if (mesh->getPrimitiveCount() == 1) continue;
        const auto& corners = mesh->getPrimitive(1)->getIndexStream();
        // Of the polygons of the random scenes: four corners, two, and three of which two exist.
        found.push_back({{at(corners[0]), at(corners[1]), at(corners[2])}, node, 1, 0});
        found.push_back({{at(corners[0]), at(corners[2]), at(corners[3])}, node, 1, 0});
        found.push_back({{at(corners[1]), at(corners[2]), at(corners[3])}, node, 1, 2});
    }
    for (unsigned int i = 0; i < node->getChildCount(); ++i) collect(node->getChildNode(i), found);
}

/// The solution of origin + t d = a + u (b - a) + v (c - a), in doubles; how far inside the
/// triangle it lies is the smallest of the barycentric coordinates.
struct ExactHit {
    double t, inside;
};
ExactHit solve(const WorldTriangle& triangle, const Ray& ray) {
    const Vector3d a = triangle.corners[0].cast<double>();
    Eigen::Matrix3d system;
    system << triangle.corners[1].cast<double>() - a, triangle.corners[2].cast<double>() - a,
        -ray.getDirection().cast<double>();
    const Vector3d solution =
        system.colPivHouseholderQr().solve(ray.getOrigin().cast<double>() - a);
    const double u = solution[0];
    const double v = solution[1];
    return {solution[2], std::min({u, v, 1 - u - v})};
}

struct PickModel : ::testing::TestWithParam<unsigned int> {
    test::RecordedScene scene;
};

TEST_P(PickModel, FindsWhatASolverFinds) {
    test::RandomScene random(GetParam());
    random.fill(scene, 15);
    std::vector<WorldTriangle> triangles;
    collect(scene->getRoot(), triangles);
    Octree octree;
    quietly([&] {
        octree.setSceneNode(scene->getRoot());
        octree.calculate(4, 8);
    });
    int hits = 0;
    for (int i = 0; i < 400; ++i) {
        // Towards some face, or along a plane of the axes.
        const auto& aim =
            triangles[random.below(static_cast<unsigned int>(triangles.size()))].corners;
        const Vector3f origin = random.vector(12);
        Vector3f direction = (aim[0] + aim[1] + aim[2]) / 3 - origin;
        if (i % 5 == 0) direction[i % 3] = 0;
        const Ray ray(origin, direction);
        double nearest = std::numeric_limits<double>::infinity();
        std::size_t clear = 0;
        for (const auto& triangle : triangles) {
            const auto exact = solve(triangle, ray);
            // Rays that pass an edge this close may be decided either way.
            if (exact.inside < 1e-4 || !(exact.t > 1e-4)) continue;
            nearest = std::min(nearest, exact.t);
            ++clear;
        }
        const auto all = octree.pickAll(ray);
        const auto hit = octree.pick(ray);
        EXPECT_GE(all.size(), clear);
        ASSERT_EQ(hit.has_value(), !all.empty());
        if (!hit) continue;
        ++hits;
        const float length = ray.getDirection().norm();
        EXPECT_EQ(hit->distance, all[0].distance);
        EXPECT_EQ(hit->face, all[0].face);
        EXPECT_LE(hit->distance, nearest * length * (1 + 1e-4));
        EXPECT_TRUE(hit->position.isApprox(
            ray.getOrigin() + ray.getDirection().normalized() * hit->distance, 1e-4f));
        for (std::size_t k = 1; k < all.size(); ++k) {
            EXPECT_LE(all[k - 1].distance, all[k].distance);
        }
        EXPECT_NEAR(hit->barycentric.sum(), 1, 1e-5);
        EXPECT_GE(hit->barycentric.minCoeff(), 0);
        // The hit names where it comes from.
        bool isKnown = false;
        for (const auto& triangle : triangles) {
            if (triangle.node != hit->node || triangle.primitive != hit->primitiveIndex ||
                triangle.face != hit->faceIndex) {
                continue;
            }
            Vector3f place = Vector3f::Zero();
            for (int k = 0; k < 3; ++k) {
                place += hit->barycentric[k] * triangle.corners[static_cast<std::size_t>(k)];
            }
            isKnown |= place.isApprox(hit->position, 1e-3f);
        }
        EXPECT_TRUE(isKnown);
    }
    EXPECT_GT(hits, 300);
}

INSTANTIATE_TEST_SUITE_P(Scenes, PickModel, ::testing::Range(0u, 8u));

struct Picking : ::testing::Test {
    test::RecordedScene scene;
    Octree octree;

    void take(const boost::shared_ptr<Node>& node) {
        quietly([&] {
            octree.setSceneNode(node);
            octree.calculate(3, 2);
        });
    }
    /// A mesh of triangles at the root.
    void take(const std::vector<float>& positions, const std::vector<unsigned int>& indices) {
        const auto mesh = test::makePositions("t", positions);
        test::addTriangles(mesh, indices);
        test::place(mesh, *scene->getRoot());
        take(scene->getRoot());
    }
};

TEST_F(Picking, AClosedSurfaceHasNoGaps) {
    // An octahedron, hit exactly at its edges and corners as well.
    take({1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1},
         {0, 2, 4, 2, 1, 4, 1, 3, 4, 3, 0, 4, 2, 0, 5, 1, 2, 5, 3, 1, 5, 0, 3, 5});
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        Vector3f direction;
        for (int axis = 0; axis < 3; ++axis) {
            direction[axis] = static_cast<float>(static_cast<int>(random() % 7) - 3);
        }
        if (direction.isZero()) continue;
        EXPECT_TRUE(octree.pick(Ray(Vector3f(0, 0, 0), direction)));
        EXPECT_TRUE(octree.pick(Ray(Vector3f(0.1f, 0.07f, -0.03f), direction)));
    }
}

TEST_F(Picking, OnlyWhatLiesInFrontIsHit) {
    const auto mesh = test::makePositions("t", {0, 0, 0, 1, 0, 0, 0, 1, 0, 9, 9, 9});
    test::addTriangles(mesh, {0, 1, 2});
    const auto node = scene.makeNode("node");
    scene->getRoot()->addNode(node);
    node->addTranslation(0, 0, 5);
    const auto instance = test::place(mesh, *node);
    take(scene->getRoot());

    const auto hit = octree.pick(Ray(Vector3f(0.25f, 0.25f, 0), Vector3f(0, 0, 2)));
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->distance, 5);
    EXPECT_EQ(hit->position, Vector3f(0.25f, 0.25f, 5));
    EXPECT_EQ(hit->barycentric, Vector3f(0.5f, 0.25f, 0.25f));
    EXPECT_EQ(hit->node, node);
    EXPECT_EQ(hit->instance, instance);
    EXPECT_EQ(hit->geometry, mesh);
    EXPECT_EQ(hit->face, octree.getRoot()->getPrimitives()[0]);

    EXPECT_FALSE(octree.pick(Ray(Vector3f(0.25f, 0.25f, 0), Vector3f(0, 0, -1))));
    // Inside the parallelogram of the edges, outside the triangle.
    EXPECT_FALSE(octree.pick(Ray(Vector3f(0.9f, 0.9f, 0), Vector3f(0, 0, 1))));
    EXPECT_FALSE(octree.pick(Ray()));
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(octree.pick(Ray(Vector3f(0, 0, notANumber), Vector3f(0, 0, 1))));
    EXPECT_TRUE(octree.pickAll(Ray(Vector3f(0, 0, 0), Vector3f(notANumber, 0, 1))).empty());
}

TEST_F(Picking, TheLengthOfTheDirectionDoesNotMatter) {
    take({0, 0, 5, 1, 0, 5, 0, 1, 5}, {0, 1, 2});
    for (const float length : {1e-30f, 1e-20f, 1.0f, 1e20f, std::numeric_limits<float>::max()}) {
        const auto hit = octree.pick(Ray(Vector3f(0.25f, 0.25f, 0), Vector3f(0, 0, length)));
        ASSERT_TRUE(hit) << length;
        EXPECT_FLOAT_EQ(hit->distance, 5);
        const auto start = octree.pick(Ray(Vector3f(0.25f, 0.25f, 5), Vector3f(0, 0, length)));
        ASSERT_TRUE(start) << length;
        EXPECT_EQ(start->distance, 0);
    }
}

TEST_F(Picking, PolygonsAreHitAsFans) {
    const auto mesh = test::makePositions("p", {0, 0, 0, 2, 0, 0, 2, 2, 0, 1, 3, 0, 0, 2, 0});
    test::addPolygons(mesh, {0, 1, 2, 3, 4}, {5, 0});
    test::place(mesh, *scene->getRoot());
    take(scene->getRoot());
    const auto hit = octree.pick(Ray(Vector3f(1, 2.5f, 1), Vector3f(0, 0, -1)));
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->corners[0], 0u);
    EXPECT_GE(hit->corners[1], 2u);
    EXPECT_EQ(hit->corners[2], hit->corners[1] + 1);
    EXPECT_EQ(hit->faceIndex, 0u);
    EXPECT_FALSE(octree.pick(Ray(Vector3f(1.9f, 2.5f, 1), Vector3f(0, 0, -1))));
}

/// Hands out a square that stands in no stream.
struct Pane : TriangleMeshPrimitive {
    using TriangleMeshPrimitive::TriangleMeshPrimitive;
    std::vector<boost::shared_ptr<IPrimitive>> getPrimitives() override {
        const auto square = boost::make_shared<Polygon>();
        for (const auto& [x, y] : {std::pair(0, 0), {2, 0}, {2, 2}, {0, 2}}) {
            const auto corner = boost::make_shared<Vertex>();
            corner->setPosition(static_cast<float>(x), static_cast<float>(y), 0);
            square->addVertex(corner);
        }
        return {square};
    }
};

TEST_F(Picking, FacesOfOtherPrimitivesAreHitWhereTheirVerticesStand) {
    const auto mesh = test::makePositions("p", {0, 0, 0, 2, 2, 0});
    mesh->addPrimitive(boost::make_shared<Pane>(mesh, std::vector<StreamMapping>()));
    test::place(mesh, *scene->getRoot());
    take(scene->getRoot());
    const auto hit = octree.pick(Ray(Vector3f(0.5f, 1.5f, 1), Vector3f(0, 0, -1)));
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->corners, (std::array<unsigned int, 3>{0, 2, 3}));
    EXPECT_FALSE(octree.pick(Ray(Vector3f(2.5f, 1.5f, 1), Vector3f(0, 0, -1))));
}

TEST_F(Picking, EquallyNearFacesAreHitInOrder) {
    std::vector<unsigned int> indices;
    for (unsigned int i = 0; i < 60; ++i) indices.push_back(i % 3);
    take({0, 0, 0, 1, 0, 0, 0, 1, 0}, indices);
    const Ray ray(Vector3f(0.2f, 0.2f, 1), Vector3f(0, 0, -1));
    EXPECT_EQ(octree.pick(ray)->faceIndex, 0u);
    const auto all = octree.pickAll(ray);
    ASSERT_EQ(all.size(), 20u);
    for (unsigned int i = 0; i < 20; ++i) EXPECT_EQ(all[i].faceIndex, i);
}

TEST_F(Picking, AnOctreeIsASnapshot) {
    take({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    const Ray ray(Vector3f(0.2f, 0.2f, 1), Vector3f(0, 0, -1));
    octree.setSceneNode({});
    EXPECT_TRUE(octree.pick(ray));
    scene->getRoot()->addTranslation(10, 0, 0);
    EXPECT_TRUE(octree.pick(ray));
    take(scene->getRoot());
    EXPECT_FALSE(octree.pick(ray));
}

TEST_F(Picking, ManyThreadsMayCastTheFirstRay) {
    test::RandomScene(5).fill(scene, 20);
    take(scene->getRoot());
    std::vector<boost::thread> threads;
    std::vector<std::size_t> counts(4);
    for (auto& count : counts) {
        threads.emplace_back([this, &count] {
            for (int i = 0; i < 200; ++i) {
                const float x = static_cast<float>(i) / 20 - 5;
                count += octree.pickAll(Ray(Vector3f(x, 0, -50), Vector3f(0, 0.01f, 1))).size();
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(counts, std::vector<std::size_t>(4, counts[0]));
    EXPECT_GT(counts[0], 0u);
}

}  // namespace
}  // namespace vantorix::scene
