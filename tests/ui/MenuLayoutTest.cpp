#include "ui/MenuLayout.h"

#include <gtest/gtest.h>

#include <utility>

namespace Corvanta::UI {
namespace {

TEST(MenuLayout, CountsADividerAsOnePixel) {
    EXPECT_EQ(MenuContentHeight(0, 0, 48), 0);
    EXPECT_EQ(MenuContentHeight(1, 0, 48), 48);
    EXPECT_EQ(MenuContentHeight(3, 1, 48), 97);
    EXPECT_EQ(MenuContentHeight(8, 3, 25), 128);
    EXPECT_EQ(MenuContentHeight(1, 1, 48), 1);
    EXPECT_EQ(MenuContentHeight(2, 0, 30'000), 60'000);
    EXPECT_EQ(MenuContentHeight(3, 1, 0), 1);
    EXPECT_EQ(MenuContentHeight(3, 0, -48), -144);
}

TEST(MenuLayout, PadsByASixthOfARow) {
    for (const auto& [height, padding] :
         {std::pair(48, 8), std::pair(47, 7), std::pair(53, 8), std::pair(54, 9), std::pair(25, 4),
          std::pair(72, 12), std::pair(5, 0), std::pair(6, 1), std::pair(0, 0), std::pair(-48, -8),
          std::pair(-47, -7), std::pair(30'000, 5000)}) {
        EXPECT_EQ(MenuPadding(height), padding) << height;
    }
}

TEST(MenuLayout, ShowsAllRowsOrFiveOfAScrolledMenu) {
    EXPECT_EQ(MenuPlateHeight(3, 0, 48, false), 160);
    EXPECT_EQ(MenuPlateHeight(3, 1, 48, false), 113);
    EXPECT_EQ(MenuPlateHeight(12, 0, 48, false), 592);
    EXPECT_EQ(MenuPlateHeight(12, 0, 48, true), 256);
    EXPECT_EQ(MenuPlateHeight(6, 2, 48, true), 256);
    EXPECT_EQ(MenuPlateHeight(5, 0, 48, true), 256);
    EXPECT_EQ(MenuPlateHeight(4, 0, 48, true), 208);
    // A scrolled menu counts rows, not heights.
    EXPECT_EQ(MenuPlateHeight(3, 1, 48, true), 160);
    EXPECT_EQ(MenuPlateHeight(0, 0, 48, true), 16);
    EXPECT_EQ(MenuPlateHeight(3, 0, 25, false), 83);
    EXPECT_EQ(MenuPlateHeight(6, 0, 72, true), 384);
}

TEST(MenuLayout, SlidesItsHeightWithinTheTime) {
    EXPECT_DOUBLE_EQ(MenuSlideDistance(0, 125, 144), 144.0);
    EXPECT_DOUBLE_EQ(MenuSlideDistance(62, 125, 144), 72.576);
    EXPECT_NEAR(MenuSlideDistance(124, 125, 144), 1.152, 1e-9);
    EXPECT_DOUBLE_EQ(MenuSlideDistance(125, 125, 144), 0.0);
}

}  // namespace
}  // namespace Corvanta::UI
