#include "scene/geometry/Polygon.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/Vertex.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"
#include "tests/spatial/SpatialSupport.h"

namespace vantorix::scene {
namespace {

using Eigen::Vector3f;
using test::quietly;
using Faces = std::vector<boost::shared_ptr<IPrimitive>>;

/// A subclass that shows what is gathered.
struct OpenOctree : Octree {
    using Octree::assembleScenePrimitives;
};

struct OpenNode : OctreeNode {
    using OctreeNode::getDepth;
    using OctreeNode::OctreeNode;
};

boost::shared_ptr<Triangle> triangleAt(const Vector3f& at, float size = 0.1f) {
    const auto corner = [](const Vector3f& position) {
        const auto vertex = boost::make_shared<Vertex>();
        vertex->setPosition(position.x(), position.y(), position.z());
        return vertex;
    };
    return boost::make_shared<Triangle>(corner(at), corner(at + Vector3f(size, 0, 0)),
                                        corner(at + Vector3f(0, size, 0)));
}

std::vector<Vector3f> cornersOf(IPrimitive& face) {
    std::vector<Vector3f> corners;
    for (const auto& vertex : face.getVertexArray()) corners.push_back(vertex->getPositionVector());
    return corners;
}

// Against a model that recurses, and asks every face about every child.

struct ModelNode {
    Vector3f minimum, maximum;
    Faces faces;
    std::vector<ModelNode> children;

    void calculate(int depth, int maxDepth, int maxPrimitives, const Faces& all) {
        const auto limit = static_cast<std::uint64_t>(static_cast<std::int64_t>(maxPrimitives));
        if (faces.size() + all.size() <= limit || depth > maxDepth) {
            faces.insert(faces.end(), all.begin(), all.end());
            return;
        }
        const Vector3f middle = (minimum + maximum) * 0.5f;
        for (int child = 0; child < 8; ++child) {
            const bool isUpper[] = {(child & 1) != 0, (child & 4) != 0, (child & 2) != 0};
            ModelNode node{minimum, middle, {}, {}};
            for (int axis = 0; axis < 3; ++axis) {
                if (!isUpper[axis]) continue;
                node.minimum[axis] = middle[axis];
                node.maximum[axis] = maximum[axis];
            }
            children.push_back(node);
        }
        std::vector<Faces> lists(8);
        for (const auto& face : all) {
            for (std::size_t child = 0; child < 8; ++child) {
                if (face->intersects(children[child].minimum, children[child].maximum)) {
                    lists[child].push_back(face);
                }
            }
        }
        for (std::size_t child = 0; child < 8; ++child) {
            children[child].calculate(depth + 1, maxDepth, maxPrimitives, lists[child]);
        }
    }
};

void expectSame(const OctreeNode& node, const ModelNode& model, std::size_t& leaves) {
    EXPECT_EQ(node.getBVMin(), model.minimum);
    EXPECT_EQ(node.getBVMax(), model.maximum);
    EXPECT_EQ(node.getPrimitives(), model.faces);
    EXPECT_EQ(node.getChildAt(0) != nullptr, !model.children.empty());
    EXPECT_FALSE(node.getChildAt(8));
    leaves += model.children.empty();
    for (std::size_t child = 0; child < model.children.size(); ++child) {
        const auto* const below = node.getChildAt(static_cast<unsigned int>(child));
        ASSERT_TRUE(below);
        EXPECT_EQ(below->getParent(), &node);
        expectSame(*below, model.children[child], leaves);
    }
}

/// What gathering finds, by recursion.
void gather(const boost::shared_ptr<Node>& node,
            std::vector<std::pair<boost::shared_ptr<IGeometry>, Faces>>& found) {
    for (unsigned int i = 0; i < node->getInstanceGeometryCount(); ++i) {
        const auto mesh =
            boost::dynamic_pointer_cast<Mesh>(node->getInstanceGeometry(i)->getGeometry());
        Faces faces;
        for (unsigned int k = 0; k < mesh->getPrimitiveCount(); ++k) {
            for (const auto& face : mesh->getPrimitive(k)->getPrimitives()) {
                face->applyTransform(node->getCombinedTransformations());
                faces.push_back(face);
            }
        }
        found.emplace_back(mesh, faces);
    }
    for (unsigned int i = 0; i < node->getChildCount(); ++i) gather(node->getChildNode(i), found);
}

struct OctreeModel : ::testing::TestWithParam<unsigned int> {
    test::RecordedScene scene;
};

TEST_P(OctreeModel, GathersInTheSameOrderAndFillsTheSameLeaves) {
    test::RandomScene(GetParam()).fill(scene, 30);
    Octree octree;
    std::vector<std::pair<boost::shared_ptr<IGeometry>, Faces>> expected;
    quietly([&] {
        octree.setSceneNode(scene->getRoot());
        gather(scene->getRoot(), expected);
    });

    const auto& gathered = octree.getGeometryPrimitives();
    ASSERT_EQ(gathered.size(), expected.size());
    Faces all;
    for (std::size_t i = 0; i < gathered.size(); ++i) {
        EXPECT_EQ(gathered[i].first, expected[i].first);
        ASSERT_EQ(gathered[i].second.size(), expected[i].second.size());
        for (std::size_t k = 0; k < gathered[i].second.size(); ++k) {
            const auto& face = gathered[i].second[k];
            if (dynamic_cast<Triangle*>(face.get())) {
                EXPECT_EQ(cornersOf(*face), cornersOf(*expected[i].second[k]));
            }
            all.push_back(face);
        }
    }
    const int limits[][2] = {{3, 4}, {5, 1}, {0, 10}, {2, 0}, {-1, 1}, {4, -1}};
    for (const auto& [maxDepth, maxPrimitives] : limits) {
        ModelNode model{scene->getRoot()->getBVMin(), scene->getRoot()->getBVMax(), {}, {}};
        const int depth = maxDepth;
        const int faces = maxPrimitives;
        quietly([&] {
            octree.calculate(depth, faces);
            model.calculate(0, depth, faces, all);
        });
        std::size_t leaves = 0;
        expectSame(*octree.getRoot(), model, leaves);
        EXPECT_TRUE(maxDepth < 5 || leaves > 100);
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, OctreeModel, ::testing::Range(0u, 10u));

struct OctreeTest : ::testing::Test {
    test::RecordedScene scene;
    boost::shared_ptr<Mesh> square =
        test::makePositions("square", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    OctreeTest() { test::addTriangles(square, {0, 1, 2, 0, 2, 3}); }
};

TEST_F(OctreeTest, WithoutASceneNodeThereIsNoTree) {
    Octree octree;
    const auto ray = boost::make_shared<Ray>(Vector3f(0, 0, 1), Vector3f(0, 0, -1));
    octree.calculate(4, 1);
    EXPECT_FALSE(octree.getRoot());
    EXPECT_FALSE(octree.intersectRay(ray));
    octree.setSceneNode({});
    octree.calculate(4, 1);
    EXPECT_FALSE(octree.getRoot());
}

TEST_F(OctreeTest, TheRayQueryOfTheTreeAlwaysAnswersFalse) {
    test::place(square, *scene->getRoot());
    Octree octree;
    octree.setSceneNode(scene->getRoot());
    octree.calculate(4, 1);
    const auto ray = boost::make_shared<Ray>(Vector3f(0.7f, 0.2f, 1), Vector3f(0, 0, -1));
    EXPECT_FALSE(octree.intersectRay(ray));
    EXPECT_FALSE(octree.intersectRay({}));
    EXPECT_TRUE(octree.pick(*ray));
}

TEST_F(OctreeTest, GatheringAgainKeepsTheEarlierEntries) {
    test::place(square, *scene->getRoot());
    OpenOctree octree;
    octree.setSceneNode(scene->getRoot());
    octree.calculate(0, 100);
    EXPECT_EQ(octree.getRoot()->getPrimitives().size(), 2u);
    EXPECT_EQ(octree.getRoot()->getChildAt(0), nullptr);

    octree.setSceneNode(scene->getRoot());
    octree.calculate(0, 100);
    EXPECT_EQ(octree.getGeometryPrimitives().size(), 2u);
    EXPECT_EQ(octree.getRoot()->getPrimitives().size(), 2u);

    octree.assembleScenePrimitives(scene->getRoot());
    octree.calculate(0, 100);
    EXPECT_EQ(octree.getRoot()->getPrimitives().size(), 4u);
    EXPECT_EQ(octree.getGeometryPrimitives().size(), 3u);
}

TEST_F(OctreeTest, GeometriesThatAreNoMeshesAreSkipped) {
    test::place(square, *scene->getRoot());
    square->setType(IGeometry::SPLINE);
    Octree octree;
    octree.setSceneNode(scene->getRoot());
    EXPECT_TRUE(octree.getGeometryPrimitives().empty());
}

TEST_F(OctreeTest, APolygonStaysOnlyWhereNothingIsSplit) {
    test::addPolygons(square, {0, 1, 2, 3}, {4, 0});
    test::place(square, *scene->getRoot());
    Octree octree;
    ::testing::internal::CaptureStdout();
    octree.setSceneNode(scene->getRoot());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Polygon::applyTransform() not implemented yet!\n");
    octree.calculate(3, 3);
    EXPECT_EQ(octree.getRoot()->getPrimitives().size(), 3u);
    ::testing::internal::CaptureStdout();
    octree.calculate(0, 1);
    std::string eightLines;
    for (int i = 0; i < 8; ++i) eightLines += "Polygon::intersects() not implemented yet!\n";
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), eightLines);
}

TEST_F(OctreeTest, NodesLiveAsLongAsTheTreeOrACopyOfIt) {
    test::place(square, *scene->getRoot());
    auto octree = std::make_unique<Octree>();
    octree->setSceneNode(scene->getRoot());
    octree->calculate(2, 0);
    const Octree copy = *octree;
    OctreeNode nodeCopy = *octree->getRoot();
    octree->calculate(0, 0);
    EXPECT_NE(octree->getRoot(), copy.getRoot());
    octree.reset();
    EXPECT_EQ(copy.getRoot()->getChildAt(0)->getChildAt(7)->getParent()->getParent(),
              copy.getRoot());
    EXPECT_EQ(nodeCopy.getChildAt(3), copy.getRoot()->getChildAt(3));
    EXPECT_TRUE(copy.pick(Ray(Vector3f(0.7f, 0.2f, 1), Vector3f(0, 0, -1))));

    // A leaf of the tree that is split later: the tree owns what comes below it.
    Faces more = {triangleAt({0, 0, 0}), triangleAt({0.1f, 0, 0})};
    auto* leaf = copy.getRoot();
    while (leaf->getChildAt(0)) leaf = leaf->getChildAt(0);
    leaf->calculate(3, 0, more);
    EXPECT_TRUE(leaf->getChildAt(0));
}

TEST_F(OctreeTest, ANodeOfItsOwnLeavesItsChildrenToTheCaller) {
    OpenNode root(nullptr, Vector3f(0, 0, 0), Vector3f(2, 2, 2));
    Faces faces = {triangleAt({0.5f, 0.5f, 0.5f}), triangleAt({0.95f, 0.5f, 1.5f})};
    root.calculate(0, 1, faces);
    EXPECT_EQ(root.getChildAt(2)->getBVMin(), Vector3f(0, 0, 1));
    EXPECT_EQ(root.getChildAt(2)->getBVMax(), Vector3f(1, 1, 2));
    EXPECT_EQ(root.getChildAt(0)->getPrimitives(), Faces{faces[0]});
    // The second one straddles the middle of x.
    EXPECT_EQ(root.getChildAt(2)->getPrimitives(), Faces{faces[1]});
    EXPECT_EQ(root.getChildAt(3)->getPrimitives(), Faces{faces[1]});
    EXPECT_TRUE(root.getPrimitives().empty());

    // Sorted in again, faces join those that are there: the children stay.
    auto* const child = root.getChildAt(0);
    root.calculate(0, 1, faces);
    EXPECT_EQ(root.getChildAt(0), child);
    EXPECT_EQ(child->getPrimitives(), (Faces{faces[0], faces[0]}));
    const OpenNode grandchild(child, Vector3f::Zero(), Vector3f::Ones());
    EXPECT_EQ(grandchild.getDepth(), 2);
    for (unsigned int i = 0; i < 8; ++i) delete root.getChildAt(i);
}

TEST_F(OctreeTest, BoxesTooSmallToHalveEnd) {
    OctreeNode point(nullptr, Vector3f(1, 1, 1), Vector3f(1, 1, std::nextafter(1.0f, 2.0f)));
    Faces faces = {triangleAt({1, 1, 1}), triangleAt({1, 1, 1})};
    point.calculate(std::numeric_limits<int>::max(), 1, faces);
    EXPECT_EQ(point.getPrimitives().size(), 2u);
    // Boxes without a middle hold nothing: their children lose every face.
    const float endless = std::numeric_limits<float>::infinity();
    OctreeNode space(nullptr, Vector3f::Constant(-endless), Vector3f::Constant(endless));
    space.calculate(std::numeric_limits<int>::max(), 1, faces);
    for (unsigned int i = 0; i < 8; ++i) {
        EXPECT_TRUE(space.getChildAt(i)->getPrimitives().empty());
        delete space.getChildAt(i);
    }
}

}  // namespace
}  // namespace vantorix::scene
