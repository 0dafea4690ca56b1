#include <gtest/gtest.h>

#include "core_api/system/MillisecClock.h"

#include "scene/animation/CameraInstance.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Evaluator.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "scene/physics/PhysicsMaterial.h"
#include "scene/physics/PhysicsModel.h"
#include "scene/physics/PhysicsScene.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::test {
namespace {

using namespace scene;

struct FreshScene : testing::Test {
    RecordedScene scene;
};
struct SceneIdentity : FreshScene {};
struct SceneTree : FreshScene {};
struct SceneLibraries : FreshScene {};
struct SceneCameras : FreshScene {};
struct MaterialEvents : FreshScene {
    void send(const std::string& type, const std::string& payload) const {
        scene.events->triggerEvent(type, payload);
    }
};

TEST_F(SceneIdentity, AFreshSceneHoldsTheDefaultsAndHasAnnouncedThem) {
    EXPECT_EQ(scene.eventLines(), Names({"SceneUpdate|MaterialList"}));
    EXPECT_EQ(scene->effectLibraryToString(),
              "EffectLibrary: (effectID, filename)\ndefaultEffect, default.cgfx\n");
    EXPECT_EQ(scene->materialLibraryToString(),
              "Material ID: defaultMaterial, Effect ID: defaultEffect\n\n");
    EXPECT_EQ(scene->getSceneID(), "defaultSceneID");
    EXPECT_EQ(scene->getSceneName(), "DefaultScene");
    EXPECT_EQ(scene->getUpAxis(), Y_UP);
    EXPECT_EQ(scene->getMeterUnit(), 1.0f);
}

TEST_F(SceneIdentity, GeneratedIDsAvoidThoseThatCameFromOutside) {
    EXPECT_EQ(scene->generateID(), "OID0");
    scene->addID("OID1");
    scene->addID("OIDX");
    scene->getRoot()->setID("OID2");
    scene->getRoot()->setSID("OID3");
    scene->setSceneID("OID4");
    scene->setEffectLibrary({boost::make_shared<Effect>("OID5", "f", ""), nullptr});
    scene->setMaterialList({boost::make_shared<Material>("OID6", "e")});
    scene->addEffect(boost::make_shared<Effect>("OID7", "f", ""));  // Plain additions do not.
    EXPECT_EQ(scene->generateID(), "OID7");
    EXPECT_EQ(scene->generateID(), "OID8");
}

TEST_F(SceneIdentity, NodesUseTheEventManagerOfTheMoment) {
    const auto node = scene.makeNode("node");
    const auto second = boost::make_shared<RecordingEventManager>();
    scene.forgetEvents();
    scene->setEventManager(second);
    EXPECT_EQ(scene->getGeometryManager()->getEventManager(), second);
    node->triggerTopologyUpdate();
    EXPECT_EQ(second->names(), Names({"SceneTopologyUpdate"}));
    boost::weak_ptr<RecordingEventManager> first = scene.events;
    scene.events.reset();
    EXPECT_TRUE(first.expired()) << "a replaced event manager is released";
    scene->stop();
    node->triggerTopologyUpdate();
    scene->addMaterial(boost::make_shared<Material>("m", "e"));
    EXPECT_EQ(second->names().size(), 1u) << "a stopped scene sends nothing";
    scene.events = second;
}

TEST_F(SceneTree, TheRootIsMadeOnDemandAndCannotBeTakenAway) {
    EXPECT_TRUE(scene->getNodeArray().empty());
    EXPECT_EQ(scene->getNodeByID("x"), nullptr);
    const auto root = scene->getRoot();
    EXPECT_EQ(scene->getNodeArray(), std::vector<boost::shared_ptr<Node>>({root}));
    scene->setRoot(nullptr);
    EXPECT_EQ(scene->getRoot(), root);
}

TEST_F(SceneTree, RemovingByIDLooksForTheName) {
    const auto node = scene.makeNode("the id");
    node->setName("the name");
    scene->getRoot()->addNode(node);
    scene->removeNodeByID("the id");
    EXPECT_EQ(scene->getRoot()->getChildCount(), 1u);
    scene->removeNodeByID("the name");
    EXPECT_EQ(scene->getRoot()->getChildCount(), 0u);
    scene->removeNode(scene->getRoot());
    scene->removeNode(nullptr);
}

TEST_F(SceneLibraries, ARepeatedImageIsDiscardedOrKeepsItsRepeatedID) {
    const auto image = boost::make_shared<Image>("id", "a.png", "");
    scene->addImage(image);
    scene.forgetEvents();
    scene->addImage(boost::make_shared<Image>("id", "a.png", ""));
    EXPECT_EQ(scene->getImageCount(), 1u);
    EXPECT_EQ(scene.eventNames(), Names());
    scene->addImage(boost::make_shared<Image>("id", "b.png", ""));
    EXPECT_EQ(scene->getImageCount(), 2u);
    EXPECT_EQ(scene->getImageAt(1)->getID(), "id");
    EXPECT_EQ(scene->getImageAt(2), nullptr);
    EXPECT_EQ(scene->generateID(), "OID1") << "one was used up";
    EXPECT_EQ(scene.eventLines(), Names({"SceneUpdate|"}));
    EXPECT_EQ(scene->getImageByID("id"), image);
}

TEST_F(SceneLibraries, ImagesAreFoundByBareFileNameFirst) {
    const auto whole = boost::make_shared<Image>("1", "dir/tex.png", "");
    const auto bare = boost::make_shared<Image>("2", "tex.png", "");
    scene->addImage(whole);
    EXPECT_EQ(scene->getImageByFilename("dir/tex.png"), whole);
    scene->addImage(bare);
    EXPECT_EQ(scene->getImageByFilename("dir/tex.png"), bare);
    EXPECT_EQ(scene->getImageByFilename("elsewhere/tex.png"), bare);
    EXPECT_EQ(scene->getImageByFilename(""), nullptr);
}

TEST_F(SceneLibraries, TheSurroundingJoinsTheLibraryOnce) {
    const auto image = boost::make_shared<Image>("sky", "sky.png", "");
    scene.forgetEvents();
    scene->setSurrounding(image);
    scene->setSurrounding(image);
    scene->setSurrounding(nullptr);
    EXPECT_EQ(scene->getImageCount(), 1u);
    EXPECT_EQ(scene.eventNames(), Names({"SceneUpdate", "SceneSurroundingUpdate",
                                         "SceneSurroundingUpdate", "SceneSurroundingUpdate"}));
}

/// Uses the scene while it is released.
struct LastWord : Material {
    LastWord(SceneManager& of, std::string effectID) : Material("last", effectID), scene_(of) {}
    ~LastWord() override {
        EXPECT_EQ(scene_.getMaterialWithID("last"), nullptr);
        scene_.addMaterial(boost::make_shared<Material>("heir", "otherEffect"));
    }
    SceneManager& scene_;
};

TEST_F(SceneLibraries, WhatIsReleasedWithAnEffectMayUseTheScene) {
    const auto effect = boost::make_shared<Effect>("fx", "f", "");
    scene->addEffect(effect);
    scene->setMaterialList({boost::make_shared<LastWord>(*scene.manager, "fx"),
                            boost::make_shared<Material>("kept", "otherEffect"),
                            boost::make_shared<Material>("gone", "fx")});
    scene->removeEffect(effect);
    EXPECT_EQ(scene->getEffectByID("fx"), nullptr);
    EXPECT_EQ(scene->materialLibraryToString(),
              "Material ID: kept, Effect ID: otherEffect\n\n"
              "Material ID: heir, Effect ID: otherEffect\n\n");
}

TEST_F(SceneLibraries, GiveTheFirstMatchAndRefuseCamerasWhoseIDIsTaken) {
    const auto first = boost::make_shared<Effect>("1", "same.cgfx", "");
    scene->addEffect(first);
    scene->addEffect(boost::make_shared<Effect>("2", "same.cgfx", ""));
    EXPECT_EQ(scene->getEffectByFilename("same.cgfx"), first);
    EXPECT_FALSE(scene->getEffectByFilename("Same.cgfx"));

    const auto camera = boost::make_shared<Camera>(scene.manager, Camera::PERSPECTIVE, "OID0", "");
    EXPECT_TRUE(scene->addCamera(camera));
    EXPECT_FALSE(scene->addCamera(camera));
    EXPECT_EQ(scene->getCameraCount(), 1u);
    EXPECT_EQ(scene->generateID(), "OID1");

    const auto evaluator = boost::make_shared<Evaluator>("deferred");
    for (int i = 0; i < 2; ++i) scene->addEvaluator(evaluator);
    scene->removeEvaluator(evaluator);
    EXPECT_EQ(scene->getEvaluatorsCount(), 1u);
    EXPECT_EQ(scene->getEvaluatorAt(0), evaluator);
}

TEST_F(SceneLibraries, EmptyPointersAreIgnored) {
    scene.forgetEvents();
    scene->addImage(nullptr);
    scene->addMaterial(nullptr);
    scene->addEffect(nullptr);
    scene->removeEffect(nullptr);
    scene->addEvaluator(nullptr);
    scene->addSceneController(nullptr);
    scene->addCameraInstance(nullptr);
    scene->setClock(nullptr);
    scene->setGeometryManager(nullptr);
    EXPECT_FALSE(scene->addLight(nullptr));
    EXPECT_FALSE(scene->addCamera(nullptr));
    EXPECT_EQ(scene->getEvaluatorAt(0), nullptr);
    EXPECT_EQ(scene.eventNames(), Names());
    EXPECT_NE(scene->getClock(), nullptr);
    EXPECT_NE(scene->getGeometryManager(), nullptr);
}

TEST_F(SceneCameras, ANewCameraStandsOnItsNodeWithTheUpAxisUp) {
    scene->setUpAxis(Z_UP);
    scene->getRoot();
    scene.forgetEvents();
    const auto id = scene->createNewCamera(Camera::PERSPECTIVE, "", "nowhere");
    const auto camera = scene->getCameraByID(id);
    const auto instance = scene->getCameraInstanceAt(0);
    EXPECT_EQ(camera->getName(), "VTCamera");
    EXPECT_EQ(instance->getCamera(), camera);
    EXPECT_EQ(scene->getCameraInstanceBySID(instance->getSID()), instance);
    const auto node = instance->getParentNode();
    EXPECT_EQ(node->getParent(), scene->getRoot());
    EXPECT_EQ(node->getInstanceCamera(0), camera);
    const Eigen::Vector3f up = node->getRotation().block<3, 1>(0, 1);
    EXPECT_TRUE(up.isApprox(Eigen::Vector3f::UnitZ()));
    EXPECT_EQ(scene.eventLines().back(), "SceneNewCamera|" + instance->getSID());
    scene->addCameraInstance(instance);
    EXPECT_EQ(scene->getCameraInstanceCount(), 2u);
}

TEST_F(SceneCameras, AnXUpSceneTurnsTheCameraTheOtherWay) {
    scene->setUpAxis(X_UP);
    scene->createNewCamera(Camera::ORTHOGRAPHIC, "eye", "");
    const Eigen::Vector3f up = scene->getNodeByID("eye")->getRotation().block<3, 1>(0, 1);
    EXPECT_TRUE(up.isApprox(Eigen::Vector3f::UnitX()));

    // Any number is a value of the type, as for the other enumerations.
    scene->setUpAxis(static_cast<UpAxis>(2147483646));
    scene->createNewCamera(Camera::ORTHOGRAPHIC, "other eye", "");
    EXPECT_EQ(scene->getNodeByID("other eye")->getRotation(), Eigen::Matrix4f::Identity());
}

TEST_F(SceneCameras, ALightWithATakenIDIsRefused) {
    scene->createNewLight(Light::POINT, "lamp", "node", "");
    EXPECT_EQ(scene->getNodeByID("node")->getName(), "lamp");
    EXPECT_EQ(scene->getNodeByID("node")->getInstanceLight(0), scene->getLightByID("lamp"));
    const auto nodes = scene->getNodeArray().size();
    scene->createNewLight(Light::SPOT, "lamp", "other", "");
    EXPECT_EQ(scene->getNodeArray().size(), nodes);
    EXPECT_EQ(scene->getLightLibrary().size(), 1u);
}

TEST_F(MaterialEvents, MakeEffectsAndMaterialsFromCompletePayloads) {
    send("L_NewEffect", "fx,file.cgfx");
    send("L_NewEffect", "incomplete,");
    send("L_NewMaterial", "OID0,fx");
    send("L_NewMaterial", "incomplete");
    EXPECT_EQ(scene->getEffectByID("fx")->getFilename(), "file.cgfx");
    EXPECT_EQ(scene->getMaterialWithID("OID0")->getEffectID(), "fx");
    EXPECT_EQ(scene->getEffectByID("incomplete"), nullptr);
    EXPECT_EQ(scene->getMaterialWithID("incomplete"), nullptr);
    EXPECT_EQ(scene->generateID(), "OID1");
    EXPECT_EQ(scene.eventLines().size(), 6u);
}

TEST_F(MaterialEvents, ATextureParameterHoldsAnImageID) {
    for (int sent = 0; sent < 2; ++sent) {
        send("L_MaterialParameterUpdated", "defaultMaterial,tex,dir/a.png,texture");
    }
    const auto material = scene->getMaterialWithID("defaultMaterial");
    ASSERT_EQ(scene->getImageCount(), 1u);
    EXPECT_EQ(scene->getImageAt(0)->getFilename(), "dir/a.png");
    EXPECT_EQ(material->getParameterByName("tex")->getValue(), scene->getImageAt(0)->getID());
    send("L_MaterialParameterUpdated", "defaultMaterial,shine,3,float");
    EXPECT_EQ(material->getParameterAt(0)->getName(), "shine");
    send("L_MaterialParameterUpdated", "missing,shine,3,float");
    EXPECT_EQ(material->getParametersCount(), 2);
}

TEST_F(MaterialEvents, TheTypeInTheEventDecidesAboutTextures) {
    const auto material = scene->getMaterialWithID("defaultMaterial");
    send("L_MaterialParameterUpdated", "defaultMaterial,tex,a.png,texture");
    send("L_MaterialParameterUpdated", "defaultMaterial,tex,b.png,string");
    EXPECT_EQ(material->getParameterByName("tex")->getValue(), "b.png");
    send("L_MaterialParameterUpdated", "defaultMaterial,shine,3,float");
    scene.forgetEvents();
    send("L_MaterialParameterUpdated", "defaultMaterial,shine,c.png,texture");
    const auto shine = material->getParameterByName("shine");
    EXPECT_EQ(shine->getType(), "float");
    EXPECT_EQ(shine->getValue(), scene->getImageAt(1)->getID());
    EXPECT_EQ(scene.eventLines().back(), "SceneUpdate|");

    scene.forgetEvents();
    for (const auto* const payload :
         {",tex,d.png,texture", "defaultMaterial,,d.png,texture", "defaultMaterial,tex,,texture",
          "defaultMaterial,tex,d.png"}) {
        send("L_MaterialParameterUpdated", payload);
    }
    EXPECT_EQ(scene.eventLines().size(), 4u) << "only those that were sent";
    const LogCapture log;
    send("L_MaterialParameterUpdated", "missing,shine,3,float");
    EXPECT_EQ(log.lines(), Names({"[WARN] Trying to change a parameter from a non existent "
                                  "material."}));
}

TEST(PhysicsLibraries, AreKeptApartAndRecordTheirIDs) {
    const RecordedScene scene;
    const auto material = boost::make_shared<PhysicsMaterial>("OID0", "", 0.0f, 0.0f, 0.0f);
    const auto model = boost::make_shared<PhysicsModel>("OID1", "");
    const auto listed = boost::make_shared<PhysicsScene>("OID2", "");
    const auto instanced = boost::make_shared<PhysicsScene>("OID3", "");
    scene->setPhysicsMaterialLibrary({material});
    scene->setPhysicsModelLibrary({model});
    scene->setPhysicsSceneLibrary({listed});
    scene->setInstancedPhysicsScenes({instanced});
    EXPECT_EQ(scene->getPhysicsMaterialById("OID0"), material);
    EXPECT_EQ(scene->getPhysicsModelById("OID1"), model);
    EXPECT_EQ(scene->getPhysicsSceneById("OID2"), listed);
    EXPECT_EQ(scene->getPhysicsSceneById("OID3"), nullptr) << "instances are no library";
    EXPECT_EQ(scene->getInstancedPhysicsScenes().at(0), instanced);
    EXPECT_EQ(scene->generateID(), "OID4");
}

TEST_F(MaterialEvents, SwitchTechniquesAndFallSilentAfterStop) {
    const auto material = scene->getMaterialWithID("defaultMaterial");
    send("L_MaterialTechniqueChanged", "defaultMaterial,toon");
    EXPECT_EQ(material->getTechnique(), "toon");
    send("L_MaterialTechniqueChanged", "defaultMaterial");
    EXPECT_EQ(material->getTechnique(), "");
    scene->stop();
    send("L_MaterialTechniqueChanged", "defaultMaterial,toon");
    EXPECT_EQ(material->getTechnique(), "");
}

}  // namespace
}  // namespace vantorix::test
