// Slides a door open: two key frames, one channel, and a manager that plays them.

#include <cmath>
#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

using namespace vantorix::scene;
using boost::posix_time::milliseconds;

namespace {

boost::shared_ptr<Stream> makeStream(const std::string& name, int stride,
                                     const std::vector<float>& values) {
    const auto stream = boost::make_shared<Stream>(name, stride, true);
    for (std::size_t i = 0; i < values.size(); i += static_cast<std::size_t>(stride)) {
        stream->insertValue(stride, &values[i]);
    }
    return stream;
}

/// Keys at 0 s and 2 s; the door is at x = 0 and x = 1.5.
boost::shared_ptr<Sampler> makeKeys() {
    const auto times = makeStream("times", 1, {0, 2});
    times->params.emplace_back("TIME", "float");  // key times are recognised by their one parameter
    const auto places = makeStream("places", 3, {0, 0, 0, 1.5f, 0, 0});
    const auto ways = boost::make_shared<Stream>("ways", 1, true);
    ways->stringValues = {"LINEAR", "LINEAR"};
    ways->count = 2;

    const auto sampler = boost::make_shared<Sampler>("keys");
    sampler->addInput("INPUT", times);
    sampler->addInput("OUTPUT", places);
    sampler->addInput("INTERPOLATION", ways);
    return sampler;
}

}  // namespace

int main() {
    const auto events = boost::make_shared<vantorix::core::event::EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);

    // What a channel drives is a transformation element with a SID.
    const auto door = boost::make_shared<Node>(scene);
    door->setID("door");
    const auto slide = boost::make_shared<TransformationTranslate>();
    slide->setSid("slide");
    door->addTransformation(slide);
    scene->getRoot()->addNode(door);

    const auto opening = boost::make_shared<Animation>("opening", "");
    opening->addChannel(makeKeys(), "door/slide");
    scene->addAnimation(opening);

    const auto player = boost::make_shared<AnimationManager>();
    player->attach(scene);
    player->setAnimation(opening);
    std::cout << "lasts " << player->getLoopDuration().total_milliseconds() << " ms\n";

    // An application lets the scene drive the manager, with addSceneController. Here we are the
    // clock ourselves, so that every run prints the same.
    player->resume();
    bool isRight = true;
    for (int quarter = 1; quarter < 4; ++quarter) {
        player->update(milliseconds(500));
        const float x = door->getTranslation().x();
        std::cout << player->getCurrentTime().total_milliseconds() << " ms: x = " << x << '\n';
        isRight = isRight && std::abs(x - 0.375f * static_cast<float>(quarter)) < 1e-4f;
    }
    scene->stop();
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
