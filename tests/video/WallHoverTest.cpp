// What the wall makes of the pointer and the wheel: hover, cursor, menus, panels, scrollbars.
#include <gtest/gtest.h>

#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

using Ints = std::vector<int>;

class WallHoverTest : public WallTest {
protected:
    // Opens a menu of so many entries, drawn and with the pointer on it.
    UI::Menu& OpenMenu(const std::string& id, int entries) {
        Tile(id).AddHoverButton({});
        UI::Menu& menu = Tile(id).GetMenu();
        for (int i = 0; i < entries; ++i) menu.AddButton("", "entry", [] {});
        Tick();
        MoveToTile(id);
        menu.SetVisible(true);
        Tick();
        MoveTo({menu.rect.x + 5, menu.rect.y + 5});
        EXPECT_TRUE(menu.hovered);
        return menu;
    }
};

TEST_F(WallHoverTest, ShowsTheHandOverATileAndNoneBesideIt) {
    AddRemotes(3);
    Tick();
    EXPECT_EQ(room.cursor, 0);
    EXPECT_EQ(room.layer, 1);
    MoveToTile("r1");
    // The room hears of it in the next tick, as clicks do.
    Tick();
    EXPECT_TRUE(Tile("r1").hovered);
    EXPECT_EQ(room.cursor, 1);
    EXPECT_EQ(room.layer, 1);
    MoveTo({500, 600});
    Tick();
    EXPECT_FALSE(Tile("r1").hovered);
    EXPECT_EQ(room.cursor, 0);
}

TEST_F(WallHoverTest, HoversNoTileUnderTheScrollbar) {
    AddRemotes(6);
    wall.SetMode(ThumbnailLayoutMode::Grid, 3);
    wall.SetAreaWidth(960);
    wall.SetAreaHeight(320);
    Tick();
    const SDL_Point onBoth{965, 100};
    Tile("r0").displayRect = {900, 0, 213, 160};
    wall.Update(onBoth, {0, 0});
    EXPECT_FALSE(Tile("r0").hovered);
    wall.Update({905, 100}, {0, 0});
    EXPECT_TRUE(Tile("r0").hovered);
}

TEST_F(WallHoverTest, KeepsAMenuWhileThePointerIsOnItAndClosesItOtherwise) {
    AddRemotes(3);
    UI::Menu& menu = OpenMenu("r1", 3);
    Tick();
    EXPECT_TRUE(menu.visible);
    EXPECT_EQ(room.cursor, 1);
    MoveTo({menu.rect.x + 5, menu.rect.y + menu.rect.h + 300});
    Tick();
    EXPECT_FALSE(menu.visible);
}

TEST_F(WallHoverTest, KeepsAMenuWhoseScrollbarIsDragged) {
    AddRemotes(3);
    UI::Menu& menu = OpenMenu("r1", 12);
    menu.GetScrollbar().SetDragging(true);
    MoveTo({500, 700});
    Tick();
    EXPECT_TRUE(menu.visible);
    Release();
    EXPECT_FALSE(menu.GetScrollbar().IsDragging());
    Tick();
    EXPECT_FALSE(menu.visible);
}

TEST_F(WallHoverTest, ScrollsAMenuByTheWheelInsteadOfTheWall) {
    AddRemotes(6);
    UI::Menu& menu = OpenMenu("r1", 12);
    ASSERT_TRUE(menu.GetScrollbar().visible);
    const int before = menu.GetScrollbar().rect.y;
    const auto places = PlacesX();
    Scroll(0, 7);
    Tick();
    EXPECT_EQ(menu.GetScrollbar().rect.y, before + 7);
    EXPECT_EQ(PlacesX(), places);
}

TEST_F(WallHoverTest, ScrollsAPanelByTheWheel) {
    AddRemotes(3);
    Tick();
    auto& panel = Tile("r1").GetPanel();
    panel.SetVisible(true);
    Tick();
    MoveToTile("r1");
    ASSERT_TRUE(panel.hovered);
    auto& bar = panel.GetScrollbar();
    (void)bar.UpdateMetrics(100, 500, 0, true);
    const int before = bar.rect.y;
    wall.Update(pointer, {9, 9});
    EXPECT_EQ(bar.rect.y, before + 9);
    panel.SetVisible(false);
    wall.Update(pointer, {9, 9});
    EXPECT_EQ(bar.rect.y, before + 9);
}

TEST_F(WallHoverTest, ScrollsByTheLargerWheelComponentOfTheLastWheelEvent) {
    AddRemotes(6);
    Tick();
    Scroll(50, -50);
    EXPECT_EQ(wheel.x, -50);
    EXPECT_EQ(wheel.y, -50);
    Scroll(109, 3);
    Tick();
    EXPECT_EQ(PlacesX().front(), -139);
    Scroll(0, -4000);
    Tick();
    EXPECT_EQ(PlacesX().front(), 0);
    Scroll(0, 4000);
    Tick();
    EXPECT_EQ(PlacesX().back() + 213, kAreaWidth);
}

TEST_F(WallHoverTest, DragsTheThumbByDifferencesUntilTheButtonGoesUp) {
    AddRemotes(6);
    Tick();
    MoveTo({400, 165});
    Press();
    MoveTo({509, 165});
    EXPECT_EQ(PlacesX().front(), -139);
    MoveTo({509, 500});
    EXPECT_EQ(PlacesX().front(), -139) << "the thumb keeps the pointer";
    Release();
    MoveTo({700, 165});
    EXPECT_EQ(PlacesX().front(), -139);
}

TEST_F(WallHoverTest, ScrollsAColumnByTheThumbAsWell) {
    AddRemotes(6);
    wall.SetMode(ThumbnailLayoutMode::Column, 1);
    Tick();
    MoveTo({217, 100});
    Press();
    MoveTo({217, 4000});
    EXPECT_EQ(PlacesY().back() + 160, kAreaHeight);
}

TEST_F(WallHoverTest, StoresThePointerOfEveryMotionButALeavingOneDuringADrag) {
    AddRemotes(3);
    MoveTo({-1, -1});
    EXPECT_EQ(pointer.x, -1);
    EXPECT_EQ(pointer.y, -1);
    StartDrag("r0");
    const SDL_Point before = pointer;
    MoveTo({-1, -1});
    EXPECT_EQ(pointer.x, before.x);
    EXPECT_EQ(pointer.y, before.y);
    MoveTo({-1, 5});
    EXPECT_EQ(pointer.x, -1);
}

TEST_F(WallHoverTest, IgnoresEventsOfOtherKinds) {
    AddRemotes(1);
    Tick();
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    SDL_Point out{3, 4};
    wall.HandleEvent(event, out, pointer, wheel);
    EXPECT_EQ(out.x, 3);
    EXPECT_EQ(wheel.x, 0);
    EXPECT_EQ(pointer.x, -1);
}

TEST_F(WallHoverTest, ForgetsTheHoverOfATileThatGoes) {
    AddRemotes(1);
    Tick();
    MoveToTile("r0");
    Tick();
    ASSERT_EQ(room.cursor, 1);
    VideoFrame& tile = Tile("r0");
    wall.RemoveTile(&tile);
    EXPECT_FALSE(tile.hovered);
    Tick();
    EXPECT_EQ(room.cursor, 0);
}

}  // namespace
}  // namespace Corvanta::Video
