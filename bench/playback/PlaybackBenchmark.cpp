#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "bench/playback/PlaybackCases.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::bench {
namespace {

using boost::posix_time::milliseconds;
using core::utils::Vector;

float keyValue(const std::string& sid, int key, int component) {
    if (sid == "translate") return keyOffset(key);
    if (sid == "scale") return keyScale(key);
    if (component == 3) return keyDegrees(key);
    return component == 2 ? 1.0f : 0.0f;
}

void addChannel(scene::Animation& animation, const std::string& node, const std::string& sid,
                int stride) {
    const auto times = boost::make_shared<scene::Stream>("times", 1, true);
    const auto values = boost::make_shared<scene::Stream>("values", stride, true);
    const auto names = boost::make_shared<scene::Stream>("names", 1, true);
    times->params.emplace_back("TIME", "float");
    for (int key = 0; key < keyCount; ++key) {
        times->values.push_back(keyTime(key));
        for (int i = 0; i < stride; ++i) values->values.push_back(keyValue(sid, key, i));
        names->stringValues.emplace_back("LINEAR");
    }
    times->count = values->count = names->count = keyCount;
    const auto sampler = boost::make_shared<scene::Sampler>(node + "-" + sid);
    sampler->addInput("INPUT", times);
    sampler->addInput("OUTPUT", values);
    sampler->addInput("INTERPOLATION", names);
    animation.addChannel(sampler, node + "/" + sid);
}

template <class Element>
void addElement(scene::Node& node, Element element, const std::string& sid) {
    element.setSid(sid);
    node.addTransformation(boost::make_shared<Element>(element));
}

/// Nodes under one root, each with a translate, a rotate and a scale channel of 100 keys.
struct AnimatedScene {
    explicit AnimatedScene(int nodeCount)
        : scene(boost::make_shared<scene::SceneManager>(
              boost::make_shared<core::event::EventManager>())) {
        scene->stop();
        scene->setEventManager(boost::make_shared<core::event::EventManager>());
        const auto animation = boost::make_shared<scene::Animation>("animation", "");
        for (int i = 0; i < nodeCount; ++i) addNode(*animation, "animated" + std::to_string(i));
        manager->attach(scene);
        manager->setAnimation(animation);
    }

    void addNode(scene::Animation& animation, const std::string& id) {
        const auto node = boost::make_shared<scene::Node>(scene);
        node->setID(id);
        scene->getRoot()->addNode(node);
        addElement(*node, scene::TransformationTranslate(), "translate");
        addElement(*node, scene::TransformationRotate(Vector<float, 3>(0, 0, 1), 0), "rotate");
        addElement(*node, scene::TransformationScale(), "scale");
        addChannel(animation, id, "translate", 3);
        addChannel(animation, id, "rotate", 4);
        addChannel(animation, id, "scale", 3);
        nodes.push_back(node);
    }

    /// Goes to @p time, updates, and reads all world matrices; their sum tells whether it worked.
    float show(int time) {
        manager->setTime(milliseconds(time));
        manager->update(milliseconds(0));
        float sum = 0;
        for (const auto& node : nodes) sum += node->getCombinedTransformations()(0, 3);
        return sum;
    }

    bool isAt(int time) const {
        const auto world = nodes.back()->getCombinedTransformations();
        return isPoseAt(time, world(2, 3), world(1, 0));
    }

    boost::shared_ptr<scene::SceneManager> scene;
    boost::shared_ptr<scene::AnimationManager> manager =
        boost::make_shared<scene::AnimationManager>();
    std::vector<boost::shared_ptr<scene::Node>> nodes;
};

// All nodes together have about 1 KB of streams to be read for each channel: beyond some thousand
// nodes the memory decides.
void playInSequence(benchmark::State& state) { playFrames<AnimatedScene>(state); }
BENCHMARK(playInSequence)->Arg(100)->Arg(1000)->Arg(10000);

void playAtRandom(benchmark::State& state) { playAnyTimes<AnimatedScene>(state); }
BENCHMARK(playAtRandom)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace
}  // namespace vantorix::bench
