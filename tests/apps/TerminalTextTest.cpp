#include <gtest/gtest.h>

#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/TreeLines.h"

namespace vantorix::apps::cli {
namespace {

TEST(PrintableText, KeepsWhatReadersCanRead) {
    for (const std::string text : {"", "box 1", "Würfel", "箱", "🙂", "a\\b"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(PrintableText, EscapesWhatWouldChangeTheTerminal) {
    EXPECT_EQ(printable("a\nb\tc\r"), "a\\nb\\tc\\r");
    EXPECT_EQ(printable("\x1b[31mred"), "\\x1b[31mred");
    EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(printable("\xc2\x9b"
                        "31m"),
              "\\x9b31m");
    EXPECT_EQ(printable("a\xe2\x80\xae"
                        "b"),
              "a\\u202eb");
}

TEST(PrintableText, EscapesBytesThatAreNoUtf8) {
    EXPECT_EQ(printable("\xff"), "\\xff");
    EXPECT_EQ(printable("\xc3"), "\\xc3");
    EXPECT_EQ(printable("\xc0\xaf"), "\\xc0\\xaf");           // Longer than needed.
    EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");  // A surrogate.
    EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
    EXPECT_EQ(printable("\xe2\x82x"), "\\xe2\\x82x");
}

TEST(TreeLines, ConnectEachNodeWithItsParent) {
    const std::vector<std::string> expected = {"",          "|- ", "|  |- ", "|  `- ",
                                               "|     `- ", "`- ", "   `- "};
    EXPECT_EQ(treePrefixes({0, 1, 2, 2, 3, 1, 2}, false), expected);
    EXPECT_EQ(treePrefixes({0, 1, 2}, true)[2], "   └─ ");
}

TEST(TreeLines, VeryDeepTreesStayNarrow) {
    std::vector<std::size_t> depths(100000);
    for (std::size_t i = 0; i < depths.size(); ++i) depths[i] = i;
    const auto prefixes = treePrefixes(depths, false);
    EXPECT_EQ(prefixes.back(), "... 99999: ");
    EXPECT_LT(prefixes[40].size(), 130u);
}

}  // namespace
}  // namespace vantorix::apps::cli
