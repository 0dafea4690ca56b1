#include "apps/import/NormalGenerator.h"

#include <cmath>

#include <Eigen/Geometry>

#include "scene/geometry/Stream.h"

namespace vantorix::apps::import {
namespace {

constexpr float leastCosine = 0.642788f;  // 50 degrees.

/// Around a position with more corners all faces count: comparing each with each would cost the
/// square of their number, and a fan of so many faces is nearly flat or a tip.
constexpr std::size_t mostComparedCorners = 64;

/// Of a face without area.
const Eigen::Vector3f anyDirection(0, 0, 1);

Eigen::Vector3f unitOr(const Eigen::Vector3f& vector, const Eigen::Vector3f& otherwise) {
    const float length = vector.stableNorm();
    return std::isnormal(length) ? Eigen::Vector3f(vector / length) : otherwise;
}

}  // namespace

NormalGenerator::NormalGenerator(const std::vector<float>& positions,
                                 const std::vector<unsigned int>& corners,
                                 const std::vector<unsigned int>& sizes)
    : positions_(positions), corners_(corners) {
    faces_.reserve(corners.size());
    crosses_.reserve(sizes.size());
    directions_.reserve(sizes.size());
    for (const auto size : sizes) {
        crosses_.push_back(faceCross(faces_.size(), size));
        directions_.push_back(unitOr(crosses_.back(), Eigen::Vector3f::Zero()));
        faces_.insert(faces_.end(), size, static_cast<unsigned int>(crosses_.size() - 1));
    }
    sortCornersByPosition();
}

std::vector<unsigned int> NormalGenerator::storeIn(scene::Stream& stream) const {
    std::vector<unsigned int> tuples(corners_.size());
    for (std::size_t position = 0; position + 1 < firsts_.size(); ++position) {
        const std::size_t first = firsts_[position];
        const std::size_t last = firsts_[position + 1];
        if (last - first <= mostComparedCorners) {
            storeSharpest(first, last, stream, tuples);
        } else {
            storeSmooth(first, last, stream, tuples);
        }
    }
    return tuples;
}

/// Compares each face around a position with each other one.
void NormalGenerator::storeSharpest(std::size_t first, std::size_t last, scene::Stream& stream,
                                    std::vector<unsigned int>& tuples) const {
    Eigen::Vector3f previous = Eigen::Vector3f::Zero();
    unsigned int tuple = 0;
    for (std::size_t i = first; i < last; ++i) {
        const Eigen::Vector3f normal = normalOf(sorted_[i], first, last);
        // Where the surface is smooth, all corners of a position share the first one's search.
        if (normal != previous) {
            tuple = static_cast<unsigned int>(stream.insertValue(3, normal.data()));
        }
        previous = normal;
        tuples[sorted_[i]] = tuple;
    }
}

void NormalGenerator::storeSmooth(std::size_t first, std::size_t last, scene::Stream& stream,
                                  std::vector<unsigned int>& tuples) const {
    Eigen::Vector3f sum = Eigen::Vector3f::Zero();
    for (std::size_t i = first; i < last; ++i) sum += crosses_[faces_[sorted_[i]]];
    const Eigen::Vector3f normal = unitOr(sum, anyDirection);
    const int tuple = stream.insertValue(3, normal.data());
    for (std::size_t i = first; i < last; ++i) {
        tuples[sorted_[i]] = static_cast<unsigned int>(tuple);
    }
}

/// A counting sort.
void NormalGenerator::sortCornersByPosition() {
    firsts_.assign(positions_.size() / 3 + 1, 0);
    for (const auto position : corners_) ++firsts_[position + 1];
    for (std::size_t i = 1; i < firsts_.size(); ++i) firsts_[i] += firsts_[i - 1];
    sorted_.resize(corners_.size());
    auto next = firsts_;
    for (std::size_t corner = 0; corner < corners_.size(); ++corner) {
        sorted_[next[corners_[corner]]++] = static_cast<unsigned int>(corner);
    }
}

/// The sum over the triangles around the first corner, whatever the polygon's shape: Newell's
/// vector (Sutherland, Sproull and Schumacker, "A Characterization of Ten Hidden-Surface
/// Algorithms", 1974).
Eigen::Vector3f NormalGenerator::faceCross(std::size_t first, std::size_t size) const {
    using ConstPosition = Eigen::Map<const Eigen::Vector3f>;
    const auto at = [this, first](std::size_t corner) {
        return ConstPosition(&positions_[std::size_t{corners_[first + corner]} * 3]);
    };
    Eigen::Vector3f cross = Eigen::Vector3f::Zero();
    for (std::size_t i = 2; i < size; ++i) cross += (at(i - 1) - at(0)).cross(at(i) - at(0));
    return cross.allFinite() ? cross : Eigen::Vector3f::Zero();
}

Eigen::Vector3f NormalGenerator::normalOf(unsigned int corner, std::size_t first,
                                          std::size_t last) const {
    const Eigen::Vector3f& own = directions_[faces_[corner]];
    Eigen::Vector3f sum = Eigen::Vector3f::Zero();
    for (std::size_t i = first; i < last; ++i) {
        const std::size_t face = faces_[sorted_[i]];
        if (own.dot(directions_[face]) >= leastCosine) sum += crosses_[face];
    }
    return unitOr(sum, own.isZero() ? anyDirection : own);
}

}  // namespace vantorix::apps::import
