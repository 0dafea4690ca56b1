#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <boost/optional.hpp>

namespace vantorix::apps::render {

struct Picture;

using Colour = std::array<std::uint8_t, 3>;

/// What stands behind a scene: a gradient from top to bottom, one colour when both are equal, or
/// nothing at all.
struct Background {
    Colour top{{0xf6, 0xf7, 0xf9}};
    Colour bottom{{0xc6, 0xcb, 0xd3}};
    bool transparent = false;
};

/// Reads "transparent", a colour, or two colours with a comma between them. A colour is "#rrggbb",
/// "#rgb", "white", "black", "gray", "red", "green" or "blue". Empty when @p text is none of these.
boost::optional<Background> parseBackground(const std::string& text);

/// Puts @p background behind a picture whose colours are multiplied by their alpha. A transparent
/// background leaves a picture whose colours are not multiplied any more, as PNG files want it.
void putBehind(const Background& background, Picture& picture);

}  // namespace vantorix::apps::render
