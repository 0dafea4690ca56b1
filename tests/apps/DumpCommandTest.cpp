#include <sstream>

#include <nlohmann/json.hpp>

#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/SceneDump.h"
#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationSkew.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;
using DumpCommand = Program;
using JournalCommand = Program;

constexpr const char* dumpedFigure = VANTORIX_SAMPLES "/figure.dae";

std::vector<float> floatsOf(const json& list) {
    std::vector<float> values;
    for (const auto& value : list) values.push_back(value.get<float>());
    return values;
}

std::string dumpOf(scene::SceneManager& scene) {
    std::string text;
    cli::dumpScene(scene, "test", [&text](const std::string& part) { text += part; });
    return text;
}

TEST_F(DumpCommand, ReadsBackAsTheSceneItWasMadeFrom) {
    const auto first = run(std::string("dump '") + dumpedFigure + "'");
    ASSERT_EQ(first.exitCode, 0) << first.err;
    EXPECT_EQ(run(std::string("dump '") + dumpedFigure + "'").out, first.out);
    const auto dump = json::parse(first.out);
    EXPECT_EQ(dump["format"], "vantorix-scene-1");

    const cli::LoadedModel model(dumpedFigure);
    auto& scene = model.getScene();
    const auto nodes = scene.getNodeArray();
    ASSERT_EQ(dump["nodes"].size(), nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const auto& node = dump["nodes"][i];
        EXPECT_EQ(node["id"], nodes[i]->getID());
        const Eigen::Matrix4f local = nodes[i]->getTransformations();
        EXPECT_EQ(floatsOf(node["matrix"]), std::vector<float>(local.data(), local.data() + 16));
        EXPECT_EQ(node["elements"].size(), nodes[i]->getOriginalTransformations().size());
        if (const auto parent = nodes[i]->getParent()) {
            EXPECT_EQ(dump["nodes"][node["parent"].get<std::size_t>()]["id"], parent->getID());
        }
    }
    for (const auto& geometry : dump["geometries"]) {
        const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(
            scene.getGeometryManager()->getGeometry(geometry["id"]));
        ASSERT_TRUE(mesh);
        for (const auto& stream : geometry["streams"]) {
            const auto values = mesh->getStream(stream["name"])->values;
            EXPECT_EQ(floatsOf(stream["values"]), static_cast<std::vector<float>>(values));
        }
        EXPECT_EQ(geometry["primitives"][0]["indices"].get<std::vector<unsigned int>>(),
                  mesh->getPrimitive(0)->getIndexStream());
    }
    const auto controller = scene.getControllersLibrary()[0];
    EXPECT_EQ(dump["controllers"][0]["skin"]["v"].get<std::vector<int>>(),
              controller->getSkin()->getV());
    const auto clip = scene.getAnimationsLibrary()[0];
    EXPECT_EQ(dump["animations"][0]["children"].size(), clip->getChildAnimations().size());
    EXPECT_GT(dump["cameras"].size() + dump["lights"].size(), 0u);
}

TEST_F(DumpCommand, ShowsElementsAndSurvivesOddScenes) {
    const cli::LoadedModel model(folder.path("square.obj"));
    auto& scene = model.getScene();
    const auto node = scene.getRoot();
    using Vector3 = core::utils::Vector<float, 3>;
    node->addTransformation(boost::make_shared<scene::TransformationRotate>(
        Vector3(0, 0, 1), std::numeric_limits<float>::infinity()));
    node->addTransformation(
        boost::make_shared<scene::TransformationSkew>(30.0f, Vector3(1, 0, 0), Vector3()));
    const auto circle = boost::make_shared<scene::Animation>("circle", "");
    circle->addAnimation(circle);
    circle->addChannel({}, "nobody/nothing");
    scene.addAnimation(circle);

    const auto dump = json::parse(dumpOf(scene));
    const auto& elements = dump["nodes"][0]["elements"];
    EXPECT_TRUE(elements[0]["degrees"].is_null());
    EXPECT_EQ(elements[1]["type"], "skew");
    EXPECT_EQ(elements[1]["rotation"], json({1, 0, 0}));
    const auto& animation = dump["animations"].back();
    EXPECT_TRUE(animation["channels"][0]["sampler"].is_null());
    EXPECT_EQ(animation["children"][0]["id"], "circle");
    scene.removeAllAnimations();
}

TEST_F(JournalCommand, HasALineForEveryEvent) {
    const auto journal = run("journal square.obj");
    ASSERT_EQ(journal.exitCode, 0) << journal.err;
    const auto events = json::parse(run("events --json square.obj").out)["events"];
    std::istringstream lines(journal.out);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const auto event = json::parse(line);
        ASSERT_LT(count, events.size());
        EXPECT_EQ(event["number"], count + 1);
        EXPECT_EQ(event["event"], events[count]["name"]);
        EXPECT_EQ(event["data"], events[count]["data"]);
    }
    EXPECT_EQ(count, events.size());
    EXPECT_EQ(run("journal missing.obj").exitCode, 3);
}

}  // namespace
}  // namespace vantorix::apps
