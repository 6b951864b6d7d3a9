#include "ui/VerticalClip.h"

#include <gtest/gtest.h>

#include <array>

namespace Corvanta::UI {
namespace {

constexpr int kSourceWidth = 200;
constexpr int kSourceHeight = 80;

// x, y, width, height.
using Box = std::array<int, 4>;

struct Clipped {
    bool cut = false;
    Box source{};
    Box destination{};
};

Box BoxOf(const SDL_Rect& rect) {
    return {rect.x, rect.y, rect.w, rect.h};
}

Clipped Clip(SDL_Rect destination, const ClipLines& lines, int sourceHeight = kSourceHeight) {
    const auto source = ComputeVerticalClip(destination, kSourceWidth, sourceHeight, lines);
    return {source.has_value(), BoxOf(source.value_or(SDL_Rect{})), BoxOf(destination)};
}

void ExpectCut(const Clipped& clipped, const Box& source, const Box& destination) {
    EXPECT_TRUE(clipped.cut);
    EXPECT_EQ(clipped.source, source);
    EXPECT_EQ(clipped.destination, destination);
}

void ExpectWhole(const Clipped& clipped, const Box& destination) {
    EXPECT_FALSE(clipped.cut);
    EXPECT_EQ(clipped.destination, destination);
}

TEST(VerticalClip, LeavesAnItemBetweenTheLinesWhole) {
    ExpectWhole(Clip({5, 20, 100, 40}, {10, 100}), {5, 20, 100, 40});
}

TEST(VerticalClip, LeavesAnItemWholeThatTouchesTheLines) {
    ExpectWhole(Clip({5, 10, 100, 40}, {10, 50}), {5, 10, 100, 40});
}

TEST(VerticalClip, CutsWhatStandsAboveTheTopLine) {
    // A quarter of the item.
    ExpectCut(Clip({5, 0, 100, 40}, {10, 100}), {0, 20, 200, 60}, {5, 10, 100, 30});
}

TEST(VerticalClip, CutsWhatHangsBelowTheBottomLine) {
    ExpectCut(Clip({5, 70, 100, 40}, {10, 100}), {0, 0, 200, 60}, {5, 70, 100, 30});
}

TEST(VerticalClip, HasNoBottomLineAtZero) {
    ExpectWhole(Clip({5, 700, 100, 40}, {10, 0}), {5, 700, 100, 40});
}

TEST(VerticalClip, CutsATallItemAtTheTopOnly) {
    ExpectCut(Clip({0, -20, 100, 160}, {20, 60}), {0, 20, 200, 60}, {0, 20, 100, 120});
}

TEST(VerticalClip, LeavesNothingOfAnItemWhollyAboveTheTopLine) {
    ExpectCut(Clip({0, -100, 100, 40}, {10, 100}), {0, 80, 200, 0}, {0, -60, 100, 0});
}

TEST(VerticalClip, LeavesNothingOfAnItemThatEndsAtTheTopLine) {
    ExpectCut(Clip({0, -30, 100, 40}, {10, 100}), {0, 80, 200, 0}, {0, 10, 100, 0});
}

TEST(VerticalClip, LeavesNothingOfAnItemWhollyBelowTheBottomLine) {
    ExpectCut(Clip({0, 100, 100, 40}, {10, 100}), {0, 0, 200, 0}, {0, 100, 100, 0});
    ExpectCut(Clip({0, 500, 100, 40}, {10, 100}), {0, 0, 200, 0}, {0, 500, 100, 0});
}

TEST(VerticalClip, LeavesNothingOfAnItemWithoutHeight) {
    ExpectCut(Clip({0, 0, 100, 0}, {10, 100}), {0, 80, 200, 0}, {0, 0, 100, 0});
    ExpectCut(Clip({0, 101, 100, 0}, {10, 100}), {0, 0, 200, 0}, {0, 101, 100, 0});
    ExpectWhole(Clip({0, 50, 100, 0}, {10, 100}), {0, 50, 100, 0});
}

TEST(VerticalClip, TruncatesWhatIsNoWholePixel) {
    // f = 1/3: the source starts at 33.3 and keeps 66.7; the item keeps 20 of 30, a hair less in float.
    const Clipped top = Clip({0, 0, 100, 30}, {10, 100}, 100);
    EXPECT_EQ(top.source, (Box{0, 33, 200, 66}));
    EXPECT_EQ(top.destination[1], 10);
    // f = 2/3.
    const Clipped bottom = Clip({0, 90, 100, 30}, {0, 100}, 100);
    EXPECT_EQ(bottom.source, (Box{0, 0, 200, 33}));
    EXPECT_EQ(bottom.destination[1], 90);
}

TEST(VerticalClip, TruncatesNegativePositionsTowardsZero) {
    // f = 0.35 (7 of 20): -8 + 7 is reached from -8.0 + 6.9999...
    const Clipped clipped = Clip({0, -8, 100, 20}, {-1, 100});
    EXPECT_EQ(clipped.destination[1], static_cast<int>(-8.0F + 20.0F * (7.0F / 20.0F)));
}

TEST(VerticalClip, ReckonsInSinglePrecision) {
    int differences = 0;
    for (int height = 1; height <= 200; ++height) {
        for (int cut = 1; cut < height; ++cut) {
            const Clipped clipped = Clip({0, 0, 100, height}, {cut, 0}, 1000);
            const float fraction = static_cast<float>(cut) / static_cast<float>(height);
            const float keep = 1.0F - fraction;
            ASSERT_EQ(clipped.source, (Box{0, static_cast<int>(fraction * 1000.0F), kSourceWidth,
                                           static_cast<int>(1000.0F * keep)}));
            ASSERT_EQ(clipped.destination, (Box{0, static_cast<int>(static_cast<float>(height) * fraction),
                                                100, static_cast<int>(static_cast<float>(height) * keep)}));
            const double exact = static_cast<double>(cut) / height;
            const int exactHeight = static_cast<int>(height * (1.0 - exact));
            differences += exactHeight != clipped.destination[3] ? 1 : 0;
        }
    }
    // Else this test would not tell single from double.
    EXPECT_GT(differences, 0);
}

TEST(VerticalClip, KeepsTheSourceWidthAndTheItemsX) {
    const Clipped clipped = Clip({-7, 0, 33, 40}, {10, 0});
    EXPECT_EQ(clipped.source[0], 0);
    EXPECT_EQ(clipped.source[2], kSourceWidth);
    EXPECT_EQ(clipped.destination[0], -7);
    EXPECT_EQ(clipped.destination[2], 33);
}

TEST(VerticalClip, CutsAnItemWithoutASourceToo) {
    ExpectCut(Clip({0, 0, 100, 40}, {10, 0}, 0), {0, 0, 200, 0}, {0, 10, 100, 30});
}

}  // namespace
}  // namespace Corvanta::UI
