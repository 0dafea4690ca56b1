// Edits a scene while its own thread plays an animation in it.

#include <atomic>
#include <chrono>
#include <core_api/core_api.h>
#include <cstdlib>
#include <iostream>
#include <scene/scene.h>
#include <thread>

#include <boost/make_shared.hpp>

using namespace vantorix::core::event;
using namespace vantorix::scene;

namespace {

/// Holds the scene lock for as long as it stands.
struct Locked {
    explicit Locked(SceneManager& locked) : scene(locked) { scene.lockScene(); }
    Locked(const Locked&) = delete;
    ~Locked() { scene.unlockScene(); }
    SceneManager& scene;
};

boost::shared_ptr<Node> addNode(const boost::shared_ptr<SceneManager>& scene, const char* id) {
    const auto node = boost::make_shared<Node>(scene);
    node->setID(id);
    scene->getRoot()->addNode(node);
    return node;
}

/// An animation of @p node that lasts ten seconds: its place now and then.
boost::shared_ptr<Animation> makeAnimation(const boost::shared_ptr<Node>& node) {
    const auto place = boost::make_shared<TransformationMatrix>();
    place->setSid("place");
    node->addTransformation(place);
    const auto animation = boost::make_shared<Animation>("ride", "");
    animation->getChannel(node->getID(), node->getID() + "/place", place);
    animation->insertTransformations(node, place, 0);
    node->addTranslation(10, 0, 0);
    animation->insertTransformations(node, place, 10);
    return animation;
}

}  // namespace

int main() {
    const auto events = boost::make_shared<EventManager>();
    const auto scene = boost::make_shared<SceneManager>(events);
    const auto train = addNode(scene, "train");
    const auto left = addNode(scene, "left gate"), right = addNode(scene, "right gate");

    // "SyncScene" comes on the scene's thread, with no lock held: take it to look at the scene.
    std::atomic<int> frames{0}, tornFrames{0};
    EventBase watcher(events);
    watcher.registerHandler(EventType("SyncScene"), [&](const Event&) {
        const Locked lock(*scene);
        if (left->getTranslation().y() != right->getTranslation().y()) ++tornFrames;
        ++frames;
    });

    const auto player = boost::make_shared<AnimationManager>();
    scene->addSceneController(player);  // attaches it; from now on the thread drives it
    {
        const Locked lock(*scene);
        player->setAnimation(makeAnimation(train));
    }
    player->resume();  // playback controls need no lock

    // Both gates move in one edit: nobody who takes the lock sees one up and the other down.
    int edits = 0;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (frames < 10 && std::chrono::steady_clock::now() < giveUp) {
        {
            const Locked lock(*scene);
            left->addTranslation(0, 0.01f, 0);
            right->addTranslation(0, 0.01f, 0);
        }
        ++edits;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    scene->stop();  // from here on no thread but ours

    std::cout << edits << " edits during " << frames << " frames, " << tornFrames
              << " of them torn; the train is at x = " << train->getTranslation().x() << '\n';
    const bool isRight = frames >= 10 && tornFrames == 0 && train->getTranslation().x() > 0;
    return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
