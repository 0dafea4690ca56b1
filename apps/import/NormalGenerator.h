#pragma once

#include <vector>

#include <Eigen/Core>

namespace vantorix::scene {
class Stream;
}

namespace vantorix::apps::import {

/// Normals for faces that came without any: smooth over faces that meet at a flat angle, with
/// an edge where they do not, so that a ball looks round and a box does not.
///
/// The normal of a corner is the sum of the cross products, and so weighted with the areas, of
/// those faces around its position whose normals are within 50 degrees of its own face's.
class NormalGenerator {
public:
    /// @p positions has 3 floats per position, @p corners one position number per corner, face
    /// after face, @p sizes the number of corners of each face. Refers to the first two.
    NormalGenerator(const std::vector<float>& positions, const std::vector<unsigned int>& corners,
                    const std::vector<unsigned int>& sizes);

    /// Stores the normals in @p stream and returns the tuple of each corner.
    std::vector<unsigned int> storeIn(scene::Stream& stream) const;

private:
    void sortCornersByPosition();
    Eigen::Vector3f faceCross(std::size_t first, std::size_t size) const;
    void storeSharpest(std::size_t first, std::size_t last, scene::Stream& stream,
                       std::vector<unsigned int>& tuples) const;
    void storeSmooth(std::size_t first, std::size_t last, scene::Stream& stream,
                     std::vector<unsigned int>& tuples) const;
    Eigen::Vector3f normalOf(unsigned int corner, std::size_t first, std::size_t last) const;

    const std::vector<float>& positions_;
    const std::vector<unsigned int>& corners_;
    std::vector<unsigned int> faces_;          ///< The face of each corner.
    std::vector<Eigen::Vector3f> crosses_;     ///< Per face, of twice its area's length.
    std::vector<Eigen::Vector3f> directions_;  ///< Per face, of length 1 or 0.
    std::vector<std::size_t> firsts_;          ///< Per position, in sorted_; and the end.
    std::vector<unsigned int> sorted_;         ///< Corners, those of one position in a row.
};

}  // namespace vantorix::apps::import
