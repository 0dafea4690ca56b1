#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core_api/core_api.h"

namespace {

using namespace vantorix::core::event;
using vantorix::core::utils::Matrix;

TEST(EventDataTest, ArgumentsAreCountedFromOneAndEmptyOnesKeepTheirPlace) {
    const EventData data("a,,b,");
    const std::vector<std::string> expected{"", "a", "", "b", "", ""};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(data.getArg(static_cast<int>(i)), expected[i]) << i;
    }
    EXPECT_EQ(data.getArg(-1), "");
    EXPECT_EQ(data.getArg(1 << 30), "");
    EXPECT_EQ(EventData("").getArg(1), "");
}

TEST(EventDataTest, TextsOfEveryLengthSurviveCopiesMovesAndAssignment) {
    EventData assigned("before");
    for (std::size_t size = 0; size < 60; ++size) {
        std::string text(size, 'x');
        if (size > 2) text[size / 2] = '\0';
        const EventData data(text);
        assigned = data;
        EventData copy(data);
        const EventData moved(std::move(copy));
        EXPECT_EQ(data.toString(), text);
        EXPECT_EQ(assigned.toString(), text);
        EXPECT_EQ(moved.toString(), text);
        EXPECT_EQ(EventData::joined(text, "end").toString(), text + ",end");
    }
}

TEST(EventDataTest, AMatrixPayloadIsTheIdAndTheMatrixAsItWas) {
    Matrix matrix(true);
    matrix[12] = 0.1f;
    const auto expected = "Node7," + matrix.toEventDataString();
    const auto data = EventData::withMatrix("Node7", matrix);
    const auto copy = data;
    matrix[12] = 5;
    EXPECT_EQ(copy.toString(), expected);
    EXPECT_EQ(data.getArg(1), "Node7");
    EXPECT_EQ(data.getArg(2), expected.substr(6));
    EXPECT_EQ(data.getArg(3), "");

    const float* const none = nullptr;
    EXPECT_EQ(EventData::withMatrix("N", none).getArg(2), Matrix(true).toEventDataString());
}

TEST(EventDataTest, AnIdWithCommasIsSplitLikeAnyText) {
    const auto data = EventData::withMatrix("a,b", Matrix(false));
    EXPECT_EQ(data.getArg(1), "a");
    EXPECT_EQ(data.getArg(2), "b");
    EXPECT_EQ(data.getArg(3), Matrix(false).toEventDataString());
}

}  // namespace
