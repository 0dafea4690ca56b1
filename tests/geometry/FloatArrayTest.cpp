#include <algorithm>
#include <string>
#include <thread>

#include "scene/geometry/FloatArray.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

using ::testing::ElementsAre;

float sum(const Floats& values) {
    float total = 0;
    for (const float value : values) total += value;
    return total;
}

TEST(FloatArray, ConvertsFromAndToAVector) {
    const FloatArray array = Floats{1, 2, 3};
    const Floats copy = array;
    EXPECT_EQ(copy, (Floats{1, 2, 3}));
    EXPECT_EQ(sum(array), 6);
    Floats assigned;
    assigned = array;
    EXPECT_EQ(assigned, copy);

    FloatArray other;
    other = copy;
    other = Floats{4};
    EXPECT_EQ(other, Floats{4});
    other = {5, 6};
    EXPECT_THAT(other, ElementsAre(5, 6));
}

TEST(FloatArray, ComparesWithVectorsOnEitherSide) {
    const FloatArray array = {1, 2};
    const Floats same = {1, 2};
    const Floats above = {1, 3};
    EXPECT_TRUE(array == same && same == array && array == array);
    EXPECT_TRUE(array != above && above != array);
    EXPECT_TRUE(array < above && above > array && array <= same && same >= array);
    EXPECT_FALSE(array < same || same > array || above <= array || array >= above);
}

TEST(FloatArray, IsBuiltInEveryWayThatAVectorIs) {
    const Floats source = {1, 2};
    EXPECT_EQ(FloatArray(2), (Floats{0, 0}));
    EXPECT_EQ(FloatArray(2, 7), (Floats{7, 7}));
    EXPECT_EQ(FloatArray(source.begin(), source.end()), source);
    FloatArray first = source;
    FloatArray moved = std::move(first);
    EXPECT_EQ(moved, source);
    FloatArray copy;
    copy = moved;
    FloatArray assigned;
    assigned = std::move(moved);
    EXPECT_EQ(copy, assigned);
}

/// The edits that no stream test makes, with items made of numbers.
template <typename Values, typename Item>
void editInEveryWay(Values& values, const Item& item) {
    values.assign(3, item(4));
    values.assign({item(5), item(6), item(7)});
    *values.insert(values.cbegin() + 1, item(8)) += item(1);
    values.insert(values.end(), 3, item(9));
    values.insert(values.begin(), {item(1), item(2)});
    const std::vector<typename Values::value_type> more = {item(3), item(4)};
    values.insert(values.end() - 1, more.begin(), more.end());
    *values.emplace(values.begin(), item(10)) += item(1);
    values.emplace_back(item(11));
    values.back() += item(1);
    values.resize(values.size() + 1);
    values.resize(values.size() + 2, item(12));
    *values.erase(values.begin() + 2) += item(2);
    *values.erase(values.begin(), values.begin() + 2) += item(3);
    std::reverse(values.rbegin(), values.rend() - 1);
    for (auto& value : values) value += item(1);
    Values other = {item(1)};
    swap(values, other);
    values.swap(other);
}

template <typename Values, typename Item>
void expectEditsAsOfAVector(const Item& item) {
    std::vector<typename Values::value_type> model;
    Values values;
    editInEveryWay(model, item);
    editInEveryWay(values, item);
    EXPECT_EQ(values, model);
    EXPECT_TRUE(std::equal(values.crbegin(), values.crend(), model.rbegin(), model.rend()));
}

TEST(TrackedVector, IsEditedInEveryWayThatAVectorIs) {
    expectEditsAsOfAVector<FloatArray>([](int number) { return static_cast<float>(number); });
    expectEditsAsOfAVector<TrackedVector<std::string>>(
        [](int number) { return std::to_string(number); });
    FloatArray array;
    EXPECT_EQ(array.emplace_back(1.0f) += 1, 2);
}

TEST(FloatArray, SwapsWithAVectorOnEitherSide) {
    FloatArray array = {1, 2};
    Floats vector = {3};
    swap(array, vector);
    EXPECT_EQ(array, Floats{3});
    EXPECT_EQ(vector, (Floats{1, 2}));
    float& first = vector.front();
    swap(vector, array);
    first = 4;  // The reference follows its float into the array.
    EXPECT_EQ(array, (Floats{4, 2}));
    EXPECT_EQ(vector, Floats{3});
}

TEST(FloatArray, IsReadByTwoThreadsAtOnceAlsoWhereItCouldBeWritten) {
    FloatArray array(1000, 1.0f);
    float totals[] = {0, 0};
    const auto read = [&array](float& total) {
        for (std::size_t i = 0; i < array.size(); ++i) total += array[i];
        for (const float value : array) total += value;
        total += *array.data() + array.front() + array.back() + array.at(1);
    };
    std::thread other(read, std::ref(totals[1]));
    read(totals[0]);
    other.join();
    EXPECT_EQ(totals[0], 2004);
    EXPECT_EQ(totals[1], 2004);
}

TEST(FloatArray, OutsideTheArrayAtRaisesAnError) {
    FloatArray array = {1};
    EXPECT_THROW(array.at(1), std::out_of_range);
    EXPECT_EQ(array.at(0), 1);
}

}  // namespace
}  // namespace vantorix::scene
