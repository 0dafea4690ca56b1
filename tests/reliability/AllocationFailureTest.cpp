// Lets the memory end at one allocation after the other during the scripted operations. The calls
// may fail with std::bad_alloc; the scene must agree with itself and be usable afterwards.

#include <array>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "scene/animation/AnimationManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"
#include "tests/reliability/FailingAllocation.h"
#include "tests/reliability/SceneCheck.h"
#include "tests/reliability/ScriptedScene.h"

namespace vantorix::test {
namespace {

/// A scene that somebody listens to, taken through the script up to a step.
struct HeardScene {
    explicit HeardScene(std::size_t steps) {
        listener.registerHandler(core::event::EventType("NodeTransformationUpdate"),
                                 [this](const core::event::Event&) { ++heard; });
        for (std::size_t i = 0; i < steps; ++i) ScriptedScene::script()[i].run(scripted);
    }

    boost::shared_ptr<core::event::EventManager> events =
        boost::make_shared<core::event::EventManager>();
    int heard = 0;
    core::event::EventBase listener{events};
    ScriptedScene scripted{events, nullptr};
};

void expectWhole(const boost::shared_ptr<scene::SceneManager>& scene) {
    EXPECT_THAT(findTreeFaults(*scene), testing::IsEmpty());
    EXPECT_THAT(findLibraryFaults(*scene), testing::IsEmpty());
    EXPECT_THAT(findUseFaults(scene), testing::IsEmpty());
}

struct AllocationFailure : testing::TestWithParam<std::size_t> {
    void SetUp() override { core::logger::Logger::active = false; }
    void TearDown() override { core::logger::Logger::active = true; }
};

TEST_P(AllocationFailure, LeavesTheSceneWholeAndTheStepMayBeRepeated) {
    const auto& step = ScriptedScene::script()[GetParam()];
    HeardScene measured(GetParam());
    failAllocation(0);
    step.run(measured.scripted);
    const long total = allocationsSinceThen();
    for (long number = 1;; number = nextNumber(number, total)) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        HeardScene built(GetParam());
        auto& scripted = built.scripted;
        const bool failed = failAt(number, [&] { step.run(scripted); });
        if (!failed) return;
        expectWhole(scripted.scene);
        expectWhole(scripted.other);
        step.run(scripted);
        expectWhole(scripted.scene);
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(All, AllocationFailure,
                         testing::Range(std::size_t{0}, ScriptedScene::script().size()),
                         [](const auto& tested) {
                             return ScriptedScene::script()[tested.param].name;
                         });

TEST(AllocationFailureAlone, OfAScenesConstructionLeavesNothingBehind) {
    const auto events = boost::make_shared<core::event::EventManager>();
    for (long number = 1;; ++number) {
        boost::shared_ptr<scene::SceneManager> scene;
        const bool failed =
            failAt(number, [&] { scene = boost::make_shared<scene::SceneManager>(events); });
        EXPECT_EQ(!failed, scene != nullptr);
        scene.reset();
        EXPECT_THAT(events->getListenedTypes(), testing::IsEmpty());
        if (!failed || testing::Test::HasFailure()) return;
    }
}

/// Attaches, renames and removes small trees, some with IDs that others have.
void changeTree(const boost::shared_ptr<scene::SceneManager>& scene) {
    const auto root = scene->getRoot();
    for (int i = 0; i < 30; ++i) {
        std::vector<boost::shared_ptr<scene::Node>> chain(4);
        for (auto& node : chain) node = boost::make_shared<scene::Node>(scene);
        for (std::size_t below = 1; below < chain.size(); ++below) {
            chain[below - 1]->addNode(chain[below]);
        }
        root->addNode(chain.front());
        chain.back()->setID("n" + std::to_string(i % 9));
        chain.front()->setName("m" + std::to_string(i));
        if (i % 4 == 3) root->removeChild(root->getChildNode(0));
    }
}

TEST(AllocationFailureAlone, ChangesNoLookUpInATreeThatGrows) {
    for (long number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        const auto scene = boost::make_shared<scene::SceneManager>(nullptr);
        EXPECT_THAT(findTreeFaults(*scene), testing::IsEmpty());  // Builds the index.
        const bool failed = failAt(number, [&] { changeTree(scene); });
        expectWhole(scene);
        if (!failed || testing::Test::HasFailure()) return;
    }
}

// Many channels with equal key times: values are copied once they were played a few times.
TEST(AllocationFailureAlone, OfCopiedKeysDisturbsNoPlayback) {
    const Keys keys({0, 1, 2}, 3, {0, 0, 0, 10, 0, 0, 20, 0, 0});
    for (long number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        const auto scene = boost::make_shared<scene::SceneManager>(nullptr);
        const auto animation = makeAnimation();
        boost::shared_ptr<scene::Node> node;
        for (int i = 0; i < 20; ++i) {
            node = boost::make_shared<scene::Node>(scene);
            scene->getRoot()->addNode(node);
            addElement<scene::TransformationTranslate>(*node, "t");
            animation->addChannel(keys.sampler, node->getID() + "/t");
        }
        const auto player = boost::make_shared<scene::AnimationManager>();
        player->attach(scene);
        player->setAnimation(animation);
        const auto show = [&](int time) {
            player->setTime(boost::posix_time::milliseconds(time));
            player->update(boost::posix_time::seconds(0));
            return node->getTranslation().x();
        };
        EXPECT_EQ(show(1500), 15);
        bool isShown = false;
        const bool failed = failAt(number, [&] {
            for (const int time : {500, 1500, 700, 1700}) show(time);
            isShown = true;
        });
        EXPECT_TRUE(isShown);
        EXPECT_EQ(show(600), 6);
        scene->stop();
        if (!failed || testing::Test::HasFailure()) return;
    }
}

TEST(AllocationFailureAlone, OfAChangeOfEventManagersLeavesTheObjectWithNoneOrTheNewOne) {
    const auto first = boost::make_shared<core::event::EventManager>();
    for (long number = 1;; ++number) {
        const auto second = boost::make_shared<core::event::EventManager>();
        core::event::EventBase listener(first);
        int heard = 0;
        for (const char* const type : {"One", "Two", "Three"}) {
            listener.registerHandler(core::event::EventType(type),
                                     [&heard](const core::event::Event&) { ++heard; });
        }
        const bool failed = failAt(number, [&] { listener.setEventManager(second); });
        EXPECT_EQ(first->getListenedTypes().size(), 0u);
        EXPECT_EQ(second->getListenedTypes().size(), failed ? 0u : 3u);
        EXPECT_EQ(listener.getEventManager(), failed ? nullptr : second);
        listener.setEventManager(second);
        for (const char* const type : {"One", "Two", "Three"}) second->triggerEvent(type, "");
        EXPECT_EQ(heard, 3);
        if (!failed || testing::Test::HasFailure()) return;
    }
}

/// A mesh that gets triangles with normals, some of them equal.
struct GrowingMesh {
    bool addAtOnce() {
        std::vector<float> positions, normals;
        for (int i = 0; i < 40 * 9; ++i) {
            positions.push_back(static_cast<float>(i % 7));
            normals.push_back(static_cast<float>(i % 5));
        }
        return primitive->addTriangles(
            {{scene::POSITION, 3, positions.data()}, {scene::NORMAL, 3, normals.data()}}, 40, true);
    }
    bool addOneByOne() {
        bool areAdded = true;
        for (int i = 0; i < 40; ++i) {
            std::array<boost::shared_ptr<scene::Vertex>, 3> corners;
            for (auto& corner : corners) {
                corner = boost::make_shared<scene::Vertex>();
                corner->setPosition(static_cast<float>(i), 0, 0);
                corner->setNormal(0, 0, 1);
            }
            areAdded &= primitive->addTriangle(
                boost::make_shared<scene::Triangle>(corners[0], corners[1], corners[2]), true);
        }
        return areAdded;
    }
    bool areRecordsWhole() const {
        const auto stride = static_cast<std::size_t>(primitive->getIndexStreamStride());
        return stride == 0 || primitive->getIndexStream().size() % (3 * stride) == 0;
    }

    boost::shared_ptr<scene::Mesh> mesh = boost::make_shared<scene::Mesh>("mesh", "");
    boost::shared_ptr<scene::TriangleMeshPrimitive> primitive =
        boost::make_shared<scene::TriangleMeshPrimitive>(mesh, std::vector<scene::StreamMapping>());
};

struct AllocationFailureOfTriangles : testing::TestWithParam<bool (GrowingMesh::*)()> {};

TEST_P(AllocationFailureOfTriangles, LeavesWholeRecords) {
    for (long number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        GrowingMesh growing;
        const bool failed = failAt(number, [&] { (growing.*GetParam())(); });
        EXPECT_TRUE(growing.areRecordsWhole());
        for (const auto& stream : growing.mesh->getStreams()) {
            EXPECT_GE(stream->values.size(), static_cast<std::size_t>(3 * stream->count));
        }
        EXPECT_TRUE(growing.addAtOnce());
        EXPECT_GE(growing.primitive->getCount(), 40u);
        if (!failed || testing::Test::HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, AllocationFailureOfTriangles,
                         testing::Values(&GrowingMesh::addAtOnce, &GrowingMesh::addOneByOne));

TEST(AllocationFailureAlone, NeverKeepsAnythingFromBeingReleased) {
    for (long number = 1; number < 40; ++number) {
        auto built = std::make_unique<HeardScene>(ScriptedScene::script().size());
        const boost::weak_ptr<scene::SceneManager> watched = built->scripted.scene;
        failAt(number,
               [&] { built->listener.registerToListen(core::event::EventType("Another")); });
        failAt(number, [&] { built->scripted.scene->setEventManager(nullptr); });
        failAllocation(number);
        built->scripted.other.reset();
        built->scripted.scene.reset();
        built.reset();
        endFailing();
        EXPECT_TRUE(watched.expired());
    }
}

}  // namespace
}  // namespace vantorix::test
