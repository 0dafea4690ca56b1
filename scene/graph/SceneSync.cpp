#include "scene/graph/SceneSync.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"
#include "core_api/system/IClock.h"

#include "scene/geometry/LogWriters.h"
#include "scene/graph/ISceneController.h"
#include "scene/graph/SceneEvents.h"

namespace vantorix::scene {
namespace {

constexpr boost::chrono::milliseconds period(10);

}  // namespace

ISceneController::~ISceneController() = default;

SceneSync::SceneSync(boost::shared_ptr<core::event::EventManager> eventManager,
                     boost::shared_ptr<core::system::IClock> clock)
    : eventManager_(std::move(eventManager)), clock_(std::move(clock)) {
    addFileWriter(logger_, "SceneManager.log");
}

SceneSync::~SceneSync() = default;

void SceneSync::start(boost::thread thread) {
    thread_ = std::move(thread);
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> guard(stateMutex_);
    stateChanged_.wait(guard, [this] { return threadStarted_; });
}

void SceneSync::run() {
    lastTime_ = readClock();
    {
        const boost::lock_guard<boost::mutex> guard(stateMutex_);
        threadID_ = boost::this_thread::get_id();
        threadStarted_ = true;
    }
    stateChanged_.notify_all();
    while (!stopRequested_) {
        cycle();
        sleep();
    }
}

void SceneSync::stop() {
    {
        const boost::lock_guard<boost::mutex> guard(stateMutex_);
        stopRequested_ = true;
    }
    stateChanged_.notify_all();
    if (isSyncThread()) return;
    // A cycle in progress may need what the caller holds.
    const auto sceneLevels = sceneLock_.releaseAll();
    const auto controllersLevels = controllersLock_.releaseAll();
    {
        const boost::this_thread::disable_interruption uninterrupted;
        const boost::lock_guard<boost::mutex> guard(joinMutex_);
        if (thread_.joinable()) thread_.join();
    }
    controllersLock_.lockAgain(controllersLevels);
    sceneLock_.lockAgain(sceneLevels);
}

void SceneSync::abandon() {
    stop();
    if (isSyncThread()) thread_.detach();
}

void SceneSync::cycle() {
    if (!lockBoth()) return;
    const auto now = readClock();
    bool changed = false;
    try {
        changed = updateControllers(now - lastTime_);
    } catch (const std::bad_alloc&) {
        // No memory for the copy of their list: the next cycle asks them.
    }
    unlockBoth();
    if (changed) announceChange();  // With no lock held: its handlers may call lockScene().
    lastTime_ = now;
}

// Time stands still while an application's clock fails.
boost::posix_time::ptime SceneSync::readClock() const {
    try {
        return clock()->getTime();
    } catch (...) {
        return lastTime_;
    }
}

bool SceneSync::lockBoth() {
    while (!stopRequested_) {
        controllersLock_.lock();
        if (sceneLock_.tryLock()) return true;
        controllersLock_.unlock();
        if (sceneLock_.tryLockFor(period)) sceneLock_.unlock();
    }
    return false;
}

void SceneSync::unlockBoth() {
    unlockScene();
    controllersLock_.unlock();
}

bool SceneSync::updateControllers(boost::posix_time::time_duration elapsed) {
    // A copy: an update may add controllers, which wait for the next cycle, and remove others.
    const auto controllers = controllers_;
    controllersChanged_ = false;
    bool changed = false;
    for (const auto& controller : controllers) {
        if (controllersChanged_ && !isRegistered(controller)) continue;
        changed = updateOne(*controller, elapsed) || changed;
    }
    return changed;
}

bool SceneSync::updateOne(ISceneController& controller, boost::posix_time::time_duration elapsed) {
    try {
        return controller.update(elapsed);
    } catch (const std::exception& failure) {
        logFailure("A scene controller", failure.what());
    } catch (...) {
        logFailure("A scene controller", nullptr);
    }
    return false;
}

// The thread goes on, also where there is no memory for the line.
void SceneSync::logFailure(const char* who, const char* reason) {
    try {
        const auto line = std::string("[ERROR] ") + who + " failed";
        logger_ << (reason ? line + ": " + reason : line + ".");
    } catch (const std::bad_alloc&) {
    }
}

bool SceneSync::isRegistered(const boost::shared_ptr<ISceneController>& controller) const {
    return std::find(controllers_.begin(), controllers_.end(), controller) != controllers_.end();
}

void SceneSync::announceChange() {
    boost::shared_ptr<core::event::EventManager> manager;
    {
        const boost::lock_guard<boost::mutex> guard(stateMutex_);
        manager = eventManager_;
    }
    if (!manager) return;
    try {
        manager->triggerEvent(
            core::event::Event(events::syncScene, core::event::EventData(std::string())));
    } catch (const std::exception& failure) {
        logFailure("A handler of SyncScene", failure.what());
    } catch (...) {
        logFailure("A handler of SyncScene", nullptr);
    }
}

void SceneSync::sleep() {
    boost::unique_lock<boost::mutex> guard(stateMutex_);
    stateChanged_.wait_for(guard, period, [this] { return stopRequested_.load(); });
}

void SceneSync::addController(const boost::shared_ptr<ISceneController>& controller,
                              const boost::shared_ptr<SceneManager>& scene) {
    controllersLock_.lock();
    controllers_.push_back(controller);
    try {
        controller->attach(scene);
    } catch (...) {
        controllersLock_.unlock();
        throw;
    }
    controllersLock_.unlock();
}

void SceneSync::removeController(const boost::shared_ptr<ISceneController>& controller) {
    controllersLock_.lock();
    const auto found = std::find(controllers_.begin(), controllers_.end(), controller);
    if (found != controllers_.end()) {
        controllers_.erase(found);
        controllersChanged_ = true;
    }
    controllersLock_.unlock();
}

void SceneSync::unlockScene() {
    if (sceneLock_.unlock() && anyRetired_) releaseRetired();
}

boost::shared_ptr<core::system::IClock> SceneSync::clock() const {
    const boost::lock_guard<boost::mutex> guard(stateMutex_);
    return clock_;
}

void SceneSync::setClock(boost::shared_ptr<core::system::IClock> clock) {
    const boost::lock_guard<boost::mutex> guard(stateMutex_);
    clock_.swap(clock);
}

boost::unique_lock<boost::recursive_mutex> SceneSync::lockManagers() {
    return boost::unique_lock<boost::recursive_mutex>(managersMutex_);
}

void SceneSync::setEventManager(boost::shared_ptr<core::event::EventManager> eventManager) {
    const boost::lock_guard<boost::mutex> guard(stateMutex_);
    retired_.reserve(retired_.size() + 1);
    eventManager_.swap(eventManager);
    if (eventManager) retired_.push_back(std::move(eventManager));
    anyRetired_ = !retired_.empty();
}

void SceneSync::releaseRetired() {
    if (!sceneLock_.tryLock()) return;  // Whoever holds it does this when it unlocks.
    std::vector<boost::shared_ptr<core::event::EventManager>> released;
    {
        const boost::lock_guard<boost::mutex> guard(stateMutex_);
        released.swap(retired_);
        anyRetired_ = false;
    }
    sceneLock_.unlock();
}

}  // namespace vantorix::scene
