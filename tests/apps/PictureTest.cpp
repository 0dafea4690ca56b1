#include <filesystem>

#include <gtest/gtest.h>

#include "apps/render/Picture.h"
#include "apps/render/PictureFile.h"
#include "apps/render/RenderError.h"

namespace vantorix::apps::render {
namespace {

/// Every pixel different from its neighbours.
Picture makePattern(int width, int height) {
    Picture picture(width, height);
    for (std::size_t i = 0; i < picture.rgba.size(); ++i) {
        picture.rgba[i] = static_cast<std::uint8_t>(i * 37 + i / 11);
    }
    return picture;
}

TEST(Picture, PasteKeepsToTheWhole) {
    for (int left = -5; left <= 8; ++left) {
        for (int bottom = -5; bottom <= 8; ++bottom) {
            const Picture part = makePattern(4, 3);
            Picture whole(7, 6);
            paste(part, left, bottom, whole);
            for (int y = 0; y < whole.height; ++y) {
                for (int x = 0; x < whole.width; ++x) {
                    const int partX = x - left, partY = y - bottom;
                    const bool inside = partX >= 0 && partX < 4 && partY >= 0 && partY < 3;
                    const int expected = inside ? part.pixel(partX, partY)[2] : 0;
                    ASSERT_EQ(whole.pixel(x, y)[2], expected) << left << ", " << bottom;
                }
            }
        }
    }
}

TEST(Picture, HalvingAveragesSquaresDownToOnePixel) {
    Picture picture(4, 2);
    for (int x = 0; x < 4; ++x) {
        picture.pixel(x, 0)[0] = static_cast<std::uint8_t>(10 * x);
        picture.pixel(x, 1)[0] = static_cast<std::uint8_t>(10 * x + 100);
    }
    const Picture half = halved(picture);
    ASSERT_EQ(half.rgba.size(), 8u);
    EXPECT_EQ(half.pixel(0, 0)[0], 55);
    EXPECT_EQ(half.pixel(1, 0)[0], 75);
    const Picture last = halved(half);
    EXPECT_EQ(last.rgba.size(), 4u);
    EXPECT_EQ(last.pixel(0, 0)[0], 65);
}

TEST(Picture, ShrinkingStopsAtTheLargestSide) {
    const Picture picture = shrunk(makePattern(37, 5), 10);
    EXPECT_EQ(picture.width, 9);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(shrunk(makePattern(37, 5), 40).width, 37);
}

TEST(PictureFile, KeepsEveryPixelInItsRow) {
    const std::string path = ::testing::TempDir() + "vantorix_pattern.png";
    const Picture written = makePattern(13, 7);
    writePng(written, path);
    const Picture read = readPng(path);
    EXPECT_EQ(read.width, 13);
    EXPECT_EQ(read.rgba, written.rgba);
    std::filesystem::remove(path);
}

TEST(PictureFile, LeavesAFullDeviceInPlace) {
    EXPECT_THROW(writePng(makePattern(200, 200), "/dev/full"), RenderError);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
}

}  // namespace
}  // namespace vantorix::apps::render
