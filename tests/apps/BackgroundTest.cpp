#include <gtest/gtest.h>

#include "apps/render/Background.h"
#include "apps/render/Picture.h"

namespace vantorix::apps::render {
namespace {

TEST(Background, ReadsColorsGradientsAndTransparency) {
    const auto white = parseBackground("#fff");
    ASSERT_TRUE(white);
    EXPECT_EQ(white->top, (Colour{{255, 255, 255}}));
    EXPECT_EQ(white->bottom, white->top);
    const auto gradient = parseBackground("black,#0a0B0c");
    ASSERT_TRUE(gradient);
    EXPECT_EQ(gradient->top, (Colour{{0, 0, 0}}));
    EXPECT_EQ(gradient->bottom, (Colour{{10, 11, 12}}));
    EXPECT_TRUE(parseBackground("transparent")->transparent);
}

TEST(Background, RefusesEverythingElse) {
    for (const char* text : {"", "#", "#12", "#12345", "#1234567", "#ggg", "#-12", "white,",
                             ",white", "white,black,red", "pinkish", "transparent,white"}) {
        EXPECT_FALSE(parseBackground(text)) << text;
    }
}

TEST(Background, RunsFromTopToBottomBehindWhatIsNotCovered) {
    Picture picture(1, 3);
    picture.pixel(0, 1)[0] = 100;  // Half covered, multiplied by its alpha.
    picture.pixel(0, 1)[3] = 128;
    Background background;
    background.top = {{0, 0, 200}};
    background.bottom = {{100, 0, 0}};
    putBehind(background, picture);
    EXPECT_EQ(picture.pixel(0, 2)[2], 200);
    EXPECT_EQ(picture.pixel(0, 0)[0], 100);
    EXPECT_NEAR(picture.pixel(0, 1)[0], 100 + 50 * 127 / 255, 1);
    EXPECT_EQ(picture.pixel(0, 1)[3], 255);
}

TEST(Background, TransparentPicturesGetTheirOwnColorsBack) {
    Picture picture(2, 1);
    const std::uint8_t halfRed[] = {100, 0, 20, 128};
    std::copy(std::begin(halfRed), std::end(halfRed), picture.pixel(0, 0));
    putBehind(*parseBackground("transparent"), picture);
    EXPECT_NEAR(picture.pixel(0, 0)[0], 199, 1);
    EXPECT_NEAR(picture.pixel(0, 0)[2], 40, 1);
    EXPECT_EQ(picture.pixel(0, 0)[3], 128);
    EXPECT_EQ(picture.pixel(1, 0)[3], 0);
}

}  // namespace
}  // namespace vantorix::apps::render
