#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/function.hpp>

namespace vantorix::apps::render {

/// What stands behind an image of a scene.
struct ImageFile {
    std::string name;                 ///< For messages; its ending may tell the format.
    std::vector<std::uint8_t> bytes;  ///< Of a picture file, or of plain pixels.
    int width = 0;                    ///< Above 0: plain RGBA pixels, rows from the top.
    int height = 0;
};

/// Finds the image with an ID. Throws std::runtime_error with the reason when it cannot.
using ImageSource = boost::function<ImageFile(const std::string& imageId)>;

}  // namespace vantorix::apps::render
