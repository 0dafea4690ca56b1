#pragma once

#include <cstdint>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/thread/mutex.hpp>

namespace vantorix::scene {

/// The times of a playback, in microseconds, and how they move. Safe on any thread.
///
/// Durations that are no number of microseconds (Boost's special values) count as the longest
/// forwards or backwards, or as none.
class PlaybackClock {
public:
    using Duration = boost::posix_time::time_duration;

    /// All times become zero.
    void reset();
    /// The current time becomes zero.
    void rewind();

    void setTime(const Duration& time);
    void setTarget(const Duration& time);
    void pause();
    void resume();
    bool paused() const;
    void setSmooth(bool smooth);
    void setLoopDuration(const Duration& duration);
    Duration loopDuration() const;
    Duration currentTime() const;

    /// Moves by @p elapsed.
    /// @returns whether there is something new to show, at @p milliseconds.
    bool advance(const Duration& elapsed, std::int64_t& milliseconds);

private:
    using Guard = boost::unique_lock<boost::mutex>;

    void seek(std::int64_t elapsed);
    void play(std::int64_t elapsed);
    bool isTargetShown() const;

    mutable boost::mutex mutex_;
    std::int64_t current_ = 0;
    std::int64_t loop_ = 0;
    std::int64_t target_ = 0;
    bool paused_ = true;
    bool smooth_ = true;
    bool forceUpdate_ = false;
};

}  // namespace vantorix::scene
