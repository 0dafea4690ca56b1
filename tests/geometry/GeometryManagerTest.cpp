#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"
#include "core_api/event/EventType.h"
#include "core_api/logger/Logger.h"

#include "scene/geometry/ConvexMesh.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "tests/geometry/GeometrySupport.h"
#include "tests/support/LogCapture.h"

namespace vantorix::scene {
namespace {

using core::event::Event;
using core::event::EventBase;
using core::event::EventManager;
using core::event::EventType;
using Names = std::map<std::string, std::string>;

boost::shared_ptr<Mesh> makeNamed(const std::string& id) {
    return boost::make_shared<Mesh>(id, "");
}

struct GeometryManagerTest : QuietTest {
    boost::shared_ptr<EventManager> events = boost::make_shared<EventManager>();
    boost::shared_ptr<GeometryManager> manager = boost::make_shared<GeometryManager>(events);
    boost::shared_ptr<GeometryManager> other = boost::make_shared<GeometryManager>(events);
};

TEST_F(GeometryManagerTest, TheIdentifierAtInsertionIsTheKey) {
    const auto box = makeNamed("box");
    EXPECT_TRUE(manager->addGeometry(box));
    EXPECT_FALSE(manager->addGeometry(makeNamed("box")));
    EXPECT_FALSE(manager->addGeometry({}));
    box->setID("other");
    EXPECT_EQ(manager->getGeometry("box"), box);
    EXPECT_FALSE(manager->getGeometry("other"));
    EXPECT_TRUE(manager->addGeometry(boost::make_shared<ConvexMesh>("Box", "")));
    EXPECT_EQ(manager->getIDs(), (std::vector<std::string>{"Box", "box"}));
    EXPECT_EQ(manager->getCount(), 2u);
    EXPECT_EQ(manager->getGeometryType("Box"), IGeometry::CONVEX_MESH);
    EXPECT_EQ(manager->getGeometryType("none"), IGeometry::INVALID);
    std::vector<boost::shared_ptr<IGeometry>> all = {{}};
    manager->getGeometries(all);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[2], box);
}

TEST_F(GeometryManagerTest, PrintsEveryPrimitiveInOrder) {
    const auto mesh = makeNamed("box");
    const std::vector<StreamMapping> none;
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, none));
    mesh->addPrimitive(boost::make_shared<PolygonMeshPrimitive>(mesh, none));
    manager->addGeometry(mesh);
    EXPECT_EQ(outputOf([&] { manager->print(); }),
              "Implement me TriangleMeshPrimitive::print()\n"
              "Implement me PolygonMeshPrimitive::print()\n");
}

TEST_F(GeometryManagerTest, AMergeSharesWhatIsNewAndRenamesWhatIsTaken) {
    const auto box = makeNamed("box");
    manager->addGeometry(makeNamed("box"));
    other->addGeometry(box);
    other->addGeometry(makeNamed("tree"));
    EXPECT_EQ(manager->mergeGeometries(other, false), (Names{{"box", "box__renamed__"}}));
    EXPECT_EQ(manager->getGeometry("tree"), other->getGeometry("tree"));
    EXPECT_EQ(manager->getGeometry("box__renamed__")->getID(), "box__renamed__");
    EXPECT_NE(manager->getGeometry("box__renamed__"), box);
    EXPECT_EQ(box->getID(), "box");

    const auto renamed = manager->getGeometry("box__renamed__");
    EXPECT_EQ(manager->mergeGeometries(other, false).size(), 2u);
    EXPECT_EQ(manager->getGeometry("box__renamed__"), renamed) << "the second clone is lost";
    EXPECT_EQ(manager->mergeGeometries({}, false), Names());
}

TEST_F(GeometryManagerTest, TheFirstOfTwoCollectedGeometriesKeepsTheKey) {
    manager->addGeometry(makeNamed("a"));
    other->addGeometry(makeNamed("a"));
    const auto taken = makeNamed("a__renamed__");
    other->addGeometry(taken);
    EXPECT_EQ(manager->mergeGeometries(other, false), (Names{{"a", "a__renamed__"}}));
    EXPECT_NE(manager->getGeometry("a__renamed__"), taken);
}

TEST_F(GeometryManagerTest, AMergeIntoItselfEnds) {
    manager->addGeometry(makeNamed("a"));
    manager->addGeometry(makeNamed("b"));
    EXPECT_EQ(manager->mergeGeometries(manager, false).size(), 2u);
    EXPECT_EQ(manager->getCount(), 4u);
}

TEST_F(GeometryManagerTest, AMergeIsLogged) {
    core::logger::Logger::active = true;
    manager->addGeometry(makeNamed("box"));
    other->addGeometry(makeNamed("box"));
    const test::LogCapture log;
    EXPECT_EQ(manager->mergeGeometries(other, true), Names());
    EXPECT_EQ(manager->getCount(), 1u);
    manager->mergeGeometries(other, false);
    EXPECT_THAT(log.lines(),
                ::testing::ElementsAre(
                    "[INFO] Found repeated geometry ID and discarded new one: box",
                    "[INFO] Added 0 new geometries",
                    "[INFO] Found repeated geometry ID. Renamed geometry box to box__renamed__",
                    "[INFO] Added 1 new geometries"));
}

/// Collects the payloads of "GeometryTopologyUpdate".
struct TopologyListener : EventBase {
    explicit TopologyListener(const boost::shared_ptr<EventManager>& manager) : EventBase(manager) {
        registerHandler(EventType("GeometryTopologyUpdate"), [this](Event event) {
            payloads.push_back(event.getEventData().toString());
            if (react) react();
        });
    }
    std::vector<std::string> payloads;
    boost::function<void()> react;
};

TEST_F(GeometryManagerTest, ChangesOfTopologyAreAnnouncedAfterwards) {
    TopologyListener listener(events);
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0});
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, {}, 0)}, Indices{0, 1, 2}));
    manager->addGeometry(mesh);
    bool wasDone = false;
    listener.react = [&] { wasDone = mesh->getStream("VT_Calculated_Normals") != nullptr; };
    manager->recalculateVertexNormals("mesh");
    manager->recalculateVertexNormals("none");
    EXPECT_EQ(listener.payloads, std::vector<std::string>{"mesh"});
    EXPECT_TRUE(wasDone);

    listener.react = [&] { wasDone = mesh->getStream("VTX_SUBDIVIDE_NORMAL_STREAM") != nullptr; };
    wasDone = false;
    manager->subDivideGeometry("mesh", {});
    manager->subDivideGeometry("none", {});
    EXPECT_EQ(listener.payloads, (std::vector<std::string>{"mesh", "mesh"}));
    EXPECT_TRUE(wasDone);
}

TEST_F(GeometryManagerTest, AListenerMayChangeOrReleaseTheManager) {
    TopologyListener listener(events);
    manager->addGeometry(makeNamed("a"));
    listener.react = [&] {
        manager->addGeometry(makeNamed("b"));
        manager->mergeGeometries(manager, false);
        manager.reset();
    };
    manager->recalculateVertexNormals("a");
    EXPECT_FALSE(manager);
    EXPECT_EQ(listener.payloads.size(), 1u);
}

}  // namespace
}  // namespace vantorix::scene
