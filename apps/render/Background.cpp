#include "apps/render/Background.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "apps/render/Picture.h"

namespace vantorix::apps::render {
namespace {

const std::map<std::string, Colour>& namedColours() {
    static const std::map<std::string, Colour> colours = {
        {"white", {{255, 255, 255}}}, {"black", {{0, 0, 0}}},   {"gray", {{128, 128, 128}}},
        {"red", {{255, 0, 0}}},       {"green", {{0, 128, 0}}}, {"blue", {{0, 0, 255}}},
    };
    return colours;
}

bool isHex(const std::string& digits) {
    return std::all_of(digits.begin(), digits.end(),
                       [](unsigned char c) { return std::isxdigit(c); });
}

boost::optional<Colour> parseColour(const std::string& text) {
    const auto named = namedColours().find(text);
    if (named != namedColours().end()) return named->second;
    if (text.empty() || text[0] != '#' || !isHex(text.substr(1))) return boost::none;
    std::string digits = text.substr(1);
    if (digits.size() == 3) {
        digits = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
    }
    if (digits.size() != 6) return boost::none;
    Colour colour{};
    for (std::size_t i = 0; i < 3; ++i) {
        colour[i] = static_cast<std::uint8_t>(std::stoul(digits.substr(2 * i, 2), nullptr, 16));
    }
    return colour;
}

/// The colour of a row between the two ends of the gradient.
Colour colourAt(const Background& background, int row, int height) {
    const int last = std::max(height - 1, 1);
    Colour colour{};
    for (std::size_t i = 0; i < 3; ++i) {
        const int sum = background.top[i] * row + background.bottom[i] * (last - row);
        colour[i] = static_cast<std::uint8_t>((sum + last / 2) / last);
    }
    return colour;
}

void blend(const Colour& behind, std::uint8_t* pixel) {
    const int through = 255 - pixel[3];
    for (std::size_t i = 0; i < 3; ++i) {
        pixel[i] =
            static_cast<std::uint8_t>(std::min(pixel[i] + (behind[i] * through + 127) / 255, 255));
    }
    pixel[3] = 255;
}

void unmultiply(std::uint8_t* pixel) {
    const int alpha = pixel[3];
    if (alpha == 0 || alpha == 255) return;
    for (std::size_t i = 0; i < 3; ++i) {
        pixel[i] = static_cast<std::uint8_t>(std::min((pixel[i] * 255 + alpha / 2) / alpha, 255));
    }
}

}  // namespace

boost::optional<Background> parseBackground(const std::string& text) {
    Background background;
    background.transparent = text == "transparent";
    if (background.transparent) return background;
    const auto comma = text.find(',');
    const auto top = parseColour(text.substr(0, comma));
    const auto bottom = comma == std::string::npos ? top : parseColour(text.substr(comma + 1));
    if (!top || !bottom) return boost::none;
    background.top = *top;
    background.bottom = *bottom;
    return background;
}

void putBehind(const Background& background, Picture& picture) {
    for (int y = 0; y < picture.height; ++y) {
        const Colour behind = colourAt(background, y, picture.height);
        std::uint8_t* pixel = picture.width > 0 ? picture.pixel(0, y) : nullptr;
        for (int x = 0; x < picture.width; ++x, pixel += 4) {
            if (background.transparent) {
                unmultiply(pixel);
            } else if (pixel[3] != 255) {
                blend(behind, pixel);
            }
        }
    }
}

}  // namespace vantorix::apps::render
