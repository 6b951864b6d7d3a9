#include "drawing/FontText.h"

#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <utility>

#include "tests/drawing/WireTest.h"

namespace Corvanta::Drawing {

void PrintTo(const FontText& font, std::ostream* stream) {
    *stream << "style " << font.style << " size " << font.size << " family '" << font.family << "'";
}

namespace {

using Testing::ThrownBy;

TEST(FontText, ReadsStyleSizeAndFamily) {
    EXPECT_EQ(ParseFontText("24px Arial"), (FontText{0, 24, "Arial"}));
    EXPECT_EQ(ParseFontText("bold 24px Arial"), (FontText{TTF_STYLE_BOLD, 24, "Arial"}));
    EXPECT_EQ(ParseFontText("italic 24px Arial"), (FontText{TTF_STYLE_ITALIC, 24, "Arial"}));
    EXPECT_EQ(ParseFontText("italic bold 24px Arial"),
              (FontText{TTF_STYLE_BOLD | TTF_STYLE_ITALIC, 24, "Arial"}));
    EXPECT_EQ(ParseFontText("underline 24px Arial"), (FontText{TTF_STYLE_UNDERLINE, 24, "Arial"}));
}

TEST(FontText, DropsOtherWordsBeforeTheSize) {
    EXPECT_EQ(ParseFontText("normal Bold 600 italics 24px Arial"), (FontText{0, 24, "Arial"}));
}

TEST(FontText, TakesStyleWordsBehindTheSizeForTheFamily) {
    EXPECT_EQ(ParseFontText("24px bold Arial"), (FontText{0, 24, "bold Arial"}));
}

TEST(FontText, KeepsTheBlanksOfAFamily) {
    EXPECT_EQ(ParseFontText("24px Comic Sans MS").family, "Comic Sans MS");
    EXPECT_EQ(ParseFontText("24px Comic  Sans").family, "Comic  Sans");
    EXPECT_EQ(ParseFontText("24px  Arial").family, " Arial");
    EXPECT_EQ(ParseFontText("24px Arial ").family, "Arial ");
    EXPECT_EQ(ParseFontText("24px ").family, "");
    EXPECT_EQ(ParseFontText(" bold  24px Arial"), (FontText{TTF_STYLE_BOLD, 24, "Arial"}));
}

TEST(FontText, RemovesOtherWhiteSpaceFromWithinAWord) {
    EXPECT_EQ(ParseFontText("bo\tld 2\n4p\rx Ari\val\f"), (FontText{TTF_STYLE_BOLD, 24, "Arial"}));
}

TEST(FontText, KeepsQuotationMarks) {
    EXPECT_EQ(ParseFontText("24px \"Open Sans\"").family, "\"Open Sans\"");
}

TEST(FontText, ReadsOfASizeWhatItStartsWith) {
    EXPECT_EQ(ParseFontText("24.5px Arial").size, 24);
    EXPECT_EQ(ParseFontText("24abcpx Arial").size, 24);
    EXPECT_EQ(ParseFontText("+24px Arial").size, 24);
    EXPECT_EQ(ParseFontText("024pxpx7px Arial").size, 24);
    EXPECT_EQ(ParseFontText("2147483647px Arial").size, 2147483647);
}

TEST(FontText, GoesOnLookingForASizeAboveNothing) {
    EXPECT_EQ(ParseFontText("0px bold -5px italic 24px Arial"),
              (FontText{TTF_STYLE_BOLD | TTF_STYLE_ITALIC, 24, "Arial"}));
}

TEST(FontText, TakesANewSizeFromWithinTheFamily) {
    EXPECT_EQ(ParseFontText("24px Arial 30px"), (FontText{0, 30, "Arial 30px"}));
    EXPECT_EQ(ParseFontText("24px A 0px bold C"), (FontText{TTF_STYLE_BOLD, 0, "A 0px"}));
}

TEST(FontText, ThrowsWhereNoNumberStandsBeforeTheUnit) {
    for (const char* const text : {"px Arial", "largepx Arial", "24px Arpx", "-px Arial", "+-5px Arial",
                                   " px", "--5px Arial", ".5px Arial", "++5px Arial"}) {
        EXPECT_EQ(ThrownBy([text] { return ParseFontText(text); }),
                  "std::invalid_argument: invalid stoi argument")
            << text;
    }
}

TEST(FontText, ThrowsAtASizeBeyond32Bits) {
    for (const char* const text :
         {"2147483648px Arial", "-2147483649px Arial", "24px 99999999999999999999px"}) {
        EXPECT_EQ(ThrownBy([text] { return ParseFontText(text); }),
                  "std::out_of_range: stoi argument out of range")
            << text;
    }
}

TEST(FontText, ThrowsWithoutASizeOrAFamily) {
    for (const char* const text :
         {"", " ", "24px", "bold 24px", "bold Arial", "Arial", "0px Arial", "24 Arial"}) {
        EXPECT_EQ(ThrownBy([text] { return ParseFontText(text); }), "std::length_error: string too long")
            << text;
    }
}

TEST(FontText, WritesItalicBeforeBoldBeforeTheSize) {
    EXPECT_EQ(WriteFontText({TTF_STYLE_BOLD | TTF_STYLE_ITALIC, 24, "Arial"}), "italic bold 24px Arial");
    EXPECT_EQ(WriteFontText({TTF_STYLE_BOLD, 24, "Comic Sans MS"}), "bold 24px Comic Sans MS");
    EXPECT_EQ(WriteFontText({TTF_STYLE_ITALIC, 24, "Arial"}), "italic 24px Arial");
}

TEST(FontText, LosesTheUnderline) {
    EXPECT_EQ(WriteFontText(ParseFontText("italic underline bold 24px Arial")), "italic bold 24px Arial");
}

TEST(FontText, WritesArialForNoFamily) {
    EXPECT_EQ(WriteFontText({0, 24, ""}), "24px Arial");
}

TEST(FontText, RoundsTheSizeHalfAwayFromZero) {
    const std::pair<double, const char*> sizes[] = {
        {24.4, "24px A"}, {24.5, "25px A"}, {25.5, "26px A"}, {-0.5, "-1px A"}, {-0.4, "0px A"}};
    for (const auto& [size, expected] : sizes) EXPECT_EQ(WriteFontText({0, size, "A"}), expected);
}

TEST(FontText, WritesASizeThatReadersCanTake) {
    EXPECT_EQ(WriteFontText({0, 1e308, "A"}), "2147483647px A");
    EXPECT_EQ(WriteFontText({0, -1e308, "A"}), "-2147483648px A");
    EXPECT_EQ(WriteFontText({0, std::numeric_limits<double>::infinity(), "A"}), "2147483647px A");
    EXPECT_EQ(WriteFontText({0, std::numeric_limits<double>::quiet_NaN(), "A"}), "0px A");
}

}  // namespace
}  // namespace Corvanta::Drawing
