#include "apps/import/AnswerValue.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "apps/import/ImportError.h"

namespace vantorix::apps::import {

using nlohmann::json;

/// Puts together what a parse comes across; false from any call ends it.
class AnswerValueBuilder : public nlohmann::json_sax<json> {
public:
    explicit AnswerValueBuilder(AnswerValue& root) : root_(root) {}

    bool null() override { return add(std::monostate()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(std::int64_t{value}); }
    bool number_unsigned(number_unsigned_t value) override { return add(std::uint64_t{value}); }
    bool number_float(number_float_t value, const string_t&) override { return add(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return false; }
    bool key(string_t& name) override {
        name_ = std::move(name);
        return true;
    }
    bool start_object(std::size_t) override { return open(AnswerValue::Object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(AnswerValue::List()); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const json::exception&) override {
        return false;
    }

private:
    template <typename T>
    bool add(T&& value) {
        next().value_ = std::forward<T>(value);
        return true;
    }

    template <typename Container>
    bool open(Container&& container) {
        auto& value = next();
        value.value_ = std::forward<Container>(container);
        open_.push_back(&value);  // It stays where it is: nothing comes in beside it meanwhile.
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    AnswerValue& next() {
        if (open_.empty()) return root_;
        auto& container = open_.back()->value_;
        if (auto* const list = std::get_if<AnswerValue::List>(&container)) {
            return list->emplace_back();
        }
        auto& object = std::get<AnswerValue::Object>(container);
        return object.emplace_back(AnswerValue::Field{std::move(name_), {}}).value;
    }

    AnswerValue& root_;
    std::vector<AnswerValue*> open_;  ///< The innermost last.
    std::string name_;                ///< Of the next field.
};

AnswerValue AnswerValue::fromCbor(const std::uint8_t* bytes, std::size_t size) {
    AnswerValue root;
    AnswerValueBuilder builder(root);
    if (!json::sax_parse(bytes, bytes + size, &builder, json::input_format_t::cbor)) {
        throw RefusedError("the import worker's answer is no sound document");
    }
    return root;
}

const AnswerValue* AnswerValue::find(const char* name) const {
    const auto* const object = as<Object>();
    if (!object) return nullptr;
    const auto found = std::find_if(object->begin(), object->end(),
                                    [name](const Field& field) { return field.name == name; });
    return found == object->end() ? nullptr : &found->value;
}

}  // namespace vantorix::apps::import
