#pragma once

#include <chrono>
#include <cstdint>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/CoreExport.h"
#include "core_api/system/IClock.h"

namespace vantorix::core::system {

/// A clock with a resolution of one millisecond that begins at the UTC time of its construction.
///
/// Its time never jumps or goes back: halting holds it, going on continues from there, and a change
/// of speed counts from that moment. It does not follow when the system's time is set.
/// Safe on any thread.
class VANTORIX_CORE_EXPORT MillisecClock : public IClock {
public:
    /// Runs at once when @p started, otherwise from start() on.
    explicit MillisecClock(bool started);

    boost::posix_time::ptime getTime() override;

    /// Lets the clock run, whether it was stopped or paused.
    void start() override;
    void stop() override;

    /// Holds a running clock; unpause() goes on and does not start a clock that was stopped.
    void pause() override;
    void unpause() override;

    /// Clock seconds per real second, at first 1; more than a million counts as a million.
    /// Negative, infinite and undefined values are ignored.
    void setSpeed(float speed) override;

private:
    enum State { STOPPED, PAUSED, RUNNING };
    using RealTime = std::chrono::steady_clock::time_point;

    void change(State state);
    std::int64_t microsecondsAt(RealTime now) const;
    void anchorAt(RealTime now);

    boost::mutex mutex_;
    const boost::posix_time::ptime begin_;
    RealTime anchor_;            // Real time at which microseconds_ was right.
    std::int64_t microseconds_;  // Clock time since begin_.
    double speed_;
    State state_;
};

}  // namespace vantorix::core::system
