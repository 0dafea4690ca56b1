#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorix::apps::render {

/// Width and height that the header of a picture file claims, read before anything is allocated
/// for it. Zeros when the header is cut off.
struct ClaimedSize {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

ClaimedSize claimedSizeOfJpeg(const std::vector<std::uint8_t>& bytes);
ClaimedSize claimedSizeOfBmp(const std::vector<std::uint8_t>& bytes);
ClaimedSize claimedSizeOfGif(const std::vector<std::uint8_t>& bytes);
ClaimedSize claimedSizeOfTga(const std::vector<std::uint8_t>& bytes);

}  // namespace vantorix::apps::render
