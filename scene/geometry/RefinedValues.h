#pragma once

#include <array>
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
/// @tparam Size floats per value, at most 3.
template <int Size>
class RefinedValues {
public:
    using Value = Eigen::Matrix<float, Size, 1>;
    using Midpoint = Value (*)(const Value&, const Value&);

    /// The places of a split triangle with corners A, B, C, in the order in which their values
    /// come into the stream.
    enum Place { CORNER_A, MIDDLE_AB, MIDDLE_AC, MIDDLE_BC, CORNER_B, CORNER_C, PLACES };
    using Indices = std::array<std::uint32_t, PLACES>;

    RefinedValues(const std::string& name, Midpoint midpoint)
        : stream_(boost::make_shared<Stream>(name, Size, false)),
          corners_("", Size, false),
          midpoint_(midpoint) {}

    const boost::shared_ptr<Stream>& stream() const { return stream_; }

    /// Stores what is new among the six values of a triangle, and says where in the stream they
    /// stand. @p onNew is called with the place of each that was not there before.
    template <typename OnNew>
    Indices add(const std::array<FaceAssembler::Value, 3>& triangle, OnNew onNew) {
        const Corner a = corner(triangle[0]);
        const Corner b = corner(triangle[1]);
        const Corner c = corner(triangle[2]);
        Indices indices;
        const auto take = [&](Place place, std::uint32_t& known, auto value) {
            if (known == EdgeTable::unset) {
                const int before = stream_->count;
                known = insert(value());
                if (stream_->count != before) onNew(place);
            }
            indices[place] = known;
        };
        const auto takeCorner = [&](Place place, const Corner& which) {
            take(place, cornerIndices_[which.number], [&] { return which.value; });
        };
        const auto takeMiddle = [&](Place place, const Corner& from, const Corner& to) {
            take(place, edges_.at(from.number, to.number),
                 [&] { return midpoint_(from.value, to.value); });
        };
        takeCorner(CORNER_A, a);
        takeMiddle(MIDDLE_AB, a, b);
        takeMiddle(MIDDLE_AC, a, c);
        takeMiddle(MIDDLE_BC, b, c);
        takeCorner(CORNER_B, b);
        takeCorner(CORNER_C, c);
        return indices;
    }

private:
    struct Corner {
        std::uint32_t number;  // The same for equal values.
        Value value;
    };

    Corner corner(const FaceAssembler::Value& source) {
        const Value value = source.floats.template head<Size>();
        std::uint32_t& number = numberOf(source);
        if (number == EdgeTable::unset) {
            number = static_cast<std::uint32_t>(corners_.insertValue(Size, value.data()));
            if (number >= cornerIndices_.size()) cornerIndices_.push_back(EdgeTable::unset);
        }
        return {number, value};
    }

    /// Remembered by tuple, so that a value is hashed only when its tuple is met first.
    std::uint32_t& numberOf(const FaceAssembler::Value& source) {
        if (source.input >= numbers_.size()) numbers_.resize(source.input + 1);
        auto& numbers = numbers_[source.input];
        if (source.tuple >= numbers.size()) numbers.resize(source.tuple + 1, EdgeTable::unset);
        return numbers[source.tuple];
    }

    std::uint32_t insert(const Value& value) {
        return static_cast<std::uint32_t>(stream_->insertValue(Size, value.data()));
    }

    boost::shared_ptr<Stream> stream_;
    Stream corners_;  // The distinct values of corners, in the order in which they are met.
    Midpoint midpoint_;
    std::vector<std::vector<std::uint32_t>> numbers_;  // By input, then by tuple.
    std::vector<std::uint32_t> cornerIndices_;         // In the stream, by number of the corner.
    EdgeTable edges_;                                  // Index of the midpoint in the stream.
};

}  // namespace vantorix::scene
