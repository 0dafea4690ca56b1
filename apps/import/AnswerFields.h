#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace vantorix::apps::import {

class AnswerValue;

/// The array bytes of an answer. What is taken is counted, so that references which name the same
/// bytes again and again cannot make a small message large.
class AnswerArrays {
public:
    AnswerArrays(const std::uint8_t* bytes, std::size_t size)
        : bytes_(bytes), size_(size), untaken_(size) {}

    /// @throws RefusedError unless the @p count elements at byte @p position all exist.
    template <typename T>
    std::vector<T> take(std::uint64_t position, std::uint64_t count) {
        claim(position, count, sizeof(T));
        std::vector<T> values(static_cast<std::size_t>(count));
        if (count > 0) std::memcpy(values.data(), bytes_ + position, values.size() * sizeof(T));
        return values;
    }

private:
    void claim(std::uint64_t position, std::uint64_t count, std::size_t elementSize);

    const std::uint8_t* bytes_;
    std::uint64_t size_;
    std::uint64_t untaken_;
};

/// One object of the CBOR part, read field by field; whatever is not as it should be is refused.
class AnswerFields {
public:
    /// Refers to both; neither is copied.
    AnswerFields(const AnswerValue& object, AnswerArrays& arrays);

    bool has(const char* key) const;  ///< Whether the field is more than null.
    bool flag(const char* key) const;
    std::string text(const char* key) const;
    double number(const char* key) const;                            ///< Finite.
    std::uint64_t count(const char* key, std::uint64_t most) const;  ///< 0 to @p most.
    std::int64_t integer(const char* key, std::int64_t least, std::int64_t most) const;

    std::vector<float> floats(const char* key) const;  ///< All finite.
    std::vector<std::uint32_t> indices(const char* key) const;
    std::vector<std::uint8_t> bytes(const char* key) const;

    template <std::size_t N>
    std::array<float, N> fixedFloats(const char* key) const {
        const auto values = floats(key);
        requireSize(key, values.size(), N);
        std::array<float, N> result{};
        std::memcpy(result.data(), values.data(), sizeof(result));
        return result;
    }

    AnswerFields object(const char* key) const;
    std::vector<AnswerFields> objects(const char* key) const;
    std::vector<std::string> texts(const char* key) const;
    /// Lists of @p width texts each.
    std::vector<std::vector<std::string>> textRows(const char* key, std::size_t width) const;

    /// @throws RefusedError unless @p size is @p wanted.
    static void requireSize(const char* key, std::size_t size, std::size_t wanted);

private:
    const AnswerValue& field(const char* key) const;
    const std::vector<AnswerValue>& list(const char* key) const;
    template <typename T>
    std::vector<T> array(const char* key) const;

    const AnswerValue* object_;
    AnswerArrays* arrays_;
};

}  // namespace vantorix::apps::import
