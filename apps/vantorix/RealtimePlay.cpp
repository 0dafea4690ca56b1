#include "apps/vantorix/RealtimePlay.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <numeric>
#include <thread>

#include <boost/make_shared.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"
#include "core_api/event/EventType.h"

#include "apps/render/SceneGuard.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/graph/ISceneController.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsBetween(Clock::time_point start, Clock::time_point end) {
    return std::chrono::duration<double, std::milli>(end - start).count();
}

/// Hands on to an animation manager and keeps the times. Read it when it is driven no more.
class TimedController : public scene::ISceneController {
public:
    explicit TimedController(boost::shared_ptr<scene::AnimationManager> manager)
        : manager_(manager) {}

    bool isReadOnly() override { return manager_->isReadOnly(); }
    void attach(boost::shared_ptr<scene::SceneManager> scene) override { manager_->attach(scene); }

    bool update(boost::posix_time::time_duration elapsed) override {
        const auto start = Clock::now();
        const bool changed = manager_->update(elapsed);
        starts_.push_back(start);
        costs_.push_back(millisecondsBetween(start, Clock::now()));
        poses_ += changed;
        return changed;
    }

    RealtimeReport report() const {
        RealtimeReport report;
        report.cycles = starts_.size();
        report.poses = poses_;
        if (!costs_.empty()) {
            report.update = meanOf(costs_);
            report.longestUpdate = *std::max_element(costs_.begin(), costs_.end());
        }
        addIntervals(report);
        return report;
    }

private:
    static double meanOf(const std::vector<double>& values) {
        return std::accumulate(values.begin(), values.end(), 0.0) /
               static_cast<double>(values.size());
    }

    void addIntervals(RealtimeReport& report) const {
        if (starts_.size() < 2) return;
        std::vector<double> intervals;
        for (std::size_t i = 1; i < starts_.size(); ++i) {
            intervals.push_back(millisecondsBetween(starts_[i - 1], starts_[i]));
        }
        report.interval = meanOf(intervals);
        report.longestInterval = *std::max_element(intervals.begin(), intervals.end());
        for (auto& interval : intervals) interval = std::pow(interval - report.interval, 2);
        report.jitter = std::sqrt(meanOf(intervals));
    }

    boost::shared_ptr<scene::AnimationManager> manager_;
    std::vector<Clock::time_point> starts_;
    std::vector<double> costs_;
    std::size_t poses_ = 0;
};

}  // namespace

RealtimeReport playInRealtime(scene::SceneManager& scene,
                              boost::shared_ptr<scene::Animation> animation, double mostSeconds) {
    std::atomic<std::size_t> syncEvents{0};
    core::event::EventBase listener(scene.getEventManager());
    listener.registerHandler(core::event::EventType("SyncScene"),
                             [&syncEvents](core::event::Event) { ++syncEvents; });

    const auto manager = boost::make_shared<scene::AnimationManager>();
    const auto controller = boost::make_shared<TimedController>(manager);
    scene.setAnimationManager(manager);
    manager->attach(scene.shared_from_this());
    manager->setAnimation(animation);
    manager->resume();
    const double duration =
        static_cast<double>(manager->getLoopDuration().total_milliseconds()) / 1000.0;
    const double seconds = std::min(duration, mostSeconds);
    scene.addSceneController(controller);
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    scene.removeSceneController(controller);

    auto report = controller->report();
    report.seconds = seconds;
    report.syncEvents = syncEvents;
    return report;
}

}  // namespace vantorix::apps::cli
