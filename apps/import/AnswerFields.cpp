#include "apps/import/AnswerFields.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <nlohmann/json.hpp>

#include "apps/import/ImportError.h"

namespace vantorix::apps::import {
namespace {

using nlohmann::json;

constexpr std::size_t longestText = 65536;

[[noreturn]] void refuse(const std::string& field) {
    throw RefusedError("the import worker's answer is broken: " + field);
}

std::string textOf(const json& value, const char* key) {
    const auto text = value.get_ptr<const json::string_t*>();
    if (!text || text->size() > longestText) refuse(key);
    return *text;
}

}  // namespace

void AnswerArrays::claim(std::uint64_t position, std::uint64_t count, std::size_t elementSize) {
    if (position > size_ || count > (size_ - position) / elementSize) refuse("array outside");
    if (count > untaken_ / elementSize) refuse("overlapping arrays");
    untaken_ -= count * elementSize;
}

AnswerFields::AnswerFields(const json& object, AnswerArrays& arrays)
    : object_(&object), arrays_(&arrays) {
    if (!object.is_object()) refuse("no object");
}

const json& AnswerFields::field(const char* key) const {
    const auto found = object_->find(key);
    if (found == object_->end()) refuse(key);
    return *found;
}

const json& AnswerFields::list(const char* key) const {
    const json& value = field(key);
    if (!value.is_array()) refuse(key);
    return value;
}

bool AnswerFields::has(const char* key) const { return !field(key).is_null(); }

bool AnswerFields::flag(const char* key) const {
    const json& value = field(key);
    if (!value.is_boolean()) refuse(key);
    return value.get<bool>();
}

std::string AnswerFields::text(const char* key) const { return textOf(field(key), key); }

double AnswerFields::number(const char* key) const {
    const json& value = field(key);
    if (!value.is_number() || !std::isfinite(value.get<double>())) refuse(key);
    return value.get<double>();
}

std::uint64_t AnswerFields::count(const char* key, std::uint64_t most) const {
    const json& value = field(key);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > most) refuse(key);
    return value.get<std::uint64_t>();
}

std::int64_t AnswerFields::integer(const char* key, std::int64_t least, std::int64_t most) const {
    const json& value = field(key);
    if (!value.is_number_integer()) refuse(key);
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t{1} << 62) {
        refuse(key);
    }
    const auto number = value.get<std::int64_t>();
    if (number < least || number > most) refuse(key);
    return number;
}

template <typename T>
std::vector<T> AnswerFields::array(const char* key) const {
    constexpr auto any = std::numeric_limits<std::uint64_t>::max();
    const auto reference = object(key);
    return arrays_->take<T>(reference.count("at", any), reference.count("count", any));
}

std::vector<float> AnswerFields::floats(const char* key) const {
    auto values = array<float>(key);
    const bool finite =
        std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); });
    if (!finite) refuse(key);
    return values;
}

std::vector<std::uint32_t> AnswerFields::indices(const char* key) const {
    return array<std::uint32_t>(key);
}

std::vector<std::uint8_t> AnswerFields::bytes(const char* key) const {
    return array<std::uint8_t>(key);
}

AnswerFields AnswerFields::object(const char* key) const {
    return AnswerFields(field(key), *arrays_);
}

std::vector<AnswerFields> AnswerFields::objects(const char* key) const {
    std::vector<AnswerFields> result;
    for (const auto& item : list(key)) result.emplace_back(item, *arrays_);
    return result;
}

std::vector<std::string> AnswerFields::texts(const char* key) const {
    std::vector<std::string> result;
    for (const auto& item : list(key)) result.push_back(textOf(item, key));
    return result;
}

std::vector<std::vector<std::string>> AnswerFields::textRows(const char* key,
                                                             std::size_t width) const {
    std::vector<std::vector<std::string>> rows;
    for (const auto& item : list(key)) {
        if (!item.is_array()) refuse(key);
        requireSize(key, item.size(), width);
        auto& row = rows.emplace_back();
        for (const auto& cell : item) row.push_back(textOf(cell, key));
    }
    return rows;
}

void AnswerFields::requireSize(const char* key, std::size_t size, std::size_t wanted) {
    if (size != wanted) refuse(key);
}

}  // namespace vantorix::apps::import
