#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/render/Picture.h"

namespace vantorix::apps::render {

/// Decodes the bytes of a picture file: PNG through libpng; JPEG, BMP, GIF and TGA through
/// SDL2_image.
/// @param name tells by its ending what the bytes alone do not: that they are TGA.
/// @throws RenderError with the reason, without the name, when the bytes are none of these, are
/// damaged, or claim more than mostTexturePixels.
Picture decodeTexture(const std::vector<std::uint8_t>& bytes, const std::string& name);

/// Pixels of one picture file at most: 16384 x 4096, for example.
constexpr std::uint64_t mostTexturePixels = std::uint64_t{1} << 26;

}  // namespace vantorix::apps::render
