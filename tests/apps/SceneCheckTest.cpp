#include <limits>

#include <gmock/gmock.h>

#include "apps/check/SceneCheck.h"
#include "scene/animation/Animation.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Sampler.h"
#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/PolygonMeshPrimitive.h"
#include "scene/material/Effect.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/apps/Program.h"
#include "tests/apps/SceneMaking.h"

namespace vantorix::apps {
namespace {

using namespace scene;
using render::QuietScene;
using Floats = std::vector<float>;
using Lines = std::vector<std::string>;
using StreamPointer = boost::shared_ptr<Stream>;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Lines findingsOf(SceneManager& scene) {
    Lines lines;
    for (const auto& finding : check::SceneCheck(scene).run()) {
        std::string line =
            std::string(check::nameOf(finding.kind)) + " | " + finding.place + " | " + finding.text;
        for (const auto position : finding.positions) line += " " + std::to_string(position);
        lines.push_back(line);
    }
    return lines;
}

StreamPointer counted(const std::string& name, int stride, const Floats& values) {
    const auto stream = render::makeStream(name, stride, values);
    stream->count = static_cast<int>(values.size()) / stride;
    return stream;
}

StreamPointer texts(const std::string& name, const Lines& values) {
    const auto stream = boost::make_shared<Stream>(name, 1, true);
    stream->stringValues = values;
    stream->count = static_cast<int>(values.size());
    return stream;
}

/// One of everything, in order: a skinned and animated board.
struct SoundScene : QuietScene {
    SoundScene() {
        mesh->addStream(positions);
        mesh->addVerticesMapping({POSITION, positions, 0});
        mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
            mesh, std::vector<StreamMapping>{render::vertexMapping(), {NORMAL, normals, 1}},
            std::vector<unsigned int>{0, 0, 1, 0, 2, 0, 0, 0, 2, 0, 3, 0}));
        manager->getGeometryManager()->addGeometry(mesh);
        manager->addEffect(boost::make_shared<Effect>("effect", "file", ""));
        manager->addMaterial(material);
        node->setID("board");
        joint->setID("hip");
        addSkin();
        addElement<TransformationMatrix>("transform");
        addElement<TransformationTranslate>("translate");
        manager->addAnimation(animation);
        addChannel("hip/transform", {0, 1}, counted("values", 16, Floats(32, 0.5f)));
        addChannel("hip/translate.Y", {0, 1}, counted("values", 1, {0, 1}));
    }

    void addSkin() {
        skin->setStreams({texts("joints", {"hip"}), matrices, weights});
        skin->setJointsInput("JOINT", "joints");
        skin->setJointsInput("INV_BIND_MATRIX", "matrices");
        skin->setVertexWeightsInput("JOINT", "joints");
        skin->setVertexWeightsInput("WEIGHT", "weights");
        skin->setVCount({1, 1, 1, 1});
        skin->setV({0, 0, 0, 0, 0, 0, -1, 0});
        controller->setSkin(skin);
        manager->addController(controller);
        const auto shown = boost::make_shared<InstanceController>(
            boost::make_shared<InstanceGeometry>(mesh, material), controller);
        shown->setSkeletons({"hip"});
        node->addInstanceController(shown);
    }

    template <class Element>
    void addElement(const std::string& sid) {
        const auto element = boost::make_shared<Element>();
        element->setSid(sid);
        joint->addTransformation(element);
    }

    boost::shared_ptr<Sampler> addChannel(const std::string& target, const Floats& times,
                                          StreamPointer values) {
        const auto sampler = boost::make_shared<Sampler>("sampler");
        sampler->addInput("INPUT", counted("times", 1, times));
        sampler->addInput("OUTPUT", values);
        sampler->addInput("INTERPOLATION", texts("names", Lines(times.size(), "LINEAR")));
        animation->addChannel(sampler, target);
        return sampler;
    }

    const boost::shared_ptr<Mesh> mesh = boost::make_shared<Mesh>("sheet", "");
    const StreamPointer positions = counted("positions", 3, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    const StreamPointer normals = counted("normals", 3, {0, 0, 1});
    const StreamPointer matrices = counted("matrices", 16, Floats(16, 0.0f));
    const StreamPointer weights = counted("weights", 1, {1});
    const boost::shared_ptr<Material> material = boost::make_shared<Material>("paint", "effect");
    const boost::shared_ptr<Skin> skin = boost::make_shared<Skin>(mesh);
    const boost::shared_ptr<Controller> controller = boost::make_shared<Controller>("bend", "");
    const boost::shared_ptr<Animation> animation = boost::make_shared<Animation>("walk", "");
    const boost::shared_ptr<Node> node = addNode();
    const boost::shared_ptr<Node> joint = addNode();
};

TEST(SceneCheck, SaysNothingAboutASoundScene) {
    EXPECT_EQ(findingsOf(*SoundScene().manager), Lines());
}

TEST(SceneCheck, ListsEverythingInABrokenMesh) {
    SoundScene scene;
    // A flat and a far triangle, a polygon with two corners on one spot, one past the end; a
    // position that only the far triangle would use.
    scene.positions->values = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, nan, 0, 0, 9};
    scene.skin->setVCount({1, 1, 1, 1, 0});
    scene.normals->stride = 2;
    const auto set = counted("set", 5, Floats(5, 0.0f));
    const std::vector<StreamMapping> mappings{render::vertexMapping(), {TEXCOORD0, set, 1}};
    const std::vector<unsigned int> indices{0, 0, 1, 0, 1, 0, 0, 0, 2, 7, 99, 0, 5};
    scene.mesh->addPrimitive(
        boost::make_shared<TriangleMeshPrimitive>(scene.mesh, mappings, indices));
    scene.mesh->addPrimitive(boost::make_shared<PolygonMeshPrimitive>(
        scene.mesh, std::vector<StreamMapping>{render::vertexMapping(), {COLOR, nullptr, 0}},
        std::vector<unsigned int>{0, 1, 2, 3, 1, 2, 1, 2},
        std::vector<unsigned int>{4, 0, 4, 4, 3, 6}));
    scene.mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        scene.mesh, std::vector<StreamMapping>{{TEXCOORD1, set, -4}},
        std::vector<unsigned int>{0, 0, 0}));
    EXPECT_THAT(
        findingsOf(*scene.manager),
        testing::ElementsAre(
            "not-finite | geometry sheet, stream positions | tuples with infinity or NaN 4",
            "stride | geometry sheet, stream positions | 16 values for stride 3",
            "count | geometry sheet, stream positions | counts 4 tuples and has 5",
            "stride | geometry sheet, stream normals | 3 values for stride 2",
            "stride | geometry sheet, stream normals | stride 2 for NORMAL",
            "stride | geometry sheet, stream set | stride 5 for TEXCOORD",
            "stride | geometry sheet, stream set | stride 5 for TEXCOORD1",
            "count | geometry sheet, primitive 1 | 13 indices in records of 2",
            "index | geometry sheet, primitive 1 | records past the 5 tuples of POSITION 5 6",
            "index | geometry sheet, primitive 1 | records past the 1 tuples of TEXCOORD 4",
            "degenerate | geometry sheet, primitive 1 | faces 0",
            "orphan | geometry sheet, primitive 2 | no stream for COLOR",
            "index | geometry sheet, primitive 2 | polygons past the end of the indices 2",
            "degenerate | geometry sheet, primitive 2 | faces 1",
            "index | geometry sheet, primitive 3 | offset -4 in records of 1",
            "unused | geometry sheet | positions 4"));
}

TEST(SceneCheck, ListsEverythingInBrokenReferences) {
    SoundScene scene;
    scene.joint->setID("board");
    scene.node->addNode(scene.addNode());
    scene.node->getChildNode(0)->setID("a/b");
    scene.node->setScale({nan, 1, 1});
    scene.manager->setMaterialList({scene.material, boost::make_shared<Material>("plain", "none")});
    scene.material->addMaterialParameter(
        boost::make_shared<MaterialParameter>("map", "texture", "picture"));
    scene.mesh->getPrimitive(0)->setMaterialSymbol("other");
    scene.node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(
        boost::make_shared<Mesh>("elsewhere", ""), boost::make_shared<Material>("new", "effect")));
    scene.node->addInstanceGeometry(
        boost::make_shared<InstanceGeometry>(nullptr, boost::shared_ptr<Material>()));
    scene.node->addInstanceController(boost::make_shared<InstanceController>(nullptr, nullptr));
    scene.node->addInstanceLight(
        boost::make_shared<Light>(scene.manager, Light::POINT, "lamp", ""));
    scene.manager->addController(boost::make_shared<Controller>("", ""));
    scene.manager->addCameraInstance(boost::make_shared<CameraInstance>(nullptr, nullptr, "eye"));
    const auto findings = findingsOf(*scene.manager);
    EXPECT_THAT(
        findings,
        testing::ElementsAre(
            "identifier | node a/b | holds ',', '/' or a control character",
            "identifier | node board | repeated, by numbers 1 3",
            "identifier | controller  | empty, of numbers 1",
            "orphan | material paint | no image picture for map",
            "orphan | material plain | no effect none",
            "orphan | controller bend | no node for joint hip",
            "orphan | controller  | neither skin nor morph",
            "not-finite | node board | local matrix",
            "orphan | node board, geometry instance 0 | geometry elsewhere is not in the library",
            "orphan | node board, geometry instance 0 | material new is not in the library",
            "orphan | node board, geometry instance 1 | no geometry",
            "orphan | node board, geometry instance 1 | no material for symbol vantorix_material",
            "orphan | node board, controller instance 0 | symbol other of primitive 0 is not bound",
            "orphan | node board, controller instance 0 | no node for skeleton hip",
            "orphan | node board, controller instance 1 | no controller",
            "orphan | node board, controller instance 1 | no geometry instance",
            "orphan | node board | light lamp is not in the library",
            "orphan | camera instance eye | no camera", "orphan | camera instance eye | no node",
            "channel | animation walk, channel 0 (hip/transform) | no node hip",
            "channel | animation walk, channel 1 (hip/translate.Y) | no node hip"));
}

TEST(SceneCheck, ListsEverythingInABrokenSkinAndAnimation) {
    SoundScene scene;
    scene.matrices->values.resize(32);
    scene.matrices->count = 2;
    scene.weights->values = {-1};
    scene.skin->setVCount({1, 1, 1, 2, 0});
    scene.skin->setV({0, 0, 1, 0, -2, 1, 0, -1});
    scene.skin->setVertexWeightsInput("JOINT", "nothing");
    const auto child = boost::make_shared<Animation>("step", "");
    child->addAnimation(scene.animation);
    child->addChannel(nullptr, "hip/scale");
    scene.animation->addAnimation(child);
    scene.addChannel("hip/transform.X", {0}, counted("values", 16, Floats(16)));
    scene.addChannel("hip/translate", {2, 1}, counted("values", 4, Floats(4)));
    scene.animation->addChannel(boost::make_shared<Sampler>("empty"), "board/x");
    EXPECT_THAT(
        findingsOf(*scene.manager),
        testing::ElementsAre(
            "skin | controller bend | 2 inverse bind matrices for 1 joints",
            "skin | controller bend | 8 entries of V for 5 influences",
            "skin | controller bend | influences of 5 vertices for 4 positions",
            "skin | controller bend | influences of joints that are missing 1 2",
            "skin | controller bend | influences with weights that are missing 2 3",
            "skin | controller bend | influences with negative weights 0 1",
            "channel | animation walk, channel 2 (hip/transform.X) | nothing to animate in element "
            "transform",
            "channel | animation walk, channel 3 (hip/translate) | keys before the one that they "
            "follow 1",
            "stride | animation walk, channel 3 (hip/translate) | stride 4 for OUTPUT, not 3",
            "channel | animation walk, channel 3 (hip/translate) | 1 values for 2 key times",
            "channel | animation walk, channel 4 (board/x) | no element x of node board",
            "channel | animation walk, channel 4 (board/x) | no stream for INPUT",
            "channel | animation walk, channel 4 (board/x) | no stream for OUTPUT",
            "channel | animation walk, channel 4 (board/x) | no stream for INTERPOLATION",
            "channel | animation walk, step, channel 0 (hip/scale) | no element scale of node hip",
            "channel | animation walk, step, channel 0 (hip/scale) | no sampler"));
}

using CheckCommand = Program;

TEST_F(CheckCommand, EndsWithOneAndNamesThePlaceWhenSomethingIsFound) {
    EXPECT_EQ(run("check square.obj").exitCode, 0);
    EXPECT_EQ(run("check square.obj").out, "square.obj: nothing found\n");
    EXPECT_EQ(run("check missing.obj square.obj").exitCode, 3);

    folder.write("flat.obj", "o Flat\nv 0 0 0\nv 1 0 0\nv 2 0 0\nv 0 1 0\nf 1 2 4\nf 1 2 3\n");
    const auto found = run("check square.obj flat.obj");
    EXPECT_EQ(found.exitCode, 1);
    EXPECT_EQ(found.out,
              "square.obj: nothing found\n\nflat.obj: 1 finding\n\nFaces without area\n"
              "  geometry Flat, primitive 0: faces 1\n");
    EXPECT_EQ(found.err, "");
    const auto json = run("check --json flat.obj");
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_THAT(json.out, testing::HasSubstr("\"kind\": \"degenerate\""));
}

}  // namespace
}  // namespace vantorix::apps
