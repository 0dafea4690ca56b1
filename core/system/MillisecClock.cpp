#include "core_api/system/MillisecClock.h"

#include <algorithm>
#include <cmath>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/thread/lock_guard.hpp>

namespace vantorix::core::system {
namespace {

using Lock = boost::lock_guard<boost::mutex>;
using std::chrono::steady_clock;

constexpr float fastest = 1e6f;
constexpr double latest = 1e17;  // Microseconds, about 3000 years: dates end with the year 9999.

}  // namespace

MillisecClock::MillisecClock(bool started)
    : begin_(boost::posix_time::microsec_clock::universal_time()),
      anchor_(steady_clock::now()),
      microseconds_(0),
      speed_(1),
      state_(started ? RUNNING : STOPPED) {}

boost::posix_time::ptime MillisecClock::getTime() {
    const Lock lock(mutex_);
    const auto time = begin_ + boost::posix_time::microseconds(microsecondsAt(steady_clock::now()));
    const auto sinceMidnight =
        boost::posix_time::milliseconds(time.time_of_day().total_milliseconds());
    return boost::posix_time::ptime(time.date(), sinceMidnight);
}

void MillisecClock::start() {
    const Lock lock(mutex_);
    change(RUNNING);
}

void MillisecClock::stop() {
    const Lock lock(mutex_);
    change(STOPPED);
}

void MillisecClock::pause() {
    const Lock lock(mutex_);
    if (state_ == RUNNING) change(PAUSED);
}

void MillisecClock::unpause() {
    const Lock lock(mutex_);
    if (state_ == PAUSED) change(RUNNING);
}

void MillisecClock::setSpeed(float speed) {
    if (!std::isfinite(speed) || speed < 0) return;
    const Lock lock(mutex_);
    anchorAt(steady_clock::now());
    speed_ = static_cast<double>(std::min(speed, fastest));
}

void MillisecClock::change(State state) {
    anchorAt(steady_clock::now());
    state_ = state;
}

std::int64_t MillisecClock::microsecondsAt(RealTime now) const {
    if (state_ != RUNNING) return microseconds_;
    const std::chrono::duration<double, std::micro> real = now - anchor_;
    const double gone = std::floor(real.count() * speed_);
    return static_cast<std::int64_t>(std::min(static_cast<double>(microseconds_) + gone, latest));
}

void MillisecClock::anchorAt(RealTime now) {
    microseconds_ = microsecondsAt(now);
    anchor_ = now;
}

}  // namespace vantorix::core::system
