#include "scene/animation/PlaybackClock.h"

#include <algorithm>

namespace vantorix::scene {
namespace {

/// Far from the ends of the type: no sum of a few overflows.
constexpr std::int64_t longestTime = std::int64_t{1} << 60;
constexpr std::int64_t microsecondsPerMillisecond = 1000;

std::int64_t limited(std::int64_t microseconds) {
    return std::clamp(microseconds, -longestTime, longestTime);
}

std::int64_t toMicroseconds(const PlaybackClock::Duration& duration) {
    if (duration.is_pos_infinity()) return longestTime;
    if (duration.is_neg_infinity()) return -longestTime;
    return duration.is_special() ? 0 : limited(duration.total_microseconds());
}

std::int64_t wholeMilliseconds(std::int64_t microseconds) {
    return microseconds / microsecondsPerMillisecond;
}

}  // namespace

void PlaybackClock::reset() {
    const Guard guard(mutex_);
    current_ = loop_ = target_ = 0;
}

void PlaybackClock::rewind() {
    const Guard guard(mutex_);
    current_ = 0;
}

void PlaybackClock::setTime(const Duration& time) {
    const Guard guard(mutex_);
    current_ = target_ = std::min(toMicroseconds(time), loop_);
    forceUpdate_ = true;
}

void PlaybackClock::setTarget(const Duration& time) {
    const Guard guard(mutex_);
    target_ = toMicroseconds(time);
}

void PlaybackClock::pause() {
    const Guard guard(mutex_);
    paused_ = true;
    target_ = current_;
}

void PlaybackClock::resume() {
    const Guard guard(mutex_);
    paused_ = false;
}

bool PlaybackClock::paused() const {
    const Guard guard(mutex_);
    return paused_;
}

void PlaybackClock::setSmooth(bool smooth) {
    const Guard guard(mutex_);
    smooth_ = smooth;
}

void PlaybackClock::setLoopDuration(const Duration& duration) {
    const Guard guard(mutex_);
    loop_ = toMicroseconds(duration);
}

PlaybackClock::Duration PlaybackClock::loopDuration() const {
    const Guard guard(mutex_);
    return boost::posix_time::microseconds(loop_);
}

PlaybackClock::Duration PlaybackClock::currentTime() const {
    const Guard guard(mutex_);
    return boost::posix_time::microseconds(current_);
}

bool PlaybackClock::advance(const Duration& elapsed, std::int64_t& milliseconds) {
    const Guard guard(mutex_);
    paused_ ? seek(toMicroseconds(elapsed)) : play(toMicroseconds(elapsed));
    if (paused_ && isTargetShown() && !forceUpdate_) return false;
    forceUpdate_ = false;
    if (current_ >= loop_) {
        current_ = loop_;
        return false;
    }
    milliseconds = wholeMilliseconds(current_);
    return true;
}

void PlaybackClock::seek(std::int64_t elapsed) {
    if (current_ < target_) {
        current_ = std::min({limited(current_ + elapsed), target_, loop_});
    } else if (current_ > target_) {
        current_ = std::max(limited(current_ - elapsed), target_);
        if (wholeMilliseconds(current_) < 0) current_ = 0;
    }
    if (!smooth_) current_ = target_;
}

// Wraps once, however long the step was: defined so.
void PlaybackClock::play(std::int64_t elapsed) {
    const bool wraps = current_ + elapsed >= loop_;
    current_ = limited(wraps ? current_ + (elapsed - loop_) : current_ + elapsed);
}

bool PlaybackClock::isTargetShown() const {
    return wholeMilliseconds(current_) == wholeMilliseconds(target_);
}

}  // namespace vantorix::scene
