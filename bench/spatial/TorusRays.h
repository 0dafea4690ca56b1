#pragma once

#include <array>
#include <vector>

namespace vantorix::bench {

struct StraightLine {
    std::array<float, 3> origin;
    std::array<float, 3> direction;  ///< Not normalised: it ends in the box of the torus.
};

/// Rays from a sphere around the torus to points in its box.
std::vector<StraightLine> makeRays();

}  // namespace vantorix::bench
