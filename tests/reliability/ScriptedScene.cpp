#include "tests/reliability/ScriptedScene.h"

#include <utility>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Camera.h"
#include "scene/animation/Light.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Effect.h"
#include "scene/material/Image.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/Ray.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::test {

using namespace vantorix::scene;

namespace {

using Floats = std::vector<float>;
using Indices = std::vector<unsigned int>;

constexpr unsigned int side = 3;  // Vertices along one edge of the cloth.

boost::shared_ptr<Stream> makeStream(const char* name, int stride, const Floats& values) {
    const auto stream = boost::make_shared<Stream>(name, stride, true);
    stream->values = values;
    stream->count = static_cast<int>(values.size()) / stride;
    return stream;
}

/// Two triangles per cell; each record is position, normal, texture coordinate.
Indices clothRecords() {
    Indices records;
    for (unsigned int cell = 0; cell < (side - 1) * (side - 1); ++cell) {
        const unsigned int corner = cell / (side - 1) * side + cell % (side - 1);
        for (const auto vertex :
             {corner, corner + 1, corner + side + 1, corner, corner + side + 1, corner + side}) {
            records.insert(records.end(), {vertex, 0u, vertex});
        }
    }
    return records;
}

boost::shared_ptr<Mesh> makeCloth(const std::string& id, float height) {
    Floats positions, coordinates;
    for (unsigned int i = 0; i < side * side; ++i) {
        const auto x = static_cast<float>(i % side), y = static_cast<float>(i / side);
        positions.insert(positions.end(), {x, y, height * x * y});
        coordinates.insert(coordinates.end(), {x / 2, y / 2});
    }
    const auto places = makeStream("positions", 3, positions);
    const auto normals = makeStream("normals", 3, {0, 0, 1});
    const auto texture = makeStream("texture", 2, coordinates);
    const auto mesh = boost::make_shared<Mesh>(id, "cloth");
    mesh->setStreams({places, normals, texture});
    mesh->addVerticesMapping(StreamMapping(POSITION, places, 0));
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
        mesh,
        std::vector<StreamMapping>{StreamMapping(VERTEX, places, 0),
                                   StreamMapping(NORMAL, normals, 1),
                                   StreamMapping(TEXCOORD0, texture, 2)},
        clothRecords()));
    return mesh;
}

/// Every vertex follows both joints, more and more the second one.
boost::shared_ptr<Controller> makeSkin(const boost::shared_ptr<Mesh>& mesh) {
    const auto joints = boost::make_shared<Stream>("joints", 1, true);
    joints->stringValues = {"arm", "hand"};
    const auto binds = makeStream("binds", 16, Floats(32, 0.5f));
    Floats shares;
    std::vector<int> pairs;
    for (int vertex = 0; vertex < static_cast<int>(side * side); ++vertex) {
        const float share = static_cast<float>(vertex) / static_cast<float>(side * side);
        shares.insert(shares.end(), {1 - share, share});
        pairs.insert(pairs.end(), {0, 2 * vertex, 1, 2 * vertex + 1});
    }
    const auto skin = boost::make_shared<Skin>(mesh);
    skin->setStreams({joints, binds, makeStream("weights", 1, shares)});
    skin->setJointsInput("JOINT", "joints");
    skin->setJointsInput("INV_BIND_MATRIX", "binds");
    skin->setVertexWeightsInput("JOINT", "joints");
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount(Indices(side * side, 2));
    skin->setV(pairs);
    const auto controller = boost::make_shared<Controller>("skin", "");
    controller->setSkin(skin);
    return controller;
}

boost::shared_ptr<Node> add(const boost::shared_ptr<SceneManager>& scene, Node& parent,
                            const std::string& id, float x) {
    const auto node = boost::make_shared<Node>(scene);
    node->setID(id);
    node->setName("name of " + id);
    parent.addNode(node);
    node->addTranslation(x, 1, 0);
    return node;
}

void fill(const boost::shared_ptr<SceneManager>& scene, float size) {
    const auto root = scene->getRoot();
    root->setID("root");
    const auto cloth = makeCloth("cloth", size);
    const auto flag = makeCloth("flag", -size);
    scene->getGeometryManager()->addGeometry(cloth);
    scene->getGeometryManager()->addGeometry(flag);
    scene->addController(makeSkin(cloth));
    scene->addImage(boost::make_shared<Image>("linen", "linen.png", ""));
    scene->addEffect(boost::make_shared<Effect>("woven", "woven.fx", ""));
    const auto material = boost::make_shared<Material>("red", "woven");
    scene->addMaterial(material);
    const auto arm = add(scene, *root, "arm", size);
    const auto hand = add(scene, *arm, "hand", 2 * size);
    arm->setType("JOINT");
    hand->setType("JOINT");
    add(scene, *hand, "cloth", 1)
        ->addInstanceGeometry(boost::make_shared<InstanceGeometry>(cloth, material));
    add(scene, *arm, "flag", 3)
        ->addInstanceGeometry(boost::make_shared<InstanceGeometry>(flag, material));
    scene->addLight(boost::make_shared<Light>(scene, Light::POINT, "sun", ""));
}

boost::shared_ptr<Animation> makeAnimation(const boost::shared_ptr<Node>& node) {
    const auto place = boost::make_shared<TransformationMatrix>();
    place->setSid("place");
    node->addTransformation(place);
    const auto animation = boost::make_shared<Animation>("wave", "");
    animation->getChannel(node->getID(), node->getID() + "/place", place);
    for (int key = 0; key < 4; ++key) {
        animation->insertTransformations(node, place, 0.5f * static_cast<float>(key));
        node->addTranslation(0.25f, 0, 0.5f);
        node->rotate(Eigen::AngleAxisf(0.4f, Eigen::Vector3f::UnitZ()).toRotationMatrix());
    }
    // No key leads to these yet: the first that is recorded makes an element and a channel each.
    for (const char* target : {"thumb/transform", "flag/transform", "hand/transform"}) {
        animation->addChannel(nullptr, target);
    }
    return animation;
}

boost::shared_ptr<SceneManager> makeJoints() {
    const auto joints = boost::make_shared<SceneManager>(nullptr);
    const auto mesh = boost::make_shared<Mesh>("joints", "");
    mesh->setVertices({StreamMapping(POSITION, makeStream("places", 3, {1, 2, 3, 2, 3, 5}), 0)});
    joints->getGeometryManager()->addGeometry(mesh);
    return joints;
}

void edit(ScriptedScene& s) {
    const auto child = boost::make_shared<Node>(s.scene);
    child->setID("finger");
    s.node("hand")->addNode(child);
    child->setName("ring finger");
    child->move(1, 2, 3);
    child->scale({2, 1, 0.5f});
    child->addTransformation(boost::make_shared<TransformationRotate>());
    child->addTransformation(boost::make_shared<TransformationTranslate>());
    child->setTransformations(s.node("arm")->getCombinedTransformations());
}

void reparent(ScriptedScene& s) {
    const auto flag = s.node("flag");
    s.scene->removeNode(flag);
    s.node("hand")->addNode(flag);
    s.node("finger")->setID("thumb");
    s.node("thumb")->setName("");
}

void removeAndReadd(ScriptedScene& s) {
    const auto thumb = s.node("thumb");
    s.scene->removeNode(thumb);
    s.scene->removeNode(thumb);
    s.node("arm")->addNode(thumb);
}

void layers(ScriptedScene& s) {
    const auto arm = s.node("arm");
    arm->addToLayer("props");
    arm->setVisible(false);
    arm->setVisible(true);
    arm->removeFromLayer("props");
    s.node("hand")->addToLayer(s.scene->getLayerManager()->addLayer("limbs"));
}

void materials(ScriptedScene& s) {
    s.scene->triggerEvent("L_NewEffect", "glossy,glossy.fx");
    s.scene->triggerEvent("L_NewMaterial", "blue,glossy");
    s.scene->triggerEvent("L_MaterialParameterUpdated", "blue,shine,0.5,float");
    s.scene->triggerEvent("L_MaterialParameterUpdated", "blue,map,grain.png,texture");
    s.scene->triggerEvent("L_MaterialTechniqueChanged", "blue,toon");
}

void bindMaterials(ScriptedScene& s) {
    s.node("cloth")->setMaterial(s.scene->getMaterialWithID("blue"), 0, 0);
    s.scene->setMaterialList(s.scene->getMaterialList());
    s.scene->removeEffect(s.scene->getEffectByID("defaultEffect"));
    s.scene->setSurrounding(boost::make_shared<Image>("sky", "sky.png", ""));
}

void camerasAndLights(ScriptedScene& s) {
    s.scene->setUpAxis(Z_UP);
    const auto camera = s.scene->createNewCamera(Camera::PERSPECTIVE, "eye", "arm");
    if (const auto eye = s.scene->getCameraByID(camera)) eye->setYFov(60);
    s.scene->createNewLight(Light::SPOT, "lamp", "lamp", "hand");
    if (const auto lamp = s.scene->getLightByID("lamp")) lamp->setColor(1, 0.5f, 0);
}

void morph(ScriptedScene& s) { s.scene->morph(s.other, 0.25f); }

void replaceJoints(ScriptedScene& s) {
    const auto joints = makeJoints();
    s.scene->replaceJoints(joints);
    joints->stop();
}

void setAnimation(ScriptedScene& s) {
    s.scene->setAnimationManager(s.player);
    s.player->attach(s.scene);
    const auto animation = makeAnimation(s.node("arm"));
    s.scene->addAnimation(animation);
    s.player->setAnimation(animation);
}

void play(ScriptedScene& s) {
    s.player->resume();
    for (int frame = 0; frame < 8; ++frame) s.player->update(boost::posix_time::milliseconds(130));
    s.player->setTime(boost::posix_time::milliseconds(333));
    s.player->update(boost::posix_time::milliseconds(0));
}

void editKeys(ScriptedScene& s) {
    s.player->insertKeyframe(0.75f);
    s.player->setTime(boost::posix_time::milliseconds(800));
    s.player->update(boost::posix_time::milliseconds(0));
    s.player->removeKeyFrame(s.player->getAnimation(), 0.75f);
    s.player->addAnimationCamera();
}

void normals(ScriptedScene& s) { s.scene->getGeometryManager()->recalculateVertexNormals("flag"); }

void subdivideWithSkin(ScriptedScene& s) {
    const auto controller = s.scene->getControllerById("skin");
    s.scene->getGeometryManager()->subDivideGeometry("cloth", controller);
}

void subdivide(ScriptedScene& s) {
    s.scene->getGeometryManager()->subDivideGeometry("flag", nullptr);
}

void buildOctree(ScriptedScene& s) {
    Octree octree;
    octree.setSceneNode(s.scene->getRoot());
    octree.calculate(4, 4);
    for (float x = -1; x < 4; x += 0.5f) octree.pickAll(Ray({x, x, 9}, {0.1f, 0, -1}));
}

void measure(ScriptedScene& s) {
    s.scene->getRoot()->getBVMin();
    s.node("hand")->getBVCenter();
    s.node("thumb")->getCombinedTransformations();
    s.scene->getNodeByName("name of hand");
}

template <int options>
void merge(ScriptedScene& s) {
    s.scene->mergeSceneManager(s.other, options, "hand");
}

void mergeIntoItself(ScriptedScene& s) { s.scene->mergeSceneManager(s.scene, 0, ""); }

void replaceRoot(ScriptedScene& s) {
    const auto root = boost::make_shared<Node>(s.scene);
    const auto former = s.scene->getRoot();
    s.scene->setRoot(root);
    root->addNode(former);
}

}  // namespace

ScriptedScene::ScriptedScene(EventManagerPtr sceneEvents, EventManagerPtr otherEvents)
    : scene(boost::make_shared<SceneManager>(std::move(sceneEvents))),
      other(boost::make_shared<SceneManager>(std::move(otherEvents))),
      player(boost::make_shared<AnimationManager>()) {
    fill(scene, 1);
    fill(other, 2);
    add(other, *other->getRoot(), "stranger", 5)->addToLayer("guests");
}

ScriptedScene::~ScriptedScene() {
    if (scene) scene->stop();
    if (other) other->stop();
}

boost::shared_ptr<Node> ScriptedScene::node(const std::string& id) const {
    const auto found = scene->getNodeByID(id);
    return found ? found : scene->getRoot();
}

boost::shared_ptr<Mesh> ScriptedScene::mesh(const std::string& id) const {
    const auto found =
        boost::dynamic_pointer_cast<Mesh>(scene->getGeometryManager()->getGeometry(id));
    return found ? found : boost::make_shared<Mesh>(id, "");
}

const std::vector<ScriptedScene::Step>& ScriptedScene::script() {
    static const std::vector<Step> steps = {{"edit", edit},
                                            {"reparent", reparent},
                                            {"removeAndReadd", removeAndReadd},
                                            {"layers", layers},
                                            {"materials", materials},
                                            {"bindMaterials", bindMaterials},
                                            {"camerasAndLights", camerasAndLights},
                                            {"morph", morph},
                                            {"replaceJoints", replaceJoints},
                                            {"setAnimation", setAnimation},
                                            {"play", play},
                                            {"editKeys", editKeys},
                                            {"normals", normals},
                                            {"subdivideWithSkin", subdivideWithSkin},
                                            {"subdivide", subdivide},
                                            {"buildOctree", buildOctree},
                                            {"measure", measure},
                                            {"mergeDiscarding", merge<0x1F>},
                                            {"mergeIntoChildren", merge<0x20>},
                                            {"mergeRenaming", merge<0>},
                                            {"mergeIntoItself", mergeIntoItself},
                                            {"replaceRoot", replaceRoot}};
    return steps;
}

}  // namespace vantorix::test
