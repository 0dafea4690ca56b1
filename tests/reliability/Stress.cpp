// vantorix_stress [--seconds N]: scenes that are played, edited, read, stopped and released by many
// threads at once, again and again. To be run under ThreadSanitizer. Fails when a scene no longer
// agrees with itself.

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"
#include "core_api/system/MillisecClock.h"

#include "scene/animation/AnimationManager.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/Ray.h"
#include "tests/reliability/SceneCheck.h"
#include "tests/reliability/ScriptedScene.h"

namespace vantorix::test {
namespace {

using namespace vantorix::scene;
using core::event::EventManager;

/// Holds the scene lock while it stands.
struct Locked {
    explicit Locked(SceneManager& locked) : scene(locked) { scene.lockScene(); }
    Locked(const Locked&) = delete;
    ~Locked() { scene.unlockScene(); }
    SceneManager& scene;
};

/// One scene and the threads that work on it until they are told to end.
class Round {
public:
    explicit Round(unsigned int seed) : random_(seed), listener_(events_) {
        for (const auto* name : {"SyncScene", "NodeTransformationUpdate", "NodeNewChild"}) {
            listener_.registerHandler(core::event::EventType(name),
                                      [this](const core::event::Event&) { ++heard; });
        }
        for (const auto& step : ScriptedScene::script()) step.run(scripted_);
        octree_.setSceneNode(scripted_.scene->getRoot());
        octree_.calculate(4, 8);
        scripted_.scene->addSceneController(scripted_.player);
        scripted_.player->resume();
    }

    /// @returns whether the scene agrees with itself in the end.
    bool run(std::chrono::milliseconds duration) {
        boost::thread_group threads;
        for (int i = 0; i < 3; ++i) start(threads, &Round::edit);
        start(threads, &Round::read);
        start(threads, &Round::control);
        boost::this_thread::sleep_for(boost::chrono::milliseconds(duration.count()));
        if (random_() % 2 == 0) scripted_.scene->stop();  // While the others still work.
        isOver_ = true;
        threads.join_all();
        const Locked lock(*scripted_.scene);
        return findTreeFaults(*scripted_.scene).empty();
    }

    std::atomic<long> edits{0}, reads{0}, heard{0};

private:
    using Work = void (Round::*)(std::mt19937& random);

    void start(boost::thread_group& threads, Work work) {
        threads.create_thread([this, work, seed = random_()] {
            std::mt19937 random(seed);
            while (!isOver_) {
                (this->*work)(random);
                boost::this_thread::yield();
            }
        });
    }

    void edit(std::mt19937& random) {
        auto& scene = *scripted_.scene;
        const auto node = boost::make_shared<Node>(scripted_.scene);
        const Locked lock(scene);
        const auto nodes = scene.getNodeArray();
        const auto chosen = nodes[random() % nodes.size()];
        ++edits;
        switch (random() % 8) {
            case 0:
                return scene.removeNode(chosen);
            case 1:
                return chosen->setID("n" + std::to_string(random() % 50));
            case 2:
                return chosen->setVisible(random() % 2 == 0);
            case 3:
                return scene.triggerEvent("L_MaterialParameterUpdated", "red,shine,0.25,float");
            case 4:
                if (nodes.size() < 100) scene.mergeSceneManager(scripted_.other, 0x0F, "n7");
                return;
            case 5:
                return scene.getGeometryManager()->recalculateVertexNormals("flag");
            default:
                if (nodes.size() < 300) chosen->addNode(node);
                return chosen->addTranslation(0.5f, 0, 0);
        }
    }

    void read(std::mt19937& random) {
        {
            const Locked lock(*scripted_.scene);
            for (const auto& node : scripted_.scene->getNodeArray()) {
                node->getCombinedTransformations();
            }
            scripted_.scene->getNodeByID("n" + std::to_string(random() % 50));
        }
        octree_.pickAll(Ray({0.1f * static_cast<float>(random() % 40), 1, 9}, {0, 0, -1}));
        ++reads;
    }

    void control(std::mt19937& random) {
        const auto& player = scripted_.player;
        player->setTime(boost::posix_time::milliseconds(random() % 2000));
        if (random() % 4 == 0) player->pause();
        player->resume();
        if (random() % 8 == 0) {
            scripted_.scene->setClock(boost::make_shared<core::system::MillisecClock>(true));
        }
        if (random() % 16 == 0) {
            const bool isOwn = random() % 4 > 0;
            scripted_.scene->setEventManager(isOwn ? events_ : boost::make_shared<EventManager>());
        }
        boost::this_thread::sleep_for(boost::chrono::microseconds(random() % 500));
    }

    std::mt19937 random_;
    std::atomic<bool> isOver_{false};
    boost::shared_ptr<EventManager> events_ = boost::make_shared<EventManager>();
    core::event::EventBase listener_;
    ScriptedScene scripted_{events_, nullptr};
    Octree octree_;
};

int runFor(std::chrono::seconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    long rounds = 0, edits = 0, reads = 0, heard = 0;
    for (; std::chrono::steady_clock::now() < end; ++rounds) {
        Round round(static_cast<unsigned int>(rounds));
        if (!round.run(std::chrono::milliseconds(200))) {
            std::cerr << "Round " << rounds << ": the scene does not agree with itself\n";
            return EXIT_FAILURE;
        }
        edits += round.edits;
        reads += round.reads;
        heard += round.heard;
    }
    std::cout << rounds << " scenes, " << edits << " edits, " << reads << " reads, " << heard
              << " events heard\n";
    return edits > 0 && reads > 0 && heard > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace vantorix::test

int main(int count, char** texts) {
    const bool isTimed = count == 3 && std::string(texts[1]) == "--seconds";
    vantorix::core::logger::Logger::active = false;
    return vantorix::test::runFor(std::chrono::seconds(isTimed ? std::atol(texts[2]) : 5));
}
