// A stream into which no more values fit, for want of memory, still agrees with itself.

#include <numeric>

#include <gtest/gtest.h>

#include "tests/geometry/GeometrySupport.h"
#include "tests/reliability/FailingAllocation.h"

namespace vantorix::scene {
namespace {

Floats countingFrom(float first, std::size_t count) {
    Floats floats(count);
    std::iota(floats.begin(), floats.end(), first);
    return floats;
}

/// @returns whether there were fewer than @p allocation allocations.
bool insertUntil(long allocation, Stream& stream, const Floats& floats) {
    std::vector<int> indices(floats.size());
    return !test::failAt(
        allocation, [&] { stream.insertValues(1, floats.data(), floats.size(), indices.data()); });
}

TEST(StreamMemory, WhatCameInBeforeItEndedIsCountedAndFound) {
    const auto few = countingFrom(1, 20);
    const auto many = countingFrom(11, 2000);
    bool isDone = false;
    for (long allocation = 1; !isDone; ++allocation) {
        SCOPED_TRACE(allocation);
        Stream stream("stream", 1, false);
        for (const float value : few) stream.insertValue(1, &value);
        isDone = insertUntil(allocation, stream, many);
        ASSERT_EQ(static_cast<std::size_t>(stream.count), stream.values.size());
        EXPECT_TRUE(insertUntil(0, stream, many));
        ASSERT_EQ(stream.count, 2010);
        EXPECT_TRUE(haveSameBytes(stream.values, countingFrom(1, 2010)));
    }
}

}  // namespace
}  // namespace vantorix::scene
