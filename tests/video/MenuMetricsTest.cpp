#include "video/MenuMetrics.h"

#include <gtest/gtest.h>

#include "tests/video/OverlayTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

class MenuMetricsTest : public TileOverlayTest {
protected:
    ~MenuMetricsTest() override { SetCurrentMenuWidth(kMenuWidth); }

    void AddItems(int count) {
        for (int i = 0; i < count; ++i) tile->GetMenu().AddButton("icons/spotlight.png", "Item", [] {});
    }
};

TEST_F(MenuMetricsTest, FollowTheHeightOfATile) {
    const struct {
        int height, menuWidth, itemHeight, scrollbarWidth;
    } rows[] = {{160, 140, 25, 8},  {320, 280, 50, 16}, {100, 88, 16, 5}, {90, 79, 14, 5},
                {200, 175, 31, 10}, {1, 1, 0, 0},       {0, 0, 0, 0}};
    for (const auto& row : rows) {
        const MenuMetrics metrics = MenuMetricsFor(row.height);
        EXPECT_EQ(metrics.menuWidth, row.menuWidth) << row.height;
        EXPECT_EQ(metrics.itemHeight, row.itemHeight) << row.height;
        EXPECT_EQ(metrics.scrollbarWidth, row.scrollbarWidth) << row.height;
    }
}

TEST_F(MenuMetricsTest, TakeTheWidthThatIsInUse) {
    EXPECT_EQ(CurrentMenuWidth(), 140);
    SetCurrentMenuWidth(kWideMenuWidth);
    EXPECT_EQ(MenuMetricsFor(160).menuWidth, 145);
    EXPECT_EQ(MenuMetricsFor(320).menuWidth, 290);
    Make();
    EXPECT_EQ(tile->GetMenu().width, 145);
}

TEST_F(MenuMetricsTest, AreThoseOfTheDesignForANewTile) {
    Make();
    EXPECT_EQ(tile->GetMenu().width, 140);
    EXPECT_EQ(tile->GetMenu().GetItemHeight(), 25);
    EXPECT_TRUE(tile->GetMenu().IsScrollable());
    EXPECT_FALSE(tile->GetMenu().visible);
}

TEST_F(MenuMetricsTest, SizeTheMenuAndItsItems) {
    Make();
    AddItems(2);
    ApplyMenuMetrics(*tile, {.menuWidth = 88, .itemHeight = 16, .scrollbarWidth = 5});
    EXPECT_EQ(tile->GetMenu().GetItemWidth(), 88);
    EXPECT_EQ(tile->GetMenu().GetItemHeight(), 16);
    EXPECT_EQ(tile->GetMenu().GetScrollbar().GetThickness(), 5);
    for (const UI::Button* item : tile->GetMenu().GetItems()) {
        EXPECT_EQ(item->width, 88);
        EXPECT_EQ(item->height, 16);
    }
}

TEST_F(MenuMetricsTest, LeaveRoomForTheScrollbarOfAMenuThatShowsOne) {
    Make();
    AddItems(7);
    AddMenuButton();
    tile->hovered = true;
    tile->GetMenu().SetVisible(true);
    ApplyMenuMetrics(*tile, MenuMetricsFor(160));
    Draw();
    ASSERT_TRUE(tile->GetMenu().GetScrollbar().visible);
    for (const int height : {320, 160, 160}) {
        const MenuMetrics metrics = MenuMetricsFor(height);
        ApplyMenuMetrics(*tile, metrics);
        Draw();
        Draw();
        EXPECT_EQ(tile->GetMenu().GetItemWidth(), metrics.menuWidth - metrics.scrollbarWidth) << height;
        EXPECT_EQ(tile->GetMenu().rect.w, metrics.menuWidth) << height;
    }
}

}  // namespace
}  // namespace Corvanta::Video
