#include "apps/import/AnswerFields.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "apps/import/AnswerValue.h"
#include "apps/import/ImportError.h"

namespace vantorix::apps::import {
namespace {

constexpr std::size_t longestText = 65536;

[[noreturn]] void refuse(const std::string& field) {
    throw RefusedError("the import worker's answer is broken: " + field);
}

/// The value if it is of this type.
template <typename T>
const T& require(const AnswerValue& value, const char* key) {
    const auto* const found = value.as<T>();
    if (!found) refuse(key);
    return *found;
}

std::string textOf(const AnswerValue& value, const char* key) {
    const auto& text = require<std::string>(value, key);
    if (text.size() > longestText) refuse(key);
    return text;
}

}  // namespace

void AnswerArrays::claim(std::uint64_t position, std::uint64_t count, std::size_t elementSize) {
    if (position > size_ || count > (size_ - position) / elementSize) refuse("array outside");
    if (count > untaken_ / elementSize) refuse("overlapping arrays");
    untaken_ -= count * elementSize;
}

AnswerFields::AnswerFields(const AnswerValue& object, AnswerArrays& arrays)
    : object_(&object), arrays_(&arrays) {
    if (!object.as<AnswerValue::Object>()) refuse("no object");
}

const AnswerValue& AnswerFields::field(const char* key) const {
    const auto* const found = object_->find(key);
    if (!found) refuse(key);
    return *found;
}

const AnswerValue::List& AnswerFields::list(const char* key) const {
    return require<AnswerValue::List>(field(key), key);
}

bool AnswerFields::has(const char* key) const { return !field(key).isNull(); }

bool AnswerFields::flag(const char* key) const { return require<bool>(field(key), key); }

std::string AnswerFields::text(const char* key) const { return textOf(field(key), key); }

double AnswerFields::number(const char* key) const {
    const auto& value = field(key);
    if (const auto* const whole = value.as<std::uint64_t>()) return static_cast<double>(*whole);
    if (const auto* const below = value.as<std::int64_t>()) return static_cast<double>(*below);
    const double number = require<double>(value, key);
    if (!std::isfinite(number)) refuse(key);
    return number;
}

std::uint64_t AnswerFields::count(const char* key, std::uint64_t most) const {
    const auto number = require<std::uint64_t>(field(key), key);
    if (number > most) refuse(key);
    return number;
}

std::int64_t AnswerFields::integer(const char* key, std::int64_t least, std::int64_t most) const {
    const auto& value = field(key);
    const auto* const whole = value.as<std::uint64_t>();
    if (whole && *whole > std::uint64_t{1} << 62) refuse(key);
    const auto number =
        whole ? static_cast<std::int64_t>(*whole) : require<std::int64_t>(value, key);
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
        const auto& cells = require<AnswerValue::List>(item, key);
        requireSize(key, cells.size(), width);
        auto& row = rows.emplace_back();
        for (const auto& cell : cells) row.push_back(textOf(cell, key));
    }
    return rows;
}

void AnswerFields::requireSize(const char* key, std::size_t size, std::size_t wanted) {
    if (size != wanted) refuse(key);
}

}  // namespace vantorix::apps::import
