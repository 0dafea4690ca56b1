#include <random>

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

TEST(FloatArray, OutsideTheArrayAtRaisesAnError) {
    FloatArray array = {1};
    EXPECT_THROW(array.at(1), std::out_of_range);
    EXPECT_EQ(array.at(0), 1);
}

/// The same random edits on both containers; every result that an edit returns is compared.
class RandomEdits {
public:
    explicit RandomEdits(unsigned int seed) : random_(seed) {}

    void run() {
        switch (below(16)) {
            case 0:
                both([](auto& v) { v.push_back(1); });
                break;
            case 1:
                both([](auto& v) { v.emplace_back(2) += 1; });
                break;
            case 2:
                if (!model.empty()) both([](auto& v) { v.pop_back(); });
                break;
            case 3:
                edit([](auto& v, auto n) { v.resize(n); });
                break;
            case 4:
                edit([](auto& v, auto n) { v.resize(n, 3); });
                break;
            case 5:
                edit([](auto& v, auto n) { v.assign(n % 8, 4); });
                break;
            case 6:
                both([](auto& v) { v.assign({5, 6, 7}); });
                break;
            case 7:
                edit([](auto& v, auto n) { *v.insert(v.cbegin() + place(v, n), 8) = 9; });
                break;
            case 8:
                edit([](auto& v, auto n) { v.insert(v.begin() + place(v, n), 3, 8); });
                break;
            case 9:
                edit([](auto& v, auto n) { v.insert(v.end() - place(v, n), {1, 2}); });
                break;
            case 10:
                edit([](auto& v, auto n) { v.emplace(v.begin() + place(v, n), 1); });
                break;
            case 11:
                edit([](auto& v, auto n) { v.erase(v.begin() + place(v, n), v.end()); });
                break;
            case 12:
                edit([](auto& v, auto n) { v.reserve(n); });
                break;
            case 13:
                both([](auto& v) { v.shrink_to_fit(); });
                break;
            case 14:
                both([](auto& v) {
                    for (auto& value : v) value += 1;
                });
                break;
            default:
                if (below(8) == 0) both([](auto& v) { v.clear(); });
        }
    }

    Floats model;
    FloatArray array;

private:
    template <typename Values>
    static std::ptrdiff_t place(const Values& values, unsigned int number) {
        return static_cast<std::ptrdiff_t>(number % (values.size() + 1));
    }
    template <typename Change>
    void both(const Change& change) {
        change(model);
        change(array);
    }
    template <typename Change>
    void edit(const Change& change) {
        const auto number = below(40);
        change(model, number);
        change(array, number);
    }
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }

    std::mt19937 random_;
};

TEST(FloatArray, BehavesAsAVectorUnderRandomEdits) {
    RandomEdits edits(1);
    for (int i = 0; i < 5000; ++i) {
        edits.run();
        ASSERT_EQ(edits.array, edits.model) << "after edit " << i;
        ASSERT_EQ(edits.array.size(), edits.model.size());
        ASSERT_GE(edits.array.capacity(), edits.array.size());
    }
}

}  // namespace
}  // namespace vantorix::scene
