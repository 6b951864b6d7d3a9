#include "video/NameCut.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvanta::Video {
namespace {

constexpr int kLetter = 7;

int EvenWidth(const std::string& text) {
    return static_cast<int>(text.size()) * kLetter;
}

TEST(NameCut, LeavesANameThatFitsToThePixel) {
    EXPECT_EQ(CutName("Grace", 35, EvenWidth), "Grace");
    EXPECT_EQ(CutName("", 0, EvenWidth), "");
    EXPECT_EQ(CutName("", -10, EvenWidth), "");
}

TEST(NameCut, KeepsAsManyLettersAsFitBesideTheDots) {
    EXPECT_EQ(CutName("Grace Hopper", 83, EvenWidth), "Grace Ho...");
    EXPECT_EQ(CutName("Grace Hopper", 77, EvenWidth), "Grace Ho...");
    EXPECT_EQ(CutName("Grace Hopper", 76, EvenWidth), "Grace H...");
    EXPECT_EQ(CutName("Grace Hopper", 28, EvenWidth), "G...");
}

TEST(NameCut, KeepsTheWholeNameWhereNotOneLetterHasRoomBesideTheDots) {
    for (const int available : {27, 7, 1, 0, -1, -1000}) {
        EXPECT_EQ(CutName("Grace Hopper", available, EvenWidth), "Grace Hopper") << available;
    }
}

TEST(NameCut, KeepsANameOfLettersWithoutWidth) {
    EXPECT_EQ(CutName("abcdef", 3, [](const std::string&) { return 5; }), "abcdef");
}

TEST(NameCut, CutsFourMoreAtEachOfThreeRetries) {
    // Dots that are wider than the name's letters.
    std::vector<std::string> measured;
    const auto wide = [&](const std::string& text) {
        measured.push_back(text);
        return text == "abcdefghijklmnopqrst" ? 200 : 1000;
    };
    EXPECT_EQ(CutName("abcdefghijklmnopqrst", 180, wide), "abcdefghijkl...");
    EXPECT_EQ(measured, (std::vector<std::string>{"abcdefghijklmnopqrst", "abcdefghijklmno...",
                                                  "abcdefghijklmn...", "abcdefghijklm..."}));
}

TEST(NameCut, StopsAsSoonAsACandidateFits) {
    int tries = 0;
    const auto second = [&](const std::string&) {
        constexpr int widths[] = {200, 190, 170, 1000};
        return widths[tries++];
    };
    EXPECT_EQ(CutName("abcdefghijklmnopqrst", 180, second), "abcdefghijklmn...");
    EXPECT_EQ(tries, 3);
}

TEST(NameCut, EndsWhenThereIsNothingLeftToCut) {
    const auto wide = [](const std::string& text) { return text == "abcdef" ? 12 : 1000; };
    // One byte and the dots: no letter is left to give up after the first retry.
    EXPECT_EQ(CutName("abcdef", 8, wide), "...");
}

TEST(NameCut, CutsByBytes) {
    std::string name;
    for (int i = 0; i < 10; ++i) name += "\xC3\xA9";
    EXPECT_EQ(CutName(name, 6 * kLetter, EvenWidth), "\xC3\xA9\xC3...");
}

}  // namespace
}  // namespace Corvanta::Video
