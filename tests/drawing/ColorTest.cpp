#include "drawing/Color.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace Corvanta::Drawing {

void PrintTo(const Color& color, std::ostream* stream) {
    *stream << color.ToHexString();
}

namespace {

const Color kBlack(0, 0, 0, 255);

TEST(Color, IsOpaqueBlackUnlessToldOtherwise) {
    EXPECT_EQ(Color(), kBlack);
}

TEST(Color, TakesItsBytesFromANumberRedFirst) {
    EXPECT_EQ(Color(0x11223344U), Color(0x11, 0x22, 0x33, 0x44));
    EXPECT_EQ(Color(0xFF000080U), Color(255, 0, 0, 128));
}

TEST(Color, GoesOutWithAlphaAsAFractionOfSixDecimals) {
    EXPECT_EQ(Color(255, 0, 0, 255).ToRgbaString(), "rgba(255, 0, 0, 1.000000)");
    EXPECT_EQ(Color(1, 20, 103, 128).ToRgbaString(), "rgba(1, 20, 103, 0.501961)");
    EXPECT_EQ(Color(0, 0, 0, 0).ToRgbaString(), "rgba(0, 0, 0, 0.000000)");
}

TEST(Color, WritesEveryAlphaAsPrintfDoes) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        char expected[32];
        std::snprintf(expected, sizeof(expected), "rgba(1, 2, 3, %f)", alpha / 255.0);
        EXPECT_EQ(Color(1, 2, 3, static_cast<uint8_t>(alpha)).ToRgbaString(), expected);
    }
}

TEST(Color, KeepsEveryAlphaThroughTheText) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        const Color color(12, 200, 255, static_cast<uint8_t>(alpha));
        EXPECT_EQ(Color::Parse(color.ToRgbaString()), color);
        EXPECT_EQ(Color::Parse(color.ToHexString()), color);
    }
}

TEST(Color, GoesOutAsEightUpperCaseDigits) {
    EXPECT_EQ(Color(0xAB, 0x0C, 0xDE, 0xF1).ToHexString(), "#AB0CDEF1");
}

TEST(Color, HandsItsBytesOverInMemoryOrder) {
    const uint32_t value = Color(1, 2, 3, 4).InMemoryOrder();
    unsigned char bytes[4];
    std::memcpy(bytes, &value, sizeof(bytes));
    EXPECT_EQ(std::vector<int>(bytes, bytes + 4), (std::vector<int>{1, 2, 3, 4}));
}

TEST(Color, IsOpaqueBlackForWhatItCannotRead) {
    for (const char* const text : {"",
                                   "red",
                                   "rgb(1, 2, 3)",
                                   "rgba",
                                   "rgba(",
                                   "rgba()",
                                   "rgba(1, 2, 3)",
                                   "rgba(1, 2, 3, )",
                                   "rgba(1 , 2, 3, 0.5)",
                                   "rgba(1, 2, 3, x)",
                                   "rgba(1.5, 2, 3, 0.5)",
                                   "rgba (1, 2, 3, 0.5)",
                                   "RGBA(1, 2, 3, 0.5)",
                                   " rgba(1, 2, 3, 0.5)",
                                   "a rgba(1, 2, 3, 0.5)",
                                   "rgba(x, 2, 3, 0.5)",
                                   "rgba(--1, 2, 3, 0.5)",
                                   "rgba(1, 2, 3, --0.5)",
                                   "#",
                                   "#xyz",
                                   "# ",
                                   "##123",
                                   " #11223344"}) {
        EXPECT_EQ(Color::Parse(text), kBlack) << text;
    }
}

TEST(Color, IsOpaqueBlackForAnAlphaThatIsNoFiniteNumber) {
    for (const char* const alpha : {"nan", "inf", "-inf", "infinity", "1e999", "-1e999", "3e38", "1e39"}) {
        EXPECT_EQ(Color::Parse(std::string("rgba(1, 2, 3, ") + alpha + ")"), kBlack) << alpha;
    }
}

TEST(Color, TakesBlanksOrNone) {
    EXPECT_EQ(Color::Parse("rgba(1,2,3,0.5)"), Color(1, 2, 3, 128));
    EXPECT_EQ(Color::Parse("rgba( 1,\t2,\n 3,  0.5)"), Color(1, 2, 3, 128));
}

TEST(Color, NeedsNothingBehindTheAlpha) {
    EXPECT_EQ(Color::Parse("rgba(1, 2, 3, 0.5"), Color(1, 2, 3, 128));
    EXPECT_EQ(Color::Parse("rgba(1, 2, 3, 1) and more"), Color(1, 2, 3, 255));
    EXPECT_EQ(Color::Parse(std::string("rgba(1, 2, 3, 1\0)", 16)), Color(1, 2, 3, 255));
}

TEST(Color, CutsItsNumbersToEightBits) {
    EXPECT_EQ(Color::Parse("rgba(300, 256, 511, 0.5)"), Color(44, 0, 255, 128));
    EXPECT_EQ(Color::Parse("rgba(-1, +2, 4294967299, 1)"), Color(255, 2, 3, 255));
    EXPECT_EQ(Color::Parse("rgba(1, 2, 340282366920938463463374607431768211459, 1)"), Color(1, 2, 3, 255));
}

TEST(Color, RoundsAlphaAndKeepsItsLowEightBits) {
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 0.0019)").a, 0);
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 0.002)").a, 1);
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 2)").a, 510 % 256);
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, -0.5)").a, 256 - 128);
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 1e30)").a, 0);
}

TEST(Color, TakesEveryFormOfAFraction) {
    for (const char* const alpha : {".5", "0.5", "+0.5", "5e-1", "5E-1", "0.05e+1", "0x.8", "0X1p-1"}) {
        EXPECT_EQ(Color::Parse(std::string("rgba(0, 0, 0, ") + alpha + ")").a, 128) << alpha;
    }
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 1.)").a, 255);
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 1e)").a, 255);
}

TEST(Color, TakesATooSmallFractionForNothing) {
    std::string manyZeros = "0.";
    manyZeros.append(400, '0');
    manyZeros += '1';
    for (const std::string& alpha : {std::string("1e-999"), std::string("-1e-999"), manyZeros}) {
        EXPECT_EQ(Color::Parse("rgba(7, 0, 0, " + alpha + ")"), Color(7, 0, 0, 0)) << alpha;
    }
}

TEST(Color, ReadsEightHexadecimalDigitsOfEitherCase) {
    EXPECT_EQ(Color::Parse("#11aAbB80"), Color(0x11, 0xAA, 0xBB, 0x80));
}

TEST(Color, TakesAPrefixBeforeHexadecimalDigits) {
    EXPECT_EQ(Color::Parse("#0x11223344"), Color(0x11, 0x22, 0x33, 0x44));
    EXPECT_EQ(Color::Parse("#0X1"), Color(0, 0, 0, 1));
    EXPECT_EQ(Color::Parse("#0x"), Color(0, 0, 0, 0));
    EXPECT_EQ(Color::Parse("rgba(0, 0, 0, 0x-1)"), kBlack);
}

TEST(Color, ReadsSixDigitsAsTheLowThreeBytes) {
    EXPECT_EQ(Color::Parse("#112233"), Color(0, 0x11, 0x22, 0x33));
    EXPECT_EQ(Color::Parse("#000"), Color(0, 0, 0, 0));
}

TEST(Color, KeepsTheLow32BitsOfALongerNumber) {
    EXPECT_EQ(Color::Parse("#FFFF11223344"), Color(0x11, 0x22, 0x33, 0x44));
    EXPECT_EQ(Color::Parse("#-1"), Color(255, 255, 255, 255));
}

TEST(Color, IsNotReadAsANumberWhenItSpeaksOfRgba) {
    EXPECT_EQ(Color::Parse("#11223344 rgba"), kBlack);
    EXPECT_EQ(Color::Parse("#11223344 rgb"), Color(0x11, 0x22, 0x33, 0x44));
}

// The scanning functions of C, in the locale "C", which tests are in.
[[nodiscard]] Color ScannedColor(const std::string& text) {
    if (text.find("rgba") != std::string::npos) {
        unsigned red = 0;
        unsigned green = 0;
        unsigned blue = 0;
        float alpha = 0;
        const int fields = std::sscanf(text.c_str(), "rgba(%u, %u, %u, %f)", &red, &green, &blue, &alpha);
        const float rounded = std::round(alpha * 255);
        if (fields != 4 || !std::isfinite(rounded)) return kBlack;
        return {static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue),
                static_cast<uint8_t>(static_cast<int>(std::fmod(rounded, 256.0F)))};
    }
    unsigned rgba = 0;
    if (text[0] != '#' || std::sscanf(text.c_str(), "#%x", &rgba) != 1) return kBlack;
    return Color(rgba);
}

TEST(Color, ReadsTextsOfAllKindsAsTheScanningFunctionsOfCDo) {
    const char* const pieces[] = {"rgba(", "rgba", "#",  "z",  "1",  "23", "456", "0.5", ".25",
                                  "e",     "E-2",  ", ", ",",  ",",  ")",  " ",   "\t",  "-",
                                  "+",     "af",   "F",  "p1", "in", "n",  "0",   "1.",  "."};
    std::mt19937 random(20);
    const auto below = [&random](size_t limit) { return random() % limit; };
    size_t colours = 0;
    for (int turn = 0; turn < 200'000; ++turn) {
        std::string text = below(2) == 0 ? "rgba(1, 2, 3, " : "#";
        if (below(8) == 0) text = "rgba(";
        for (size_t count = below(8); count > 0; --count) text += pieces[below(std::size(pieces))];
        const Color expected = ScannedColor(text);
        if (!(expected == kBlack)) ++colours;
        ASSERT_EQ(Color::Parse(text), expected) << text;
    }
    EXPECT_GT(colours, 20'000U);
}

}  // namespace
}  // namespace Corvanta::Drawing
