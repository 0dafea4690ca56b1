#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {

class Vertex;

/// The values of a triangle's three corners in one run of words, until somebody asks for the
/// vertices. Per value: a word with its semantic and size, then its floats. The words follow the
/// object in memory. As with the setters of a vertex, a later value of a semantic replaces an
/// earlier one.
class PackedCorners {
public:
    /// Most floats of one value.
    static constexpr std::size_t mostFloats = (std::size_t{1} << 28) - 1;

    static std::size_t wordsFor(std::size_t floats) { return 1 + floats; }

    PackedCorners() : ends_{} {}

    /// Corners are filled in ascending order, within the words that the maker has reserved.
    void add(std::size_t corner, StreamSemantic semantic, const float* values, std::size_t size) {
        std::uint32_t* const header = words() + ends_[2];
        *header = static_cast<std::uint32_t>(semantic) | static_cast<std::uint32_t>(size)
                                                             << semanticBits;
        std::memcpy(header + 1, values, size * sizeof(float));
        const auto end = ends_[2] + static_cast<std::uint32_t>(wordsFor(size));
        for (std::size_t i = corner; i < ends_.size(); ++i) ends_[i] = end;
    }

    /// Overwrites three positions of three components; false, with nothing changed, when a corner
    /// has none or one of another size.
    bool setPositions(const std::array<Eigen::Vector3f, 3>& positions);

    std::array<boost::shared_ptr<Vertex>, 3> makeVertices() const;

private:
    static constexpr unsigned int semanticBits = 4;

    struct Value {
        StreamSemantic semantic;
        std::size_t size;
        std::size_t start;  // The word of its first float.
        std::size_t end() const { return start + size; }
    };
    Value read(std::size_t word) const;
    /// The position that counts; of size 0 and INVALID when there is none.
    Value findPosition(std::size_t corner) const;
    std::size_t begin(std::size_t corner) const { return corner == 0 ? 0 : ends_[corner - 1]; }
    std::uint32_t* words() { return reinterpret_cast<std::uint32_t*>(this + 1); }
    const std::uint32_t* words() const { return reinterpret_cast<const std::uint32_t*>(this + 1); }

    std::array<std::uint32_t, 3> ends_;  // Per corner, in words.
};

}  // namespace vantorix::scene
