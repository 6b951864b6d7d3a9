#include "ui/TextEllipsis.h"

#include <gtest/gtest.h>

namespace Corvanta::UI {
namespace {

TEST(TextEllipsis, LeavesATextThatFitsWhole) {
    EXPECT_EQ(ShortenText("abcdefghij", 100, 100), std::nullopt);
    EXPECT_EQ(ShortenText("abcdefghij", 100, 101), std::nullopt);
}

TEST(TextEllipsis, KeepsWhatFitsBesideThreeDotsByTheAverageWidth) {
    EXPECT_EQ(ShortenText("abcdefghij", 100, 99), "abcdef...");
    EXPECT_EQ(ShortenText("abcdefghij", 100, 60), "abc...");
    EXPECT_EQ(ShortenText("abcdefghij", 100, 59), "ab...");
}

TEST(TextEllipsis, TruncatesTheAverageWidth) {
    // 10 pixels a byte, not 10.9.
    EXPECT_EQ(ShortenText("abcdefghij", 109, 60), "abc...");
}

TEST(TextEllipsis, KeepsOneByteWhereTheDotsAloneFit) {
    EXPECT_EQ(ShortenText("abcdefghij", 100, 40), "a...");
    EXPECT_EQ(ShortenText("abcdefghij", 100, 39), "a...");
    EXPECT_EQ(ShortenText("abcdefghij", 100, 30), "a...");
}

TEST(TextEllipsis, LeavesATextWholeWhereNotEvenTheDotsFit) {
    EXPECT_EQ(ShortenText("abcdefghij", 100, 29), std::nullopt);
    EXPECT_EQ(ShortenText("abcdefghij", 100, 1), std::nullopt);
}

TEST(TextEllipsis, LeavesATextOfMoreBytesThanPixelsWhole) {
    EXPECT_EQ(ShortenText("abcdefghij", 9, 5), std::nullopt);
    EXPECT_EQ(ShortenText(std::string(100000, 'x'), 99999, 50000), std::nullopt);
}

TEST(TextEllipsis, NeverKeepsMoreThanThereIs) {
    // The average is truncated to 1, so that 18 bytes seem to fit.
    EXPECT_EQ(ShortenText("abcdefghij", 19, 18), "abcdefghij...");
}

TEST(TextEllipsis, CutsByBytes) {
    const std::string text = "\u00E9\u00E9\u00E9\u00E9";
    EXPECT_EQ(ShortenText(text, 40, 35), "\u00E9\u00E9...");
    EXPECT_EQ(ShortenText(text, 40, 30), "\u00E9\xC3...");
}

TEST(TextEllipsis, HasNothingToCutFromAnEmptyText) {
    EXPECT_EQ(ShortenText("", 10, 5), std::nullopt);
}

}  // namespace
}  // namespace Corvanta::UI
