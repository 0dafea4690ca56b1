#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorix::apps::render {

/// Pixels in memory: four bytes each (red, green, blue, alpha), rows from the bottom up.
struct Picture {
    Picture() = default;

    /// Every byte 0: transparent black. Negative sides count as 0.
    Picture(int pictureWidth, int pictureHeight);

    /// First byte of a pixel; both coordinates must lie inside the picture.
    std::uint8_t* pixel(int x, int y);
    const std::uint8_t* pixel(int x, int y) const;

    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;  ///< width * height * 4 bytes.
};

/// Copies @p part into @p whole with its lower left corner at (@p left, @p bottom); what would
/// lie outside is left out.
void paste(const Picture& part, int left, int bottom, Picture& whole);

/// Pixels whose alpha is not 0.
std::size_t countCovered(const Picture& picture);

/// The same picture with each side halved until none is above @p largestSide, by averaging
/// squares of four pixels.
Picture shrunk(Picture picture, int largestSide);

/// Half the size (at least 1), each pixel the average of the pixels that it stands for.
Picture halved(const Picture& picture);

}  // namespace vantorix::apps::render
