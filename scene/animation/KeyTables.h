#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <boost/unordered/unordered_map.hpp>

#include "scene/animation/KeyTimes.h"

namespace vantorix::scene {

/// The different lists of key times of many channels. Most channels have the times of some other
/// one: where all bits are equal they share a table, which an update searches once.
class KeyTables {
public:
    /// A table without keys.
    static constexpr std::uint32_t none = 0;

    KeyTables() { clear(); }

    void clear();

    /// The table with a copy of @p times, which counts one user more.
    std::uint32_t take(const FloatArray& times);
    void release(std::uint32_t table);

    /// Finds the keys around @p time.
    void seek(float time);
    /// Those found in @p table.
    const KeyInterval& interval(std::uint32_t table) const { return intervals_[table]; }

    std::size_t keyCount(std::uint32_t table) const { return tables_[table].times.size(); }

private:
    struct Table {
        std::vector<float> times;
        std::size_t hash = 0;
        std::size_t users = 0;
        bool isAscending = false;
    };

    std::uint32_t find(const FloatArray& times, std::size_t hash) const;
    std::uint32_t add(const FloatArray& times, std::size_t hash);

    std::vector<Table> tables_;
    std::vector<KeyInterval> intervals_;  ///< One per table.
    std::vector<std::uint32_t> unused_;
    boost::unordered_multimap<std::size_t, std::uint32_t> byHash_;
};

}  // namespace vantorix::scene
