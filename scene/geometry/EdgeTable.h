#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <vector>

namespace vantorix::scene {

/// One number per edge, whichever way round the edge is named.
///
/// Edges are listed under their lower corner: neighbours in the mesh are neighbours in memory. What
/// no longer fits into the list of a corner at which very many edges meet is hashed.
class EdgeTable {
public:
    static constexpr std::uint32_t unset = std::numeric_limits<std::uint32_t>::max();

    /// Makes room for that many corners and edges.
    void reserve(std::size_t corners, std::size_t edges) {
        first_.reserve(corners);
        edges_.reserve(edges);
    }

    /// The number of the edge, unset until the caller sets it. Valid until the next call.
    std::uint32_t& at(std::uint32_t corner, std::uint32_t otherCorner) {
        const auto [lower, higher] = std::minmax(corner, otherCorner);
        if (lower >= first_.size()) first_.resize(std::size_t{lower} + 1, unset);
        std::uint32_t edge = first_[lower];
        for (int walked = 0; edge != unset; edge = edges_[edge].next) {
            if (edges_[edge].higher == higher) return edges_[edge].number;
            if (++walked == longestList) return hashed(lower, higher);
        }
        edges_.push_back({higher, first_[lower], unset});
        first_[lower] = static_cast<std::uint32_t>(edges_.size() - 1);
        return edges_.back().number;
    }

private:
    static constexpr int longestList = 32;

    struct Edge {
        std::uint32_t higher;
        std::uint32_t next;
        std::uint32_t number;
    };

    std::uint32_t& hashed(std::uint32_t lower, std::uint32_t higher) {
        const std::uint64_t key = std::uint64_t{lower} << 32 | higher;
        return hashed_.emplace(key, unset).first->second;
    }

    std::vector<std::uint32_t> first_;  // By lower corner, the edge listed last.
    std::vector<Edge> edges_;
    std::unordered_map<std::uint64_t, std::uint32_t> hashed_;
};

}  // namespace vantorix::scene
