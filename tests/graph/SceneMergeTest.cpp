#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Stream.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using namespace scene;

/// A scene that takes in another one; both roots are called "root".
struct SceneMerging : testing::Test {
    SceneMerging() {
        scene->getRoot()->setID("root");
        other->getRoot()->setID("root");
        scene.forgetEvents();
    }

    RecordedScene scene;
    RecordedScene other;
};

TEST_F(SceneMerging, ToleratesNothingAndItself) {
    EXPECT_TRUE(scene->mergeSceneManager(nullptr, 0, ""));
    EXPECT_EQ(scene.eventNames(), Names());
    scene->getRoot()->addNode(scene.makeNode("child"));
    EXPECT_TRUE(scene->mergeSceneManager(scene.manager, 0x20, "child"));
    EXPECT_EQ(scene->getNodeArray().size(), 4u);
    EXPECT_EQ(scene->getMaterialList().size(), 2u);
    scene->mergeEffectLibrary({nullptr});
    scene->mergeImageLibrary({nullptr}, false);
    EXPECT_EQ(scene->mergeMaterialLibrary({nullptr}, {}, {}, false).size(), 0u);
    scene->replaceSharedStreams(nullptr);
}

TEST_F(SceneMerging, AnnouncesEachCopyAsItIsMadeAndAttached) {
    other->getRoot()->setID("new");
    other->getRoot()->addToLayer(2);
    other->getRoot()->setTranslation(Eigen::Translation3f(1, 2, 3));
    scene->mergeSceneManager(other.manager, 0x08, "");
    const std::string pose = "NodeTransformationUpdate|new,1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1";
    EXPECT_EQ(scene.eventLines(),
              Names({"SceneUpdate|MaterialList", pose, "SceneUpdate|", pose, "SceneUpdate|", pose,
                     "SceneUpdate|", "NodeAddedLayer|new,selected", pose, "SceneUpdate|",
                     "NodeNewChild|root,new", "SceneTopologyUpdate|", "SceneUpdate|",
                     "SceneUpdate|MaterialList", "SyncScene|"}));
}

/// Calls a function in the middle of the next merge, once.
struct Interruption : core::event::EventBase {
    Interruption(const RecordedScene& scene, const char* type, boost::function<void()> action)
        : EventBase(scene.events) {
        registerHandler(core::event::EventType(type), [=](const auto&) mutable {
            if (action) std::exchange(action, boost::function<void()>())();
        });
    }
};

TEST_F(SceneMerging, ScenesThatAreReleasedMeanwhileAreMergedToTheEnd) {
    other->getRoot()->addNode(other.makeNode("child"));
    for (const char* type : {"SceneUpdate", "NodeTransformationUpdate", "SyncScene"}) {
        RecordedScene victim;
        boost::weak_ptr<SceneManager> watch = victim.manager;
        auto source = boost::make_shared<SceneManager>(nullptr);
        source->getRoot()->addNode(boost::make_shared<Node>(source));
        const Interruption interruption(victim, type, [&] {
            victim.manager.reset();
            source.reset();
        });
        SceneManager& merging = *victim.manager;
        EXPECT_TRUE(merging.mergeSceneManager(source, 0, ""));
        EXPECT_EQ(victim.eventLines().back(), "SyncScene|");
        EXPECT_TRUE(watch.expired());
    }
    RecordedScene stopped;
    const Interruption stop(stopped, "NodeNewChild", [&] { stopped->stop(); });
    stopped->mergeSceneManager(other.manager, 0, "");
    EXPECT_EQ(stopped->getNodeArray().size(), 3u);
    EXPECT_EQ(stopped.eventNames().back(), "NodeNewChild");
}

/// The receiving root has the children "a", "b", "b" and, elsewhere, "c"; "b", "x", "c" and "b"
/// come in under a root of the same ID. A handler changes the row when "x" is there.
struct MergingIntoChildren : SceneMerging {
    MergingIntoChildren() {
        for (const auto& child : children) parent->addNode(child);
        for (int i = 0; i < 20; ++i) parent->addNode(scene.makeNode("one of many"));
        scene->setRoot(scene.makeNode("above"));
        scene->getRoot()->addNode(parent);
        scene->getRoot()->addNode(scene.makeNode("c"));
        for (const char* id : {"b", "x", "c", "b"}) {
            const auto child = other.makeNode(id);
            child->addNode(other.makeNode(std::string("below ") + id));
            other->getRoot()->addNode(child);
        }
    }

    void mergeAnd(const boost::function<void()>& change) {
        const Interruption interruption(scene, "NodeNewChild", change);
        scene->mergeSceneManager(other.manager, 0x20, "");
    }

    boost::shared_ptr<Node> parent = scene->getRoot();
    std::vector<boost::shared_ptr<Node>> children = {scene.makeNode("a"), scene.makeNode("b"),
                                                     scene.makeNode("b")};
};

TEST_F(MergingIntoChildren, TheFirstOfThatIDIsMeantWhateverWasRenamedOrAdded) {
    mergeAnd([&] {
        children[0]->setID("b");
        children[2]->setID("c");
    });
    EXPECT_EQ(children[0]->getChildCount(), 1u);
    EXPECT_EQ(children[1]->getChildCount(), 1u);
    ASSERT_EQ(children[2]->getChildCount(), 1u);
    EXPECT_EQ(children[2]->getChildNode(0)->getID(), "below c");
}

TEST_F(MergingIntoChildren, TheNextOfThatIDIsMeantOnceTheFirstIsRemoved) {
    mergeAnd([&] { parent->removeChild(children[1]); });
    EXPECT_EQ(children[1]->getChildCount(), 1u);
    EXPECT_EQ(children[2]->getChildCount(), 1u);
}

TEST_F(MergingIntoChildren, AGuestFromAnotherSceneIsKnownUnderItsPresentID) {
    const auto guest = other.makeNode("guest");
    parent->addNode(guest);
    mergeAnd([&] { guest->setID("c"); });
    ASSERT_EQ(guest->getChildCount(), 1u);
    EXPECT_EQ(guest->getChildNode(0)->getID(), "below c");
}

TEST(SceneMergeSize, DeepAndWideTreesAreMergedWithoutDeepStackOrLongSearches) {
    constexpr unsigned int count = 100000;
    core::logger::Logger::active = false;
    const auto scene = boost::make_shared<SceneManager>(nullptr);
    const auto source = boost::make_shared<SceneManager>(nullptr);
    const auto add = [](const boost::shared_ptr<SceneManager>& to, Node& parent, std::string id) {
        const auto node = boost::make_shared<Node>(to);
        node->setID(id);
        parent.addNode(node);
        return node;
    };
    scene->getRoot()->setID("root");
    source->getRoot()->setID("root");
    auto deepest = source->getRoot();
    for (unsigned int i = 0; i < count; ++i) {
        add(scene, *scene->getRoot(), "n" + std::to_string(i));
        add(source, *source->getRoot(), "n" + std::to_string(count - i));
        deepest = add(source, *deepest, "deep");
    }
    const auto above = boost::make_shared<Node>(scene);
    above->addNode(scene->getRoot());
    scene->setRoot(above);
    scene->mergeSceneManager(source, 0x20, above->getID());
    // The chain joins its first link; of the wide nodes, one is new.
    EXPECT_EQ(scene->getNodeByID("root")->getChildCount(), count + 2);
    EXPECT_EQ(scene->getNodeArray().size(), 2u * count + 3u);
    scene->stop();
    source->stop();
    core::logger::Logger::active = true;
}

/// Meshes with two streams each.
struct SharedStreams : SceneMerging {
    boost::shared_ptr<Mesh> addMesh(const RecordedScene& to, const std::string& id, float value,
                                    StreamSemantic second = NORMAL) {
        const auto mesh = boost::make_shared<Mesh>(id, "");
        std::vector<StreamMapping> mappings;
        for (const auto semantic : {POSITION, second}) {
            const auto stream = boost::make_shared<Stream>("s", 3, true);
            const float tuple[] = {value, value, value};
            stream->insertValue(3, tuple);
            mesh->addStream(stream);
            mappings.emplace_back(semantic, stream, 0);
        }
        mesh->setVertices(mappings);
        to->getGeometryManager()->addGeometry(mesh);
        return mesh;
    }
    static float valueOf(const boost::shared_ptr<Mesh>& mesh, std::size_t stream) {
        return mesh->getStreams()[stream]->values.at(0);
    }
};

TEST_F(SharedStreams, AreCopiedPlaceByPlaceWhereTheirCountsAgree) {
    const auto mine = addMesh(scene, "a", 1), theirs = addMesh(other, "z", 2);
    theirs->getStreams()[1]->count = 7;
    scene->replaceSharedStreams(other.manager);
    EXPECT_EQ(valueOf(mine, 0), 2.0f);
    EXPECT_EQ(valueOf(mine, 1), 1.0f) << "the counts differ";
    EXPECT_NE(mine->getStreams()[0], theirs->getStreams()[0]);
    scene->replaceSharedStreams(scene.manager);
    EXPECT_EQ(valueOf(mine, 0), 2.0f);
}

TEST_F(SharedStreams, AreFoundByTheirSemanticsUpToTheLast) {
    const auto mine = addMesh(scene, "a", 1, TANGENT);
    addMesh(other, "a", 2, TANGENT);
    const auto doubled = addMesh(scene, "b", 1, POSITION);
    addMesh(other, "b", 2, POSITION);
    scene->replaceSharedStreams(other.manager);
    EXPECT_EQ(valueOf(mine, 0), 2.0f);
    EXPECT_EQ(valueOf(mine, 1), 2.0f);
    EXPECT_EQ(valueOf(doubled, 0), 2.0f);
    EXPECT_EQ(valueOf(doubled, 1), 1.0f) << "the first of one semantic stands for it";
}

TEST_F(SharedStreams, StayWhereLibrariesOrTypesDiffer) {
    const auto first = addMesh(scene, "a", 1);
    addMesh(other, "a", 2);
    const auto extra = boost::make_shared<ConvexMesh>("b", "");
    other->getGeometryManager()->addGeometry(extra);
    scene->replaceSharedStreams(other.manager);
    EXPECT_EQ(valueOf(first, 0), 1.0f) << "one library is longer";
    const auto second = addMesh(scene, "b", 1), third = addMesh(scene, "c", 1);
    addMesh(other, "c", 2);
    scene->replaceSharedStreams(other.manager);
    EXPECT_EQ(valueOf(first, 0), 2.0f);
    EXPECT_EQ(valueOf(second, 0), 1.0f);
    EXPECT_EQ(valueOf(third, 0), 1.0f) << "the walk ends at the first difference";
    second->setVertices({{POSITION, nullptr, 0}});
    extra->setType(IGeometry::MESH);
    scene->replaceSharedStreams(other.manager);
    EXPECT_EQ(valueOf(third, 0), 2.0f);
}

}  // namespace
}  // namespace vantorix::test
