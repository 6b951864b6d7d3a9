#include "connectivity/PanelLayout.h"

#include <gtest/gtest.h>

namespace Corvanta::Connectivity {
namespace {

struct Expected {
    SDL_Rect panel;
    int closeSize;
    int closeX;
    int closeY;
    int labelColumn;
    int valueColumn;
    int valueWidth;
    int rowGap;
    int listTop;
    int listBottom;
};

class PanelLayoutOf : public ::testing::TestWithParam<Expected> {};

TEST_P(PanelLayoutOf, CutsEveryQuotientTowardsZero) {
    const Expected& expected = GetParam();
    const PanelLayout layout = LayOutPanel(expected.panel);
    EXPECT_EQ(layout.closeSize, expected.closeSize);
    EXPECT_EQ(layout.closeCentre.x, expected.closeX);
    EXPECT_EQ(layout.closeCentre.y, expected.closeY);
    EXPECT_EQ(layout.labelColumn, expected.labelColumn);
    EXPECT_EQ(layout.valueColumn, expected.valueColumn);
    EXPECT_EQ(layout.valueWidth, expected.valueWidth);
    EXPECT_EQ(layout.rowGap, expected.rowGap);
    EXPECT_EQ(layout.listTop, expected.listTop);
    EXPECT_EQ(layout.listBottom, expected.listBottom);
}

INSTANTIATE_TEST_SUITE_P(Sizes, PanelLayoutOf,
                         ::testing::Values(
                             // x y w h, close size, centre x y, label, value, width, gap, top, bottom
                             Expected{{0, 0, 284, 160}, 28, 256, 28, 12, 195, 89, 1, 35, 150},
                             Expected{{10, 14, 300, 210}, 30, 280, 44, 13, 206, 94, 1, 60, 210},
                             Expected{{-50, -20, 426, 240}, 42, 334, 22, 19, 293, 133, 2, 33, 204},
                             Expected{{0, 0, 29, 9}, 2, 27, 2, 1, 20, 9, 0, 2, 9},
                             Expected{{0, 0, 1, 1}, 0, 1, 0, 0, 0, 1, 0, 0, 1},
                             Expected{{0, 0, 7680, 4320}, 768, 6912, 768, 349, 5296, 2384, 36, 960, 4032}));

TEST(PanelLayout, StacksRowsWithAGapBelowEach) {
    const PanelLayout layout = LayOutPanel({0, 100, 426, 240});
    EXPECT_EQ(ContentHeight(layout, 10, 10), 120);
    EXPECT_EQ(ContentHeight(layout, 10, 1), 12);
    EXPECT_EQ(RowTop(layout, 10, 0, 0), 153);
    EXPECT_EQ(RowTop(layout, 10, 3, 0), 189);
    EXPECT_EQ(RowTop(layout, 10, 3, -40), 149);
}

TEST(PanelLayout, TellsWhichRowsAreOutOfSight) {
    const PanelLayout layout = LayOutPanel({0, 0, 284, 160});  // Shows 35 to 150.
    EXPECT_TRUE(IsOutsideList(layout, 25, 10));
    EXPECT_FALSE(IsOutsideList(layout, 26, 10));
    EXPECT_FALSE(IsOutsideList(layout, 149, 10));
    EXPECT_TRUE(IsOutsideList(layout, 150, 10));
}

TEST(PanelLayout, PutsTheWholeValueOneLineBelowItsRow) {
    const SDL_Rect plate = ExpandedValuePlate({206, 70}, 150, 11);
    EXPECT_EQ(plate.x, 211);
    EXPECT_EQ(plate.y, 81);
    EXPECT_EQ(plate.w, 155);
    EXPECT_EQ(plate.h, 11);
}

}  // namespace
}  // namespace Corvanta::Connectivity
