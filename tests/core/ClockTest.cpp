#include <cmath>
#include <limits>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <gtest/gtest.h>

#include "core_api/system/MillisecClock.h"

namespace {

using boost::posix_time::microsec_clock;
using boost::posix_time::milliseconds;
using boost::posix_time::time_duration;
using vantorix::core::system::MillisecClock;

/// Reads @p clock until its time differs from now.
time_duration waitForChange(MillisecClock& clock) {
    const auto begin = clock.getTime();
    auto now = begin;
    while (now == begin) now = clock.getTime();
    return now - begin;
}

/// Lets a little real time pass, measured by another clock.
void letTimePass() {
    MillisecClock other(true);
    const auto begin = other.getTime();
    while (other.getTime() - begin < milliseconds(3)) {
    }
}

bool stands(MillisecClock& clock) {
    const auto begin = clock.getTime();
    letTimePass();
    return clock.getTime() == begin;
}

TEST(MillisecClockTest, BeginsWithUniversalTimeAndAdvancesInWholeMilliseconds) {
    MillisecClock clock(true);
    const auto difference = clock.getTime() - microsec_clock::universal_time();
    EXPECT_LT(std::abs(difference.total_seconds()), 5);
    EXPECT_GE(waitForChange(clock), milliseconds(1));
    EXPECT_EQ(clock.getTime().time_of_day().total_microseconds() % 1000, 0);
}

TEST(MillisecClockTest, StandsUntilStarted) {
    MillisecClock clock(false);
    EXPECT_TRUE(stands(clock));
    clock.unpause();
    EXPECT_TRUE(stands(clock));
    clock.start();
    EXPECT_FALSE(stands(clock));
}

TEST(MillisecClockTest, GoesOnWhereItWasHeld) {
    MillisecClock clock(true);
    const auto hold = [&clock](void (MillisecClock::*halt)(), void (MillisecClock::*goOn)()) {
        (clock.*halt)();
        const auto held = clock.getTime();
        letTimePass();
        EXPECT_EQ(clock.getTime(), held);
        clock.setSpeed(0);
        (clock.*goOn)();
        EXPECT_EQ(clock.getTime(), held);
        clock.setSpeed(1);
        EXPECT_FALSE(stands(clock));
    };
    hold(&MillisecClock::pause, &MillisecClock::unpause);
    hold(&MillisecClock::stop, &MillisecClock::start);
    hold(&MillisecClock::pause, &MillisecClock::start);
}

TEST(MillisecClockTest, UnpausingDoesNotStartAStoppedClock) {
    MillisecClock clock(true);
    clock.pause();
    clock.stop();
    clock.unpause();
    EXPECT_TRUE(stands(clock));
}

TEST(MillisecClockTest, SpeedCountsFromNowOn) {
    MillisecClock fast(true);
    MillisecClock real(true);
    fast.setSpeed(1000);
    const auto begin = real.getTime();
    const auto fastBegin = fast.getTime();
    while (real.getTime() - begin < milliseconds(20)) {
    }
    EXPECT_GE(fast.getTime() - fastBegin, milliseconds(15000));
    fast.setSpeed(0);
    EXPECT_TRUE(stands(fast));
}

TEST(MillisecClockTest, AbsurdSpeedsNeitherBreakItNorTurnItBack) {
    MillisecClock clock(true);
    clock.setSpeed(0);
    for (const float speed : {-1.0f, std::nanf(""), std::numeric_limits<float>::infinity()}) {
        clock.setSpeed(speed);
        EXPECT_TRUE(stands(clock)) << speed;
    }
    const auto before = clock.getTime();
    clock.setSpeed(std::numeric_limits<float>::max());
    letTimePass();
    EXPECT_GT(clock.getTime(), before);
    EXPECT_FALSE(clock.getTime().is_special());
}

}  // namespace
