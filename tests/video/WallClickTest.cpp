// What the wall makes of the button: clicks, and what may happen to a tile in the middle of one.
#include <gtest/gtest.h>

#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

using Clicks = std::vector<std::pair<std::string, bool>>;

class WallClickTest : public WallTest {
protected:
    void ClickAt(SDL_Point point) {
        MoveTo(point);
        Press();
        Release();
    }
    void Click(const std::string& id) {
        Tick();
        ClickAt(CentreOf(id));
    }
    // A button in the tile's column, drawn and under the pointer.
    void HoverButton(const std::string& id, std::function<void()> function) {
        UI::Button::Options options;
        options.iconName = kPinIcon;
        options.onClick = std::move(function);
        UI::Button* button = Tile(id).AddHoverButton(std::move(options));
        Tick();
        MoveToTile(id);
        Tick();
        MoveTo({button->rect.x + button->rect.w / 2, button->rect.y + button->rect.h / 2});
        ASSERT_TRUE(button->hovered);
    }
};

TEST_F(WallClickTest, MakesATileTheMainVideoByAClick) {
    AddRemotes(3);
    Click("r1");
    EXPECT_EQ(room.clicks, (Clicks{{"r1", false}}));
    EXPECT_FALSE(Tile("r1").dragging);
}

TEST_F(WallClickTest, TakesOnePixelOfMovementForADrag) {
    AddRemotes(3);
    Tick();
    for (const SDL_Point step : {SDL_Point{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
        MoveToTile("r1");
        Press();
        MoveTo({pointer.x + step.x, pointer.y + step.y});
        EXPECT_TRUE(Tile("r1").dragging);
        Release();
        EXPECT_FALSE(Tile("r1").dragging);
        Tick();
    }
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, TakesAMovementBetweenTwoTicksForNoClick) {
    AddRemotes(3);
    Tick();
    MoveToTile("r1");
    Press();
    pointer.x += 1;
    Release();
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, IsNoClickWhenADragComesBackToWhereItBegan) {
    AddRemotes(3);
    StartDrag("r1");
    MoveTo({pointer.x - 1, pointer.y});
    Release();
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, MakesTheUsersOwnTileTheMainVideoWhereverTheButtonWentDown) {
    AddLocal("me");
    AddRemotes(2);
    Tick();
    MoveTo({500, 500});
    Press();
    MoveToTile("me");
    Release();
    EXPECT_EQ(room.clicks, (Clicks{{"me", false}}));
}

TEST_F(WallClickTest, ClicksNothingBesideTheTiles) {
    AddLocal("me");
    AddRemotes(2);
    Tick();
    ClickAt({500, 600});
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, ClicksOneTileWhereTwoLieOnEachOther) {
    AddRemotes(3);
    Tick();
    MoveToTile("r1");
    Tile("r2").hovered = true;
    Press();
    Release();
    EXPECT_EQ(room.clicks, (Clicks{{"r1", false}}));
}

TEST_F(WallClickTest, GivesTheClickToAButtonOfTheTile) {
    AddRemotes(2);
    int pressed = 0;
    HoverButton("r0", [&] { ++pressed; });
    Press();
    Release();
    EXPECT_EQ(pressed, 1);
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, ClicksOutsideAnOpenPanelButInsideItsTileChangeTheMainVideo) {
    AddRemotes(2);
    Tile("r0").GetPanel().SetVisible(true);
    Tick();
    // In the grid the panel fills its tile.
    Click("r0");
    EXPECT_TRUE(room.clicks.empty());
    Tile("r0").GetPanel().rect = {0, 0, 1, 1};
    Tile("r0").GetPanel().hovered = false;
    wall.Update(pointer, {0, 0});
    Press();
    Release();
    EXPECT_EQ(room.clicks, (Clicks{{"r0", false}}));
}

TEST_F(WallClickTest, GivesAPressToAPanelsScrollbarFirst) {
    AddRemotes(1);
    Tick();
    MoveToTile("r0");
    auto& panel = Tile("r0").GetPanel();
    panel.SetVisible(true);
    auto& bar = panel.GetScrollbar();
    (void)bar.UpdateMetrics(100, 500, pointer.x, true);
    bar.OnHover({pointer.x, bar.rect.y});
    ASSERT_TRUE(bar.hovered);
    Press();
    EXPECT_TRUE(bar.IsDragging());
    wall.Update({pointer.x + 20, pointer.y}, {0, 0});
    EXPECT_FALSE(Tile("r0").dragging);
    Release();
    EXPECT_FALSE(bar.IsDragging());
}

TEST_F(WallClickTest, StartsNoDragOfATileThatIsNotDraggable) {
    AddRemotes(1);
    Tile("r0").draggable = false;
    Tick();
    MoveToTile("r0");
    Press();
    MoveTo({pointer.x + 5, pointer.y});
    EXPECT_FALSE(Tile("r0").dragging);
}

TEST_F(WallClickTest, NeverTouchesATileThatItsOwnButtonTakesAway) {
    AddRemotes(3);
    HoverButton("r0", [&] { wall.RemoveTile(&Tile("r0")); });
    Press();
    Release();
    EXPECT_EQ(wall.GetTileCount(), 2);
    Tile("r0").hovered = true;
    Tile("r0").displayRect = {1, 2, 3, 4};
    Tick();
    EXPECT_EQ(Tile("r0").displayRect.x, 1);
    EXPECT_TRUE(room.clicks.empty());
}

TEST_F(WallClickTest, NeverTouchesTilesThatTheRoomDestroysInAClick) {
    AddLocal("me");
    AddRemotes(3);
    room.onClicked = [&] {
        while (!tiles.empty()) Destroy(tiles.back()->GetStreamId());
    };
    Click("me");
    EXPECT_EQ(room.clicks, (Clicks{{"me", false}}));
    EXPECT_EQ(wall.GetTileCount(), 0);
    AddRemotes(3);
    Click("r1");
    EXPECT_EQ(room.clicks.size(), 2U);
    Tick();
}

TEST_F(WallClickTest, ForgetsAPressOnATileThatGoes) {
    AddRemotes(3);
    Tick();
    MoveToTile("r1");
    Press();
    Destroy("r1");
    MoveTo({pointer.x - 20, pointer.y});
    for (const auto& tile : tiles) EXPECT_FALSE(tile->dragging);
}

TEST_F(WallClickTest, DoesNothingWithoutTiles) {
    Tick();
    ClickAt({10, 10});
    Scroll(3, 3);
    Tick();
    EXPECT_EQ(room.cursor, 0);
    EXPECT_TRUE(room.clicks.empty());
}

}  // namespace
}  // namespace Corvanta::Video
