#include "apps/render/Picture.h"

#include <algorithm>

namespace vantorix::apps::render {
namespace {

std::size_t offsetOf(const Picture& picture, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
            static_cast<std::size_t>(x)) *
           4;
}

}  // namespace

Picture::Picture(int pictureWidth, int pictureHeight)
    : width(std::max(pictureWidth, 0)),
      height(std::max(pictureHeight, 0)),
      rgba(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {}

std::uint8_t* Picture::pixel(int x, int y) { return rgba.data() + offsetOf(*this, x, y); }

const std::uint8_t* Picture::pixel(int x, int y) const {
    return rgba.data() + offsetOf(*this, x, y);
}

void paste(const Picture& part, int left, int bottom, Picture& whole) {
    const int firstX = std::max(0, -left);
    const int endX = std::min(part.width, whole.width - left);
    const int endY = std::min(part.height, whole.height - bottom);
    if (firstX >= endX) return;
    for (int y = std::max(0, -bottom); y < endY; ++y) {
        std::copy_n(part.pixel(firstX, y), static_cast<std::size_t>(endX - firstX) * 4,
                    whole.pixel(left + firstX, bottom + y));
    }
}

std::size_t countCovered(const Picture& picture) {
    std::size_t covered = 0;
    for (std::size_t i = 3; i < picture.rgba.size(); i += 4) covered += picture.rgba[i] != 0;
    return covered;
}

Picture halved(const Picture& picture) {
    Picture half(std::max(picture.width / 2, 1), std::max(picture.height / 2, 1));
    if (picture.rgba.empty()) return half;
    const int stepX = picture.width > 1 ? 1 : 0;
    const int stepY = picture.height > 1 ? 1 : 0;
    for (int y = 0; y < half.height; ++y) {
        auto* target = half.pixel(0, y);
        for (int x = 0; x < half.width; ++x, target += 4) {
            const auto* a = picture.pixel(2 * x * stepX, 2 * y * stepY);
            const auto* b = picture.pixel(2 * x * stepX, 2 * y * stepY + stepY);
            for (int c = 0; c < 4; ++c) {
                const int right = c + 4 * stepX;
                target[c] = static_cast<std::uint8_t>((a[c] + a[right] + b[c] + b[right] + 2) / 4);
            }
        }
    }
    return half;
}

Picture shrunk(Picture picture, int largestSide) {
    while (std::max(picture.width, picture.height) > std::max(largestSide, 1)) {
        picture = halved(picture);
    }
    return picture;
}

}  // namespace vantorix::apps::render
