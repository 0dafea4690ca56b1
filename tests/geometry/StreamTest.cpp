#include <chrono>
#include <numeric>

#include "scene/geometry/Stream.h"
#include "scene/geometry/VertexElement.h"
#include "tests/geometry/GeometrySupport.h"
#include "tests/reliability/FailingAllocation.h"

namespace vantorix::scene {
namespace {

const Floats tuple = {1, 2, 3};

struct DistinctStream : ::testing::Test {
    Stream stream{"positions", 3, false};

    int insert(const Floats& values) {
        return stream.insertValue(static_cast<int>(values.size()), values.data());
    }
    /// Enough tuples that the stream searches through an index.
    void fill(int tuples) {
        for (int i = 0; i < tuples; ++i) insert({static_cast<float>(i), 0, 0});
    }
};

TEST_F(DistinctStream, ARefusedTupleChangesNothing) {
    EXPECT_EQ(insert({1, 2}), -1);
    EXPECT_EQ(stream.insertValue(3, nullptr), -1);
    stream.stride = 0;
    EXPECT_EQ(stream.insertValue(0, tuple.data()), -1);
    EXPECT_EQ(stream.count, 0);
    EXPECT_TRUE(stream.values.empty());
}

TEST_F(DistinctStream, ANegativeStrideOnlyCounts) {
    stream.values = {1, 2, 3, 4, 5, 6};
    stream.stride = -3;
    EXPECT_EQ(stream.insertValue(-3, tuple.data()), -2);
    EXPECT_EQ(stream.count, 1);
    EXPECT_EQ(stream.values.size(), 6u);
}

TEST_F(DistinctStream, TheSourceMayLieInTheStreamItself) {
    stream.allowDuplicates = true;
    stream.values = tuple;
    stream.values.shrink_to_fit();
    for (int i = 0; i < 100; ++i)
        stream.insertValue(3, std::as_const(stream.values).data() + i * 3);
    for (const auto begin : {0, 150, 300}) {
        const auto first = stream.values.cbegin() + begin;
        EXPECT_EQ(Floats(first, first + 3), tuple);
    }
}

TEST_F(DistinctStream, ASourceThatRunsPastTheEndMeetsItself) {
    stream.values = {1, 2, 3, 4};
    stream.insertValue(3, std::as_const(stream.values).data() + 2);
    EXPECT_EQ(stream.values, (Floats{1, 2, 3, 4, 3, 4, 3}));
}

TEST_F(DistinctStream, InsertionStaysCheapInALargeStream) {
    const auto start = std::chrono::steady_clock::now();
    fill(200000);
    fill(200000);
    EXPECT_EQ(stream.count, 200000);
    // A scan would take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(Stream, ACopyHasEverythingAndACloneOnlyTheValues) {
    Stream stream("weights", 2, true);
    stream.params = {{"WEIGHT", "float"}};
    stream.stringValues = {"one"};
    stream.insertValue(2, tuple.data());

    Stream assigned("other", 9, false);
    assigned = stream;
    for (const auto& same : {stream, assigned}) {
        EXPECT_EQ(same.name, "weights");
        EXPECT_EQ(same.stride, 2);
        EXPECT_EQ(same.count, 1);
        EXPECT_EQ(same.params, stream.params);
        EXPECT_EQ(same.stringValues, stream.stringValues);
    }

    const auto clone = stream.clone();
    EXPECT_EQ(clone->name, "weights");
    EXPECT_TRUE(clone->allowDuplicates);
    EXPECT_EQ(clone->count, 1);
    EXPECT_EQ(clone->values, stream.values);
    EXPECT_TRUE(clone->params.empty());
    EXPECT_TRUE(clone->stringValues.empty());
}

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

TEST(VertexElement, ReadsAsAHomogeneousPoint) {
    const Floats values = {1, 2, 3, 4, 5, 6};
    const std::vector<std::pair<int, Eigen::Vector4f>> expected = {
        {-1, {0, 0, 0, 1}}, {0, {0, 0, 0, 1}}, {2, {1, 2, 0, 1}},
        {3, {1, 2, 3, 1}},  {4, {1, 2, 3, 4}}, {6, {1, 2, 3, 4}}};
    for (const auto& [size, vector] : expected) {
        EXPECT_EQ(VertexElement::create(POSITION, size, values.data())->toEigenVector(), vector);
    }
    VertexElement record;
    record.size = 3;
    EXPECT_EQ(record.toEigenVector(), Eigen::Vector4f(0, 0, 0, 1));
}

}  // namespace
}  // namespace vantorix::scene
