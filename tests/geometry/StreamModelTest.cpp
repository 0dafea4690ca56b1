// A stream under random edits through every way into its values, against a model that scans.

#include <algorithm>
#include <cstring>
#include <random>

#include "scene/geometry/Stream.h"
#include "tests/geometry/GeometrySupport.h"

namespace vantorix::scene {
namespace {

/// Insertion as it is defined: the first equal tuple, else an appended one.
struct StreamModel {
    Floats values;
    int stride = 3;
    int count = 0;
    bool allowDuplicates = false;

    int insertValue(const Floats& tuple) {
        const auto size = static_cast<std::size_t>(stride);
        for (std::size_t i = 0; !allowDuplicates && (i + 1) * size <= values.size(); ++i) {
            if (std::memcmp(&values[i * size], tuple.data(), size * sizeof(float)) == 0) {
                return static_cast<int>(i);
            }
        }
        const auto index = values.size() / size;
        values.insert(values.end(), tuple.begin(), tuple.end());
        ++count;
        return static_cast<int>(index);
    }
};

class StreamUnderEdits {
public:
    explicit StreamUnderEdits(unsigned int seed) : random_(seed) {}

    void step() {
        const unsigned int choice = below(40);
        if (choice == 0) both([this](auto& v) { v.resize(number_ % (v.size() + 10), 1.0f); });
        if (choice == 1) removeFloat();
        if (choice == 2) both([this](auto& v) { v.push_back(value_); });
        if (choice == 3) both([this](auto& v) { v.insert(v.begin() + place(v), value_); });
        if (choice == 4) both([this](auto& v) { v.erase(v.cbegin() + place(v), v.cend()); });
        if (choice == 5 && !model.values.empty()) {
            both([this](auto& v) { v[number_ % v.size()] = value_; });
        }
        if (choice == 6) both([](auto& v) { v.shrink_to_fit(); });
        if (choice == 7) both([](auto& v) { v.reserve(v.capacity() + 50); });
        if (choice == 8) both([](auto& v) { v = Floats(v); });
        if (choice == 9 && below(20) == 0) both([](auto& v) { v.clear(); });
        if (choice == 10) keepReference();
        if (choice == 11) swapValues();
        if (choice == 12 && below(10) == 0) changeStride();
        if (choice == 13) stream.allowDuplicates = model.allowDuplicates = below(8) == 0;
        if (choice == 14) stream = Stream(stream);
        if (choice == 8 || choice == 14) pointer_ = nullptr;
        if (choice == 15) removeTuple();
        if (choice > 15) insert();
        if (below(4) == 0) writeThroughReference();
    }

    Stream stream{"stream", 3, false};
    StreamModel model;
    int returned = 0;
    int expected = 0;

private:
    void insert() {
        const auto size = static_cast<std::size_t>(model.stride);
        Floats tuple;
        for (std::size_t i = 0; i < size; ++i) tuple.push_back(static_cast<float>(below(5)));
        const auto* const storage = std::as_const(stream.values).data();
        expected = model.insertValue(tuple);
        returned = stream.insertValue(model.stride, tuple.data());
        if (storage != std::as_const(stream.values).data()) pointer_ = nullptr;
    }

    template <typename Change>
    void both(const Change& change) {
        number_ = below(1000);
        value_ = static_cast<float>(below(5));
        change(model.values);
        const auto* const storage = std::as_const(stream.values).data();
        const auto size = stream.values.size();
        change(stream.values);
        // The reference may have ended: with a reallocation, or with the float that it names.
        if (storage != std::as_const(stream.values).data() || stream.values.size() < size ||
            number_ % 2 == 0) {
            pointer_ = nullptr;
        }
    }

    /// Takes one float to write to later, in one of the ways that there are.
    void keepReference() {
        auto& values = stream.values;
        if (values.empty()) return;
        offset_ = below(static_cast<unsigned int>(values.size()));
        const auto offset = static_cast<std::ptrdiff_t>(offset_);
        switch (below(7)) {
            case 0:
                pointer_ = &values[offset_];
                break;
            case 1:
                pointer_ = &values.at(offset_);
                break;
            case 2:
                pointer_ = values.data() + offset;
                break;
            case 3:
                pointer_ = &*(values.begin() + offset);
                break;
            case 4:
                pointer_ = &*(values.rend() - 1 - offset);
                break;
            case 5:
                pointer_ = &values.front() + offset;
                break;
            default:
                pointer_ = &values.back() - (values.size() - 1 - offset_);
        }
    }

    void writeThroughReference() {
        if (!pointer_ || offset_ >= model.values.size()) return;
        *pointer_ = model.values[offset_] = static_cast<float>(below(5));
    }

    /// Out and back again: references follow the floats.
    void swapValues() {
        FloatArray other;
        other.swap(stream.values);
        insertNothing();
        stream.values = std::move(other);
    }

    void insertNothing() {
        const Floats tuple(static_cast<std::size_t>(model.stride), 9.0f);
        stream.insertValue(model.stride, tuple.data());
        stream.count = model.count;
    }

    void removeFloat() {
        if (!model.values.empty()) both([](auto& v) { v.pop_back(); });
    }

    void removeTuple() {
        for (int i = 0; i < model.stride; ++i) removeFloat();
    }

    void changeStride() {
        model.stride = 1 + static_cast<int>(below(6));
        stream.stride = model.stride;
    }

    template <typename Values>
    std::ptrdiff_t place(const Values& values) const {
        // Near the end, so that streams grow in spite of the removals.
        return static_cast<std::ptrdiff_t>(values.size() - number_ % (values.size() + 1) / 16);
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_()) % limit; }

    std::mt19937 random_;
    unsigned int number_ = 0;
    float value_ = 0;
    float* pointer_ = nullptr;
    std::size_t offset_ = 0;
};

class StreamModelTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(StreamModelTest, InsertsAsAScanDoes) {
    StreamUnderEdits edits(GetParam());
    for (int i = 0; i < 6000; ++i) {
        edits.step();
        ASSERT_EQ(edits.returned, edits.expected) << "at step " << i;
        ASSERT_EQ(edits.stream.values, edits.model.values) << "at step " << i;
        ASSERT_EQ(edits.stream.count, edits.model.count) << "at step " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StreamModelTest, ::testing::Range(0u, 24u));

/// Without references for writing, so that the index is in use nearly all the time.
TEST(StreamModel, KeepsTheLowestIndexWhenTuplesComeAndGo) {
    std::mt19937 random(7);
    Stream stream("stream", 2, false);
    StreamModel model;
    model.stride = 2;
    for (int i = 0; i < 40000; ++i) {
        const Floats tuple = {static_cast<float>(random() % 40), static_cast<float>(random() % 8)};
        if (random() % 50 == 0) {
            std::reverse(model.values.begin(), model.values.end());
            stream.values = model.values;
        }
        if (random() % 3 == 0) {
            const std::size_t size = model.values.size() - random() % (model.values.size() + 1) / 4;
            model.values.resize(size);
            stream.values.resize(size);
        } else if (random() % 3 == 0) {
            // A duplicate that insertValue would not have stored.
            for (const float value : tuple) stream.values.push_back(value);
            model.values.insert(model.values.end(), tuple.begin(), tuple.end());
        }
        ASSERT_EQ(stream.insertValue(2, tuple.data()), model.insertValue(tuple)) << i;
    }
}

}  // namespace
}  // namespace vantorix::scene
