#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/SplitPlaces.h"
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

    using Place = SplitPlaces::Place;

    /// Makes room for what a closed mesh of @p triangleCount triangles has.
    /// @param isDistinct  every corner has a value, and other tuples are other values.
    RefinedValues(const std::string& name, Midpoint midpoint, std::size_t triangleCount,
                  bool isDistinct)
        : stream_(boost::make_shared<Stream>(name, Size, false)),
          corners_("", Size, false),
          isDistinct_(isDistinct),
          midpoint_(midpoint) {
        stream_->values.reserve(2 * triangleCount * Size);
        if (!isDistinct) corners_.values.reserve(triangleCount / 2 * Size);
        indices_.reserve(2 * triangleCount);
    }

    /// Gives back the room that the values did not need.
    void finish() {
        auto& values = stream_->values;
        if (values.size() < values.capacity() / 4 * 3) values.shrink_to_fit();
    }

    const boost::shared_ptr<Stream>& stream() const { return stream_; }

    /// Reads the values of the next block, three corners per triangle, and numbers them.
    void readBlock(const FaceAssembler& faces, StreamSemantic semantic, std::size_t firstCorner,
                   std::size_t count) {
        faces.readValues(semantic, firstCorner, count, block_);
        numberCorners();
    }

    /// The numbers of the block's corners: the same for equal values.
    const std::vector<std::uint32_t>& cornerNumbers() const { return cornerNumbers_; }
    std::size_t cornerCount() const { return cornerCount_; }

    /// Stores the values that the block has met for the first time.
    /// @p onNew is called with triangle of the block and place of each that was not there before.
    template <typename OnNew>
    void storeBlock(const SplitPlaces& places, OnNew onNew) {
        newValues_.clear();
        for (const std::size_t place : places.firstPlaces()) {
            newValues_.push_back(valueAt(place / SplitPlaces::PLACES, placeOf(place)));
        }
        storeNewValues(places.firstPlaces(), onNew);
    }

    /// Where in the stream a value stands that was met.
    unsigned int index(SplitPlaces::Met met) const {
        return static_cast<unsigned int>(indices_[met]);
    }

private:
    void numberCorners() {
        cornerNumbers_.resize(block_.size());
        if (isDistinct_) {
            numberTuples();
        } else {
            numberDistinctValues();
        }
    }

    void numberTuples() {
        for (std::size_t i = 0; i < block_.size(); ++i) {
            auto& number = numberOf(block_[i]);
            if (number == EdgeTable::unset) number = static_cast<std::uint32_t>(cornerCount_++);
            cornerNumbers_[i] = number;
        }
    }

    /// Tuples that are met first get new numbers: only then a value is looked for.
    void numberDistinctValues() {
        newCorners_.clear();
        newValues_.clear();
        for (std::size_t i = 0; i < block_.size(); ++i) {
            cornerNumbers_[i] = numberOf(block_[i]);
            if (cornerNumbers_[i] != EdgeTable::unset) continue;
            newCorners_.push_back(i);
            newValues_.push_back(corner(i));
        }
        newIndices_.resize(newCorners_.size());
        store(corners_, newIndices_.data());
        for (std::size_t i = 0; i < newCorners_.size(); ++i) {
            const auto number = static_cast<std::uint32_t>(newIndices_[i]);
            cornerNumbers_[newCorners_[i]] = numberOf(block_[newCorners_[i]]) = number;
        }
        cornerCount_ = static_cast<std::size_t>(corners_.count);
    }

    Value corner(std::size_t i) const { return block_[i].floats.template head<Size>(); }

    /// Remembered by tuple.
    std::uint32_t& numberOf(const FaceAssembler::Value& source) {
        if (source.input >= numbers_.size()) numbers_.resize(source.input + 1);
        auto& numbers = numbers_[source.input];
        if (source.tuple >= numbers.size()) numbers.resize(source.tuple + 1, EdgeTable::unset);
        return numbers[source.tuple];
    }

    static Place placeOf(std::size_t place) {
        return static_cast<Place>(place % SplitPlaces::PLACES);
    }

    Value valueAt(std::size_t triangle, Place place) const {
        const std::size_t a = 3 * triangle;
        switch (place) {
            case SplitPlaces::CORNER_A:
                return corner(a);
            case SplitPlaces::MIDDLE_AB:
                return midpoint_(corner(a), corner(a + 1));
            case SplitPlaces::MIDDLE_AC:
                return midpoint_(corner(a), corner(a + 2));
            case SplitPlaces::MIDDLE_BC:
                return midpoint_(corner(a + 1), corner(a + 2));
            case SplitPlaces::CORNER_B:
                return corner(a + 1);
            default:
                return corner(a + 2);
        }
    }

    void store(Stream& stream, int* indices) const {
        static_assert(sizeof(Value) == Size * sizeof(float));
        if (newValues_.empty()) return;
        stream.insertValues(Size, newValues_.front().data(), newValues_.size(), indices);
    }

    template <typename OnNew>
    void storeNewValues(const std::vector<std::size_t>& places, OnNew onNew) {
        const std::size_t first = indices_.size();
        indices_.resize(first + places.size());
        int stored = stream_->count;
        store(*stream_, indices_.data() + first);
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (indices_[first + i] != stored) continue;  // Another corner's or edge's value.
            ++stored;
            onNew(places[i] / SplitPlaces::PLACES, placeOf(places[i]));
        }
    }

    boost::shared_ptr<Stream> stream_;
    Stream corners_;   // The distinct values of corners, in the order in which they are met.
    bool isDistinct_;  // Then these are not needed.
    std::size_t cornerCount_ = 0;  // Of the values that were met.
    Midpoint midpoint_;
    std::vector<std::vector<std::uint32_t>> numbers_;  // By input, then by tuple.
    std::vector<int> indices_;                         // In the stream, of each value met.

    std::vector<FaceAssembler::Value> block_;  // The corners at hand.
    std::vector<std::uint32_t> cornerNumbers_;
    std::vector<std::size_t> newCorners_;
    std::vector<Value> newValues_;
    std::vector<int> newIndices_;
};

}  // namespace vantorix::scene
