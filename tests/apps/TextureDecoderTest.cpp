#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "apps/render/PictureFile.h"
#include "apps/render/RenderError.h"
#include "apps/render/TextureDecoder.h"

namespace vantorix::apps::render {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes pngBytes() {
    const std::string path = ::testing::TempDir() + "vantorix_texture.png";
    Picture picture(2, 2);
    picture.rgba = {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 128, 10, 11, 12, 0};
    writePng(picture, path);
    std::ifstream file(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    std::filesystem::remove(path);
    return bytes;
}

/// Uncompressed, 24 bits, rows from the bottom up: blue below, red above.
Bytes tgaBytes(std::uint16_t width, std::uint16_t height) {
    Bytes bytes(18 + 6);
    bytes[2] = 2;
    bytes[12] = static_cast<std::uint8_t>(width);
    bytes[13] = static_cast<std::uint8_t>(width >> 8);
    bytes[14] = static_cast<std::uint8_t>(height);
    bytes[15] = static_cast<std::uint8_t>(height >> 8);
    bytes[16] = 24;
    bytes[18] = 255;
    bytes[23] = 255;
    return bytes;
}

Bytes bmpBytes(std::int32_t width, std::int32_t height) {
    Bytes bytes(54 + 8);
    const auto put = [&bytes](std::size_t at, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i) {
            bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
        }
    };
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(2, 62);
    put(10, 54);
    put(14, 40);
    put(18, static_cast<std::uint32_t>(width));
    put(22, static_cast<std::uint32_t>(height));
    bytes[26] = 1;
    bytes[28] = 24;
    bytes[54] = 255;
    bytes[60] = 255;
    return bytes;
}

/// The frame header of a JPEG behind one other segment, and nothing to fill the frame.
Bytes jpegClaim(std::uint8_t high) {
    return {0xff, 0xd8, 0xff, 0xe0, 0x00, 0x04, 1, 2,    0xff, 0xc0, 0x00, 0x0b,
            8,    high, 0x10, high, 0x10, 1,    1, 0x11, 0,    0xff, 0xd9};
}

void expectBlueBelowRed(const Picture& picture) {
    ASSERT_EQ(picture.height, 2);
    EXPECT_EQ(Bytes(picture.pixel(0, 0), picture.pixel(0, 0) + 4), Bytes({0, 0, 255, 255}));
    EXPECT_EQ(Bytes(picture.pixel(0, 1), picture.pixel(0, 1) + 4), Bytes({255, 0, 0, 255}));
}

TEST(TextureDecoder, PutsTheLowestRowFirst) {
    const Picture png = decodeTexture(pngBytes(), "a.png");
    EXPECT_EQ(png.pixel(0, 0)[0], 1);
    EXPECT_EQ(png.pixel(0, 1)[3], 128);
    expectBlueBelowRed(decodeTexture(tgaBytes(1, 2), "A.TGA"));
    expectBlueBelowRed(decodeTexture(bmpBytes(1, 2), "whatever"));
}

TEST(TextureDecoder, RefusesPicturesThatClaimTooMuch) {
    EXPECT_THROW(decodeTexture(tgaBytes(65535, 65535), "a.tga"), RenderError);
    EXPECT_THROW(decodeTexture(bmpBytes(100000, -100000), "a.bmp"), RenderError);
    EXPECT_THROW(decodeTexture(jpegClaim(0xff), "a.jpg"), RenderError);
    try {
        decodeTexture(jpegClaim(0xf0), "a.jpg");
        FAIL();
    } catch (const RenderError& error) {
        EXPECT_STREQ(error.what(), "the picture has 61456x61456 pixels");
    }
}

TEST(TextureDecoder, RefusesWhatIsNoPicture) {
    EXPECT_THROW(decodeTexture({}, "a.png"), RenderError);
    EXPECT_THROW(decodeTexture({'h', 'e', 'l', 'l', 'o'}, "a.png"), RenderError);
    EXPECT_THROW(decodeTexture({0}, "a.tga"), RenderError);
}

TEST(TextureDecoder, SurvivesDamagedFiles) {
    std::mt19937 random(3);
    const std::vector<Bytes> sound = {pngBytes(), tgaBytes(1, 2), bmpBytes(1, 2), jpegClaim(0)};
    for (int round = 0; round < 2000; ++round) {
        Bytes bytes = sound[static_cast<std::size_t>(round) % sound.size()];
        for (int i = 0; i < 3; ++i) {
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        }
        bytes.resize(random() % 4 ? bytes.size() : random() % bytes.size());
        try {
            const Picture picture = decodeTexture(bytes, "a.tga");
            EXPECT_EQ(picture.rgba.size(), static_cast<std::size_t>(picture.width) *
                                               static_cast<std::size_t>(picture.height) * 4);
        } catch (const RenderError&) {
            // Refusing is the other right answer.
        }
    }
}

}  // namespace
}  // namespace vantorix::apps::render
