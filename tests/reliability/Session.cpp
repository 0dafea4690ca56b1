// Takes a scene through the script and plays on the scene's own thread after a clock of its own,
// then prints what was announced and what the scene holds as two numbers. They must be the same
// whatever compiler, optimisation, thread timing and addresses.

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/logger/Logger.h"
#include "core_api/system/IClock.h"

#include "apps/vantorix/EventRecorder.h"
#include "apps/vantorix/SceneDump.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/ISceneController.h"
#include "scene/graph/SceneManager.h"
#include "tests/reliability/ScriptedScene.h"
#include "tests/support/CycleControl.h"

namespace vantorix::test {
namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::ptime;
using boost::posix_time::time_duration;

/// Stands still until it is told how far to go.
class ScriptedClock : public core::system::IClock {
public:
    ptime getTime() override {
        return ptime(boost::gregorian::date(2000, 1, 1), milliseconds(now_.load()));
    }
    void advance(int byMilliseconds) { now_ += byMilliseconds; }
    void start() override {}
    void stop() override {}
    void pause() override {}
    void unpause() override {}
    void setSpeed(float) override {}

private:
    std::atomic<int> now_{0};
};

/// Hands on to the player what the clock says, but nothing of what it said before the first cycles.
class DrivenPlayer : public scene::ISceneController {
public:
    explicit DrivenPlayer(boost::shared_ptr<scene::AnimationManager> player)
        : player_(std::move(player)) {}
    bool isReadOnly() override { return false; }
    void attach(boost::shared_ptr<scene::SceneManager>) override {}
    bool update(time_duration elapsed) override {
        const bool isDue = isArmed && elapsed > milliseconds(0);
        const bool changed = isDue && player_->update(elapsed);
        cycles.reach();
        return changed;
    }

    std::atomic<bool> isArmed{false};
    Gate cycles;

private:
    boost::shared_ptr<scene::AnimationManager> player_;
};

void playOnTheScenesThread(ScriptedScene& scripted) {
    const auto clock = boost::make_shared<ScriptedClock>();
    const auto driven = boost::make_shared<DrivenPlayer>(scripted.player);
    Gate frames;
    core::event::EventBase listener(scripted.scene->getEventManager());
    listener.registerHandler(core::event::EventType("SyncScene"),
                             [&frames](const core::event::Event&) { frames.reach(); });
    scripted.player->setTime(milliseconds(0));
    scripted.player->resume();
    scripted.scene->setClock(clock);
    scripted.scene->addSceneController(driven);
    driven->cycles.await(2);  // From here on the time that passed is the clock's.
    driven->isArmed = true;
    for (int frame = 1; frame <= 12; ++frame) {
        clock->advance(70 + frame);
        frames.await(frame);
    }
    scripted.scene->removeSceneController(driven);
}

/// Leaves the heap full of holes, so that new objects come to lie in another order every time.
std::vector<std::unique_ptr<char[]>> scatterTheHeap() {
    std::mt19937 random(std::random_device{}());
    std::vector<std::unique_ptr<char[]>> blocks;
    for (int i = 0; i < 40000; ++i) blocks.emplace_back(new char[16 + random() % 1500]);
    std::shuffle(blocks.begin(), blocks.end(), random);
    blocks.resize(blocks.size() / 2);
    return blocks;
}

/// Takes and leaves the scene lock at random while it stands.
class Disturbance {
public:
    explicit Disturbance(boost::shared_ptr<scene::SceneManager> scene)
        : thread_([this, scene = std::move(scene)] {
              std::mt19937 random(std::random_device{}());
              while (!isOver_) {
                  scene->lockScene();
                  for (auto i = random() % 2000; i > 0; --i) boost::this_thread::yield();
                  scene->unlockScene();
                  boost::this_thread::sleep_for(boost::chrono::microseconds(random() % 3000));
              }
          }) {}
    ~Disturbance() {
        isOver_ = true;
        thread_.join();
    }

private:
    std::atomic<bool> isOver_{false};
    boost::thread thread_;
};

/// Fowler, Noll and Vo's hash in its variant 1a, 64 bits.
std::string hashOf(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
    std::ostringstream out;
    out << std::hex << std::setw(16) << std::setfill('0') << hash;
    return out.str();
}

struct Record {
    std::string journal;
    std::string dump;
};

Record runSession(bool isDisturbed) {
    const auto holes = isDisturbed ? scatterTheHeap() : decltype(scatterTheHeap()){};
    const auto events = boost::make_shared<apps::cli::EventRecorder>();
    ScriptedScene scripted(events, nullptr);
    {
        std::unique_ptr<Disturbance> disturbance;
        if (isDisturbed) disturbance = std::make_unique<Disturbance>(scripted.scene);
        for (const auto& step : ScriptedScene::script()) step.run(scripted);
        playOnTheScenesThread(scripted);
    }
    scripted.scene->stop();
    Record record;
    for (const auto& event : events->getEvents()) {
        record.journal +=
            event.getEventType().getName() + "|" + event.getEventData().toString() + "\n";
    }
    apps::cli::dumpScene(*scripted.scene, "session",
                         [&record](const std::string& text) { record.dump += text; });
    return record;
}

std::string summaryOf(const Record& record) {
    return "journal " + hashOf(record.journal) + "\ndump " + hashOf(record.dump) + "\n";
}

std::string contentsOf(const std::string& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace
}  // namespace vantorix::test

// vantorix_session [--disturb] [--expect FILE] [--write FOLDER]
int main(int count, char** texts) {
    const std::vector<std::string> arguments(texts + 1, texts + count);
    const auto valueOf = [&arguments](const char* name) {
        const auto found = std::find(arguments.begin(), arguments.end(), name);
        return found == arguments.end() || found + 1 == arguments.end() ? "" : *(found + 1);
    };
    const bool isDisturbed =
        std::find(arguments.begin(), arguments.end(), "--disturb") != arguments.end();
    vantorix::core::logger::Logger::active = false;
    const auto record = vantorix::test::runSession(isDisturbed);
    const auto summary = vantorix::test::summaryOf(record);
    std::cout << summary;
    const std::string folder = valueOf("--write"), expected = valueOf("--expect");
    if (!folder.empty()) {
        std::ofstream(folder + "/journal.txt") << record.journal;
        std::ofstream(folder + "/dump.json") << record.dump;
    }
    if (expected.empty() || vantorix::test::contentsOf(expected) == summary) return EXIT_SUCCESS;
    std::cerr << "Expected by " << expected << ":\n" << vantorix::test::contentsOf(expected);
    return EXIT_FAILURE;
}
