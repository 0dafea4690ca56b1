#include <limits>
#include <random>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Stream.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using namespace scene;
using Nodes = std::vector<boost::shared_ptr<Node>>;
using Floats = std::vector<float>;
using RowByRow = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

/// Opens the traversal.
struct JointLister : SceneManager {
    explicit JointLister() : SceneManager(nullptr) {}
    using SceneManager::transverseSceneForJoints;
};

Nodes jointsOf(const boost::shared_ptr<Node>& root) {
    const auto lister = boost::make_shared<JointLister>();
    Nodes joints;
    std::vector<int> parents;
    lister->transverseSceneForJoints(root, joints, parents);
    return joints;
}

Eigen::Vector3f originOf(const Node& node) {
    return node.getCombinedTransformations().topRightCorner<3, 1>();
}

boost::shared_ptr<Stream> makePositions(const Floats& values) {
    const auto stream = boost::make_shared<Stream>("positions", 3, true);
    stream->values = values;
    stream->count = static_cast<int>(values.size() / 3);
    return stream;
}

/// A scene with one mesh of these positions.
boost::shared_ptr<Mesh> addPositions(SceneManager& scene, const std::string& id,
                                     const Floats& values) {
    const auto mesh = boost::make_shared<Mesh>(id, "");
    mesh->setVertices({{POSITION, makePositions(values), 0}});
    scene.getGeometryManager()->addGeometry(mesh);
    return mesh;
}

const Floats& positionsOf(const Mesh& mesh) { return mesh.getVertices().at(0).stream->values; }

/// A scene whose joints "j0", "j1", ... are skinned; they hang in a tree with other nodes.
struct SkinnedScene : RecordedScene {
    boost::shared_ptr<Node> add(Node& parent, const std::string& id, bool isJoint) const {
        const auto node = makeNode(id);
        if (isJoint) node->setType("JOINT");
        parent.addNode(node);
        return node;
    }

    void addSkeleton(std::mt19937& random, bool sameShape = true) const {
        std::uniform_real_distribution<float> number(0.5f, 2.0f);
        std::mt19937 shapes(sameShape ? 5u : random());
        Nodes nodes{manager->getRoot()};
        for (int i = 0; i < 20; ++i) {
            const auto parent = nodes[shapes() % nodes.size()];
            nodes.push_back(add(*parent, "j" + std::to_string(i), shapes() % 4 > 0));
            auto& node = *nodes.back();
            node.setTranslation(Eigen::Translation3f(number(random), -number(random), 1));
            node.rotate(
                Eigen::AngleAxisf(number(random), Eigen::Vector3f::UnitY()).toRotationMatrix());
            node.setScale({number(random), number(random), number(random)});
        }
    }

    /// One controller whose skin names all joints, backwards.
    boost::shared_ptr<Skin> addSkin() const {
        const auto names = boost::make_shared<Stream>("names", 1, true);
        for (const auto& joint : jointsOf(manager->getRoot())) {
            names->stringValues.insert(names->stringValues.begin(), joint->getID());
        }
        const auto binds = boost::make_shared<Stream>("binds", 16, true);
        binds->values.assign(16 * names->stringValues.size(), 7.0f);
        const auto skin = boost::make_shared<Skin>(nullptr);
        skin->setStreams({names, binds});
        skin->setJointsInput("JOINT", "names");
        skin->setJointsInput("INV_BIND_MATRIX", "binds");
        skin->setBindShapeMatrix(Eigen::Matrix4f::Constant(3));
        const auto controller = boost::make_shared<Controller>("controller", "");
        controller->setSkin(skin);
        manager->addController(controller);
        return skin;
    }
};

/// The skin leaves a mesh in its bind pose as it is.
void expectBound(const SkinnedScene& scene, const Skin& skin) {
    EXPECT_EQ(skin.getBindShapeMatrix(), Eigen::Matrix4f::Identity());
    const auto& names = skin.getJointsInput("JOINT")->stringValues;
    const Floats& values = skin.getJointsInput("INV_BIND_MATRIX")->values;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Eigen::Matrix4f world = scene->getNodeByID(names[i])->getCombinedTransformations();
        const Eigen::Map<const RowByRow> inverse(values.data() + 16 * i);
        EXPECT_TRUE((world * inverse).isIdentity(1e-3f)) << names[i] << '\n' << world * inverse;
    }
}

struct ReplaceJoints : testing::Test {
    SkinnedScene scene;
    RecordedScene given;
    std::mt19937 random{3};

    void addBones(int count) const {
        for (int i = 0; i < count; ++i) {
            scene.add(*scene->getRoot(), "j" + std::to_string(i), true);
        }
    }
};

TEST(JointTraversal, ListsParentsFirstAndWhereTheyStand) {
    const auto scene = boost::make_shared<JointLister>();
    const auto add = [&](const boost::shared_ptr<Node>& parent, const char* type) {
        const auto node = boost::make_shared<Node>(scene);
        node->setType(type);
        parent->addNode(node);
        return node;
    };
    const auto hip = add(scene->getRoot(), "JOINT");
    const auto knee = add(hip, "JOINT");
    const auto helper = add(hip, "NODE");
    const auto tail = add(helper, "JOINT");
    const auto foot = add(knee, "JOINT");
    Nodes joints;
    std::vector<int> parents;
    scene->transverseSceneForJoints(scene->getRoot(), joints, parents);
    EXPECT_EQ(joints, Nodes({hip, knee, foot, tail}));
    EXPECT_EQ(parents, std::vector<int>({-1, 0, 1, -1}));
    scene->transverseSceneForJoints(nullptr, joints, parents);
    scene->transverseSceneForJoints(foot, joints, parents);
    EXPECT_EQ(parents, std::vector<int>({-1, 0, 1, -1, -1}));
    auto last = foot;
    for (int i = 0; i < 100000; ++i) last = add(last, "JOINT");
    joints.clear();
    scene->transverseSceneForJoints(scene->getRoot(), joints, parents);
    EXPECT_EQ(joints.size(), 100004u);
}

TEST_F(ReplaceJoints, JointsEndAtTheirPositionsWithTheSkinBoundToThem) {
    scene.addSkeleton(random);
    const auto skin = scene.addSkin();
    const auto joints = jointsOf(scene->getRoot());
    Floats wanted;
    std::uniform_real_distribution<float> number(-5, 5);
    std::vector<Eigen::Matrix4f> turned;
    for (const auto& joint : joints) {
        for (int axis = 0; axis < 3; ++axis) wanted.push_back(number(random));
        turned.push_back(joint->getRotation());
    }
    addPositions(*given.manager, "joints", wanted);
    scene.forgetEvents();
    scene->replaceJoints(given.manager);
    for (std::size_t i = 0; i < joints.size(); ++i) {
        const Eigen::Map<const Eigen::Vector3f> position(wanted.data() + 3 * i);
        EXPECT_LT((originOf(*joints[i]) - position).norm(), 1e-3f);
        EXPECT_EQ(joints[i]->getRotation(), turned[i]);
    }
    expectBound(scene, *skin);
    EXPECT_EQ(scene.eventNames().size(), 2 * joints.size());
}

TEST_F(ReplaceJoints, ARotationThatMovesIsAllowedFor) {
    const auto joint = scene.add(*scene->getRoot(), "j", true);
    Eigen::Matrix4f odd = Eigen::Matrix4f::Identity();
    odd.col(3) << 4, 5, 6, 2;
    joint->setRotation(odd);
    const auto skin = scene.addSkin();
    addPositions(*given.manager, "joints", {1, 2, 3});
    scene->getRoot()->setTranslation(Eigen::Translation3f(10, 0, 0));
    scene->replaceJoints(given.manager);
    EXPECT_TRUE(originOf(*joint).isApprox(Eigen::Vector3f(1, 2, 3)));
    expectBound(scene, *skin);
}

TEST_F(ReplaceJoints, SingularMatricesLeadToTheNearestPositionAndStayFinite) {
    const auto flat = scene.add(*scene->getRoot(), "flat", true);
    flat->setScale({1, 0, 1});
    const auto below = scene.add(*flat, "below", true);
    const auto lost = scene.add(*scene->getRoot(), "lost", true);
    lost->setScale({std::numeric_limits<float>::infinity(), 1, 1});
    const auto lostBelow = scene.add(*lost, "lost below", true);
    lostBelow->setTranslation(Eigen::Translation3f(1, 1, 1));
    const auto skin = scene.addSkin();
    addPositions(*given.manager, "joints", {1, 2, 3, 7, 8, 9, 0, 0, 0, 5, 5, 5});
    scene->replaceJoints(given.manager);
    EXPECT_TRUE(originOf(*flat).isApprox(Eigen::Vector3f(1, 2, 3)));
    EXPECT_TRUE(originOf(*below).isApprox(Eigen::Vector3f(7, 2, 9)));
    EXPECT_EQ(lostBelow->getTranslation().vector(), Eigen::Vector3f(1, 1, 1));
    const Floats& values = skin->getJointsInput("INV_BIND_MATRIX")->values;
    for (const float value : values) EXPECT_TRUE(std::isfinite(value));
    const Eigen::Matrix4f inverse = Eigen::Map<const RowByRow>(values.data() + 48);  // "flat"
    EXPECT_EQ(inverse.row(3), Eigen::RowVector4f::Unit(3));
    EXPECT_TRUE((inverse * Eigen::Vector4f(1, 2, 3, 1)).isApprox(Eigen::Vector4f::Unit(3)));
}

TEST_F(ReplaceJoints, MatricesAreWrittenOnlyWhereTheStreamHasRoom) {
    addBones(3);
    const auto skin = scene.addSkin();
    auto& values = skin->getJointsInput("INV_BIND_MATRIX")->values;
    skin->getJointsInput("JOINT")->stringValues = {"j1", "unknown", "j1", "j0"};
    values.assign(16 * 3 + 15, 7.0f);
    addPositions(*given.manager, "joints", {1, 2, 3, 4, 5, 6, 7, 8, 9});
    scene->replaceJoints(given.manager);
    EXPECT_EQ(values.size(), 63u);
    EXPECT_EQ(values[3], -4.0f) << "the translation ends the first row";
    EXPECT_EQ(values[16], 7.0f);
    EXPECT_EQ(values[32 + 7], -5.0f);
    EXPECT_EQ(values[48], 7.0f);
    skin->setStreams({});
    const auto bare = boost::make_shared<Skin>(nullptr);
    scene->getControllersLibrary()[0]->setSkin(bare);
    bare->setBindShapeMatrix(Eigen::Matrix4f::Constant(2));
    scene->replaceJoints(given.manager);
    EXPECT_EQ(bare->getBindShapeMatrix(), Eigen::Matrix4f::Identity());
}

struct JointChecks : ReplaceJoints {
    void expectRefusal(const std::string& text) const {
        const LogCapture log;
        scene.forgetEvents();
        scene->replaceJoints(given.manager);
        EXPECT_EQ(log.lines(), Names({text}));
        EXPECT_EQ(scene.eventNames(), Names());
    }
};

TEST_F(JointChecks, RefuseAJointsSceneThatIsNoListOfTheJoints) {
    addBones(2);
    scene.addSkin();
    expectRefusal("Invalid joints scene. Found more than one geometry.");
    const auto mesh = addPositions(*given.manager, "joints", {1, 2, 3});
    const std::string number = "Invalid joints scene. Found different number of joints.";
    expectRefusal(number);
    mesh->getVertices()[0].stream->count = 2;
    expectRefusal(number);
    mesh->getVertices()[0].stream->count = -1;
    expectRefusal(number);
    mesh->setVertices({{POSITION, nullptr, 0}});
    expectRefusal(number);
    const auto good = makePositions({1, 2, 3, 4, 5, 6});
    mesh->setVertices({{POSITION, good, 0}, {POSITION, good, 0}});
    expectRefusal("Invalid joints scene. Found more than one vertices stream mapping.");
    addPositions(*given.manager, "more", {1, 2, 3});
    expectRefusal("Invalid joints scene. Found more than one geometry.");
    scene->replaceJoints(nullptr);
}

TEST_F(JointChecks, RefuseASceneWithoutTheOneSkin) {
    addPositions(*given.manager, "joints", {});
    const std::string controllers = "Invalid scene. Scene must have one and only one controller";
    expectRefusal(controllers + ".");
    scene->addController(boost::make_shared<Controller>("c", ""));
    expectRefusal(controllers + " with a valid skin.");
    scene.addSkin();
    expectRefusal(controllers + ".");
    EXPECT_TRUE(scene->getNodeArray().size() <= 1u);
}

struct Morphing : testing::Test {
    Morphing() {
        addPositions(*scene.manager, "mesh", {1, 2, 3, -0.0f, 5, 6});
        addPositions(*other.manager, "mesh", {10, 20, 30, 40, 50, 60});
        scene.forgetEvents();
    }
    static Names messages(const RecordedScene& of) {
        Names found;
        for (const auto& line : of.eventLines()) {
            if (line.rfind("DisplayMessageAt|", 0) == 0) found.push_back(line.substr(17));
        }
        return found;
    }
    Floats values() const {
        return positionsOf(dynamic_cast<Mesh&>(*scene->getGeometryManager()->getGeometry("mesh")));
    }

    SkinnedScene scene;
    SkinnedScene other;
    std::mt19937 random{11};
};

TEST_F(Morphing, RefusesWithAMessageAndChangesNothing) {
    const auto before = values();
    scene->morph(nullptr, 5.0f);
    const std::string ratio = "Invalid morph ratio. Morphing failed., 10, 10";
    for (const float wrong : {-0.1f, 1.5f, std::numeric_limits<float>::quiet_NaN()}) {
        scene->morph(other.manager, wrong);
    }
    EXPECT_EQ(messages(scene), Names({ratio, ratio, ratio}));
    other->getGeometryManager()->addGeometry(boost::make_shared<ConvexMesh>("z", ""));
    scene->morph(other.manager, 0.5f);
    scene->getGeometryManager()->addGeometry(boost::make_shared<Mesh>("z", ""));
    scene->morph(other.manager, 0.5f);
    EXPECT_EQ(messages(scene).at(3),
              "Invalid morph targets [different # geometries]. Morphing failed., 10, 10");
    EXPECT_EQ(messages(scene).at(4),
              "Invalid morph targets [different type of geometries]. Morphing failed., 10, 10");
    EXPECT_EQ(scene.eventNames().size(), 5u);
    EXPECT_EQ(values(), before);
}

TEST_F(Morphing, BlendsPositionsOfMeshesWithEqualCounts) {
    scene->morph(other.manager, 0.75f);
    EXPECT_EQ(values(), Floats({3.25f, 6.5f, 9.75f, 10, 16.25f, 19.5f}));
    EXPECT_EQ(scene.eventLines(), Names({"SceneUpdate|MaterialList"}));
    const auto mesh =
        boost::dynamic_pointer_cast<Mesh>(other->getGeometryManager()->getGeometry("mesh"));
    auto& stream = *mesh->getVertices()[0].stream;
    stream.values.resize(2);
    scene->morph(other.manager, 0.0f);
    EXPECT_EQ(values(), Floats({10, 20, 9.75f, 10, 16.25f, 19.5f}));
    stream.count = 1;
    scene->morph(other.manager, 0.5f);
    EXPECT_EQ(values()[0], 10.0f);
}

TEST_F(Morphing, AtTheEndsKeepsAndTakesEveryBit) {
    const auto before = values();
    const auto theirs =
        boost::dynamic_pointer_cast<Mesh>(other->getGeometryManager()->getGeometry("mesh"));
    theirs->getVertices()[0].stream->values[0] = std::numeric_limits<float>::infinity();
    scene->morph(other.manager, 1.0f);
    EXPECT_EQ(values(), before);
    EXPECT_TRUE(std::signbit(values()[3]));
    scene->morph(other.manager, 0.0f);
    EXPECT_EQ(values(), positionsOf(*theirs));
}

TEST_F(Morphing, JointsMoveBetweenTheirPlacesInBothScenes) {
    scene.addSkeleton(random);
    other.addSkeleton(random);
    const auto skin = scene.addSkin();
    std::vector<Eigen::Vector3f> here;
    for (const auto& joint : jointsOf(scene->getRoot())) here.push_back(originOf(*joint));
    const auto joints = jointsOf(scene->getRoot());
    for (const float ratio : {1.0f, 0.25f, 0.0f}) {
        std::vector<Eigen::Vector3f> start;
        for (const auto& joint : joints) start.push_back(originOf(*joint));
        scene->morph(other.manager, ratio);
        for (std::size_t i = 0; i < joints.size(); ++i) {
            const Eigen::Vector3f there = originOf(*other->getNodeByID(joints[i]->getID()));
            const Eigen::Vector3f expected = start[i] * ratio + there * (1.0f - ratio);
            EXPECT_LT((originOf(*joints[i]) - expected).norm(), 1e-3f);
            if (ratio == 1.0f) {
                EXPECT_EQ(originOf(*joints[i]), here[i]);
            }
        }
        expectBound(scene, *skin);
    }
}

TEST_F(Morphing, JointsWithoutNamesakesAndOtherSkeletonsStay) {
    scene.addSkeleton(random);
    const auto skin = scene.addSkin();
    const auto joint = jointsOf(scene->getRoot()).back();
    const auto place = originOf(*joint);
    scene->morph(other.manager, 0.0f);
    EXPECT_EQ(values()[0], 10.0f) << "vertices are blended all the same";
    other.addSkeleton(random);
    jointsOf(other->getRoot()).back()->setID("stranger");
    scene->morph(other.manager, 0.0f);
    EXPECT_EQ(originOf(*joint), place);
    EXPECT_EQ(skin->getBindShapeMatrix(), Eigen::Matrix4f::Constant(3));
}

TEST_F(Morphing, WithItselfOrAnEmptySceneEnds) {
    scene.addSkeleton(random);
    scene.addSkin();
    const auto before = values();
    scene->morph(scene.manager, 0.5f);
    EXPECT_EQ(values(), before);
    const auto empty = boost::make_shared<SceneManager>(nullptr);
    empty->morph(empty, 0.5f);
    EXPECT_TRUE(empty->getNodeArray().empty());
}

TEST_F(Morphing, OfASceneThatIsReleasedMeanwhileGoesToTheEnd) {
    scene.addSkeleton(random);
    other.addSkeleton(random);
    scene.addSkin();
    const auto mesh =
        boost::dynamic_pointer_cast<Mesh>(scene->getGeometryManager()->getGeometry("mesh"));
    boost::weak_ptr<SceneManager> watch = scene.manager;
    core::event::EventBase dropper(scene.events);
    dropper.registerHandler(core::event::EventType("NodeTransformationUpdate"),
                            [&](const auto&) { scene.manager.reset(); });
    scene.manager.get()->morph(other.manager, 0.0f);
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(positionsOf(*mesh)[0], 10.0f);
}

}  // namespace
}  // namespace vantorix::test
