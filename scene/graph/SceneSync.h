#pragma once

#include <atomic>
#include <vector>

#include <boost/date_time/posix_time/ptime.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <boost/thread/thread.hpp>

#include "core_api/logger/Logger.h"

#include "scene/graph/SceneLock.h"

namespace vantorix::core::event {
class EventManager;
}
namespace vantorix::core::system {
class IClock;
}

namespace vantorix::scene {

class ISceneController;
class SceneManager;

/// What a scene and its synchronisation thread share: locks, clock, controllers and the wish to
/// stop. Both hold it, so that the thread never touches a scene that is gone, even when a handler
/// on the thread itself releases the scene's last reference.
///
/// Lock order, everywhere: controllers before scene. The thread does not wait for the scene lock
/// while it holds the controllers, so an application that takes them the other way round is served.
class SceneSync {
public:
    SceneSync(boost::shared_ptr<core::event::EventManager> eventManager,
              boost::shared_ptr<core::system::IClock> clock);
    ~SceneSync();

    /// The thread's body: a cycle every 10 ms until stop() was asked for.
    void run();

    /// Takes the thread that executes run() and returns once it does.
    void start(boost::thread thread);
    /// Asks the thread to end and waits for it, unless it is the calling thread.
    void stop();
    /// The same for a scene that is going: the thread is left to end by itself when it is the
    /// calling one.
    void abandon();

    void addController(const boost::shared_ptr<ISceneController>& controller,
                       const boost::shared_ptr<SceneManager>& scene);
    void removeController(const boost::shared_ptr<ISceneController>& controller);

    void lockScene() { sceneLock_.lock(); }
    void unlockScene();

    boost::shared_ptr<core::system::IClock> clock() const;
    void setClock(boost::shared_ptr<core::system::IClock> clock);

    /// Held while the scene, its geometry manager and this object change over to another event
    /// manager, and while nothing is released. Recursive: a subclass of EventManager may call back.
    boost::unique_lock<boost::recursive_mutex> lockManagers();

    /// Keeps the replaced manager until releaseRetired().
    void setEventManager(boost::shared_ptr<core::event::EventManager> eventManager);

    /// Releases replaced managers once no other thread holds the scene lock: whoever edits under
    /// the lock may be asking one right now, without a reference, whether an event is heard.
    void releaseRetired();

private:
    void cycle();
    boost::posix_time::ptime readClock() const;
    bool lockBoth();
    void unlockBoth();
    bool updateControllers(boost::posix_time::time_duration elapsed);
    bool updateOne(ISceneController& controller, boost::posix_time::time_duration elapsed);
    bool isRegistered(const boost::shared_ptr<ISceneController>& controller) const;
    void logFailure(const char* who, const char* reason);
    void announceChange();
    void sleep();
    bool isSyncThread() const { return threadID_ == boost::this_thread::get_id(); }

    SceneLock controllersLock_;
    SceneLock sceneLock_;
    std::vector<boost::shared_ptr<ISceneController>> controllers_;
    bool controllersChanged_ = false;  ///< Since the cycle in progress took its copy.

    boost::recursive_mutex managersMutex_;  ///< Taken before the next one.
    mutable boost::mutex stateMutex_;  ///< Guards what follows; nothing else is locked under it.
    boost::condition_variable stateChanged_;
    bool threadStarted_ = false;
    std::atomic<bool> stopRequested_{false};
    std::atomic<bool> anyRetired_{false};
    boost::shared_ptr<core::event::EventManager> eventManager_;
    std::vector<boost::shared_ptr<core::event::EventManager>> retired_;
    boost::shared_ptr<core::system::IClock> clock_;

    boost::posix_time::ptime lastTime_;  ///< The thread's own, once it runs.
    boost::mutex joinMutex_;             ///< Several threads may stop the scene; one joins.
    boost::thread thread_;
    boost::thread::id threadID_;  ///< Written before the thread works, constant from then on.
    core::logger::Logger logger_;
};

}  // namespace vantorix::scene
