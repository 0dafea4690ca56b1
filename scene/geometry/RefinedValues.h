#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/EdgeTable.h"
#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/Stream.h"

namespace vantorix::scene {

/// The values of one semantic at the corners and edge midpoints of triangles that are split, in a
/// stream that holds equal values once.
///
/// A midpoint is calculated in the direction in which its edge is met first. Corners with equal
/// values are one corner here, so a neighbour that runs along the edge the other way, where the
/// same rule may differ in the last bit, gets the very same midpoint.
///
/// Triangles are taken in blocks, whose values come into the stream together: it finds equal ones
/// faster so.
///
/// @tparam Size floats per value, at most 3.
template <int Size>
class RefinedValues {
public:
    using Value = Eigen::Matrix<float, Size, 1>;
    using Midpoint = Value (*)(const Value&, const Value&);

    /// The places of a split triangle with corners A, B, C, in the order in which their values
    /// come into the stream.
    enum Place { CORNER_A, MIDDLE_AB, MIDDLE_AC, MIDDLE_BC, CORNER_B, CORNER_C, PLACES };

    /// Makes room for what a closed mesh of @p triangleCount triangles has: half as many corners
    /// and three halves as many edges.
    RefinedValues(const std::string& name, Midpoint midpoint, std::size_t triangleCount)
        : stream_(boost::make_shared<Stream>(name, Size, false)),
          corners_("", Size, false),
          midpoint_(midpoint),
          edges_(triangleCount / 2, triangleCount / 2 * 3) {
        stream_->values.reserve(2 * triangleCount * Size);
        corners_.values.reserve(triangleCount / 2 * Size);
        cornersMet_.reserve(triangleCount / 2);
        indices_.reserve(2 * triangleCount);
    }

    /// Gives back the room that the values did not need.
    void finish() {
        auto& values = stream_->values;
        if (values.size() < values.capacity() / 4 * 3) values.shrink_to_fit();
    }

    const boost::shared_ptr<Stream>& stream() const { return stream_; }

    /// Stores what is new among the values of the next block, three @p corners per triangle.
    /// @p onNew is called with triangle of the block and place of each that was not there before.
    template <typename OnNew>
    void addBlock(const std::vector<FaceAssembler::Value>& corners, OnNew onNew) {
        numberCorners(corners);
        places_.clear();
        newValues_.clear();
        const auto corner = [&](std::size_t i) {
            return Corner{cornerNumbers_[i], corners[i].floats.template head<Size>()};
        };
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            addTriangle(corner(i), corner(i + 1), corner(i + 2));
        }
        storeNewValues(onNew);
    }

    /// Where in the stream a value of the last block stands.
    unsigned int index(std::size_t triangle, Place place) const {
        return static_cast<unsigned int>(indices_[places_[triangle * PLACES + place]]);
    }

private:
    /// A value that was met, by the number of those before it.
    using Met = std::uint32_t;

    struct Corner {
        std::uint32_t number;  // The same for equal values.
        Value value;
    };

    /// Finds the numbers of all corners. Those whose tuples are met first get new ones: only then
    /// a value is looked for.
    void numberCorners(const std::vector<FaceAssembler::Value>& corners) {
        newCorners_.clear();
        newValues_.clear();
        cornerNumbers_.resize(corners.size());
        for (std::size_t i = 0; i < corners.size(); ++i) {
            cornerNumbers_[i] = numberOf(corners[i]);
            if (cornerNumbers_[i] != EdgeTable::unset) continue;
            newCorners_.push_back(i);
            newValues_.push_back(corners[i].floats.template head<Size>());
        }
        newIndices_.resize(newCorners_.size());
        store(corners_, newIndices_.data());
        for (std::size_t i = 0; i < newCorners_.size(); ++i) {
            const auto number = static_cast<std::uint32_t>(newIndices_[i]);
            cornerNumbers_[newCorners_[i]] = numberOf(corners[newCorners_[i]]) = number;
        }
        cornersMet_.resize(static_cast<std::size_t>(corners_.count), EdgeTable::unset);
    }

    /// Remembered by tuple.
    std::uint32_t& numberOf(const FaceAssembler::Value& source) {
        if (source.input >= numbers_.size()) numbers_.resize(source.input + 1);
        auto& numbers = numbers_[source.input];
        if (source.tuple >= numbers.size()) numbers.resize(source.tuple + 1, EdgeTable::unset);
        return numbers[source.tuple];
    }

    void addTriangle(const Corner& a, const Corner& b, const Corner& c) {
        takeCorner(a);
        takeMiddle(a, b);
        takeMiddle(a, c);
        takeMiddle(b, c);
        takeCorner(b);
        takeCorner(c);
    }

    void takeCorner(const Corner& corner) {
        Met& met = cornersMet_[corner.number];
        if (met == EdgeTable::unset) met = meet(corner.value);
        places_.push_back(met);
    }

    void takeMiddle(const Corner& from, const Corner& to) {
        Met& met = edges_.at(from.number, to.number);
        if (met == EdgeTable::unset) met = meet(midpoint_(from.value, to.value));
        places_.push_back(met);
    }

    Met meet(const Value& value) {
        newValues_.push_back(value);
        sources_.push_back(places_.size());
        return static_cast<Met>(indices_.size() + sources_.size() - 1);
    }

    void store(Stream& stream, int* indices) const {
        static_assert(sizeof(Value) == Size * sizeof(float));
        if (newValues_.empty()) return;
        stream.insertValues(Size, newValues_.front().data(), newValues_.size(), indices);
    }

    template <typename OnNew>
    void storeNewValues(OnNew onNew) {
        const std::size_t first = indices_.size();
        indices_.resize(first + sources_.size());
        int stored = stream_->count;
        store(*stream_, indices_.data() + first);
        for (std::size_t i = 0; i < sources_.size(); ++i) {
            if (indices_[first + i] != stored) continue;  // Another corner's or edge's value.
            ++stored;
            onNew(sources_[i] / PLACES, static_cast<Place>(sources_[i] % PLACES));
        }
        sources_.clear();
    }

    boost::shared_ptr<Stream> stream_;
    Stream corners_;  // The distinct values of corners, in the order in which they are met.
    Midpoint midpoint_;
    std::vector<std::vector<std::uint32_t>> numbers_;  // By input, then by tuple.
    std::vector<Met> cornersMet_;                      // By number of the corner.
    EdgeTable edges_;                                  // What was met as the midpoint.
    std::vector<int> indices_;                         // In the stream, of each value met.

    std::vector<Met> places_;           // Of the last block, PLACES for each triangle.
    std::vector<std::size_t> sources_;  // Of new values: where among the places they are met.
    std::vector<Value> newValues_;
    std::vector<std::uint32_t> cornerNumbers_;
    std::vector<std::size_t> newCorners_;
    std::vector<int> newIndices_;
};

}  // namespace vantorix::scene
