#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scene/geometry/EdgeTable.h"

namespace vantorix::scene {

/// Which corners and edges of triangles that are split were met before, by the numbers of the
/// corners alone: values of several semantics whose corners are numbered alike share the answers.
class SplitPlaces {
public:
    /// The places of a split triangle with corners A, B, C, in the order in which they are met.
    enum Place { CORNER_A, MIDDLE_AB, MIDDLE_AC, MIDDLE_BC, CORNER_B, CORNER_C, PLACES };

    /// A value that was met, by the number of those before it.
    using Met = std::uint32_t;

    /// Makes room for what a closed mesh of @p triangleCount triangles has: half as many corners
    /// and three halves as many edges.
    void reserve(std::size_t triangleCount) {
        cornersMet_.reserve(triangleCount / 2);
        edges_.reserve(triangleCount / 2, triangleCount / 2 * 3);
    }

    /// Goes through the next triangles.
    /// @param corners      three numbers for each triangle.
    /// @param cornerCount  is above all numbers.
    void addBlock(const std::vector<std::uint32_t>& corners, std::size_t cornerCount) {
        cornersMet_.resize(cornerCount, EdgeTable::unset);
        places_.clear();
        firstPlaces_.clear();
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            addTriangle(corners[i], corners[i + 1], corners[i + 2]);
        }
        metCount_ += static_cast<Met>(firstPlaces_.size());
    }

    /// What stands at a place of the last block.
    Met at(std::size_t triangle, Place place) const { return places_[triangle * PLACES + place]; }

    /// Where the last block has met something for the first time, in order: PLACES numbers for each
    /// triangle.
    const std::vector<std::size_t>& firstPlaces() const { return firstPlaces_; }

private:
    void addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        take(cornersMet_[a]);
        take(edges_.at(a, b));
        take(edges_.at(a, c));
        take(edges_.at(b, c));
        take(cornersMet_[b]);
        take(cornersMet_[c]);
    }

    void take(Met& met) {
        if (met == EdgeTable::unset) {
            met = metCount_ + static_cast<Met>(firstPlaces_.size());
            firstPlaces_.push_back(places_.size());
        }
        places_.push_back(met);
    }

    std::vector<Met> cornersMet_;  // By number of the corner.
    EdgeTable edges_;              // What was met as the midpoint.
    Met metCount_ = 0;             // Before the last block, and in it.
    std::vector<Met> places_;      // Of the last block, PLACES for each triangle.
    std::vector<std::size_t> firstPlaces_;
};

}  // namespace vantorix::scene
