#include "scene/graph/SceneLock.h"

namespace vantorix::scene {

void SceneLock::lock() { lockAgain(1); }

bool SceneLock::tryLockFor(boost::chrono::milliseconds patience) {
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> guard(mutex_);
    if (!isMine() && !freed_.wait_for(guard, patience, [this] { return levels_ == 0; })) {
        return false;
    }
    owner_ = boost::this_thread::get_id();
    ++levels_;
    return true;
}

bool SceneLock::unlock() {
    {
        const boost::lock_guard<boost::mutex> guard(mutex_);
        if (!isMine() || --levels_ > 0) return false;
        owner_ = boost::thread::id();
    }
    freed_.notify_one();
    return true;
}

unsigned int SceneLock::releaseAll() {
    unsigned int held = 0;
    {
        const boost::lock_guard<boost::mutex> guard(mutex_);
        if (!isMine()) return 0;
        held = levels_;
        levels_ = 0;
        owner_ = boost::thread::id();
    }
    freed_.notify_one();
    return held;
}

void SceneLock::lockAgain(unsigned int levels) {
    if (levels == 0) return;
    const boost::this_thread::disable_interruption uninterrupted;
    boost::unique_lock<boost::mutex> guard(mutex_);
    if (!isMine()) freed_.wait(guard, [this] { return levels_ == 0; });
    owner_ = boost::this_thread::get_id();
    levels_ += levels;
}

}  // namespace vantorix::scene
