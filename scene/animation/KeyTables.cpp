#include "scene/animation/KeyTables.h"

#include <cstring>
#include <functional>
#include <string_view>

namespace vantorix::scene {
namespace {

std::string_view bytesOf(const FloatArray& times) {
    return {reinterpret_cast<const char*>(times.data()), times.size() * sizeof(float)};
}

}  // namespace

void KeyTables::clear() {
    tables_.assign(1, Table());
    intervals_.assign(1, KeyInterval());
    unused_.clear();
    byHash_.clear();
}

std::uint32_t KeyTables::take(const FloatArray& times) {
    if (times.empty()) return none;
    const auto hash = std::hash<std::string_view>()(bytesOf(times));
    auto table = find(times, hash);
    if (table == none) table = add(times, hash);
    ++tables_[table].users;
    return table;
}

std::uint32_t KeyTables::find(const FloatArray& times, std::size_t hash) const {
    const auto [first, last] = byHash_.equal_range(hash);
    for (auto entry = first; entry != last; ++entry) {
        const auto& found = tables_[entry->second].times;
        if (found.size() == times.size() &&
            std::memcmp(found.data(), times.data(), times.size() * sizeof(float)) == 0) {
            return entry->second;
        }
    }
    return none;
}

// Makes room in the list of unused tables, too, so that no release can fail.
std::uint32_t KeyTables::add(const FloatArray& times, std::size_t hash) {
    if (unused_.empty()) {
        if (unused_.capacity() <= tables_.size()) unused_.reserve(2 * tables_.size());
        intervals_.resize(tables_.size() + 1);
        tables_.emplace_back();
        unused_.push_back(static_cast<std::uint32_t>(tables_.size() - 1));
    }
    const auto table = unused_.back();
    auto& added = tables_[table];
    added.times = times;
    added.hash = hash;
    added.isAscending = areAscending(times.data(), times.size());
    byHash_.emplace(hash, table);
    unused_.pop_back();
    return table;
}

void KeyTables::release(std::uint32_t table) {
    if (table == none || --tables_[table].users > 0) return;
    const auto [first, last] = byHash_.equal_range(tables_[table].hash);
    for (auto entry = first; entry != last; ++entry) {
        if (entry->second != table) continue;
        byHash_.erase(entry);
        break;
    }
    tables_[table] = Table();
    unused_.push_back(table);
}

// Tables of one animation mostly have keys at similar places.
void KeyTables::seek(float time) {
    constexpr std::size_t tablesAhead = 4;
    std::size_t likely = intervals_.back().endKey;
    for (std::size_t i = 1; i < tables_.size(); ++i) {
        if (i + tablesAhead < tables_.size()) {
            const auto& next = tables_[i + tablesAhead].times;
            __builtin_prefetch(next.data() + std::min(likely, next.size()));
        }
        const auto& times = tables_[i].times;
        if (times.empty()) continue;
        const auto end = tables_[i].isAscending
                             ? firstAscendingKeyFrom(times.data(), times.size(), time, likely)
                             : firstKeyFrom(times.data(), times.size(), time);
        intervals_[i] = KeyInterval(times.data(), times.size(), end, time);
        likely = end;
    }
}

}  // namespace vantorix::scene
