#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vantorix::apps::import {

/// A value of the CBOR part of an answer. It is released without asking for memory, which the
/// parser's own values need to take themselves apart.
class AnswerValue {
public:
    struct Field;
    using List = std::vector<AnswerValue>;
    using Object = std::vector<Field>;

    AnswerValue() = default;  ///< Null.

    /// @throws RefusedError unless @p size bytes are one sound CBOR item.
    static AnswerValue fromCbor(const std::uint8_t* bytes, std::size_t size);

    bool isNull() const { return is<std::monostate>(); }
    /// The value if it is of this type, else an empty pointer. Numbers are unsigned (from 0 on),
    /// signed (below 0) or floating.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&value_);
    }
    /// The first field of this name, or an empty pointer; also where this is no object.
    const AnswerValue* find(const char* name) const;

private:
    friend class AnswerValueBuilder;

    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(value_);
    }

    std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, std::string, List,
                 Object>
        value_;
};

struct AnswerValue::Field {
    std::string name;
    AnswerValue value;
};

}  // namespace vantorix::apps::import
