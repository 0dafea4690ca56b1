#pragma once

#include <boost/chrono/duration.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

namespace vantorix::scene {

/// A recursive lock that knows its owner: who does not hold it cannot unlock it, and who holds it
/// can give it up as a whole.
class SceneLock {
public:
    void lock();
    bool tryLockFor(boost::chrono::milliseconds patience);
    bool tryLock() { return tryLockFor(boost::chrono::milliseconds(0)); }

    /// @returns whether the calling thread held the lock and has now let go of it entirely.
    bool unlock();

    /// Lets go of all levels that the calling thread holds and returns their number.
    unsigned int releaseAll();
    void lockAgain(unsigned int levels);

private:
    bool isMine() const { return owner_ == boost::this_thread::get_id(); }

    boost::mutex mutex_;
    boost::condition_variable freed_;
    boost::thread::id owner_;  ///< Not-a-thread while free.
    unsigned int levels_ = 0;
};

}  // namespace vantorix::scene
