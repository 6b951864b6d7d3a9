// What the wall is told from outside: tiles, pins, order, sizes, modes.
#include "video/VideoThumbnails.h"

#include <gtest/gtest.h>

#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

using Ids = std::vector<std::string>;

class VideoThumbnailsTest : public WallTest {};

TEST_F(VideoThumbnailsTest, KeepsLocalTilesBeforeRemoteOnesInTheOrderInWhichTheyCame) {
    AddRemote("second");
    AddRemote("first");
    AddLocal("me");
    EXPECT_EQ(Order(), (Ids{"me", "second", "first"}));
    EXPECT_EQ(wall.GetTileCount(), 3);
}

TEST_F(VideoThumbnailsTest, HoldsATileOnce) {
    VideoFrame& tile = AddRemote("first");
    wall.AddTile(&tile, true);
    wall.AddTile(&tile, false);
    wall.AddTile(nullptr, true);
    EXPECT_EQ(Order(), (Ids{"first"}));
}

TEST_F(VideoThumbnailsTest, ForgetsARemovedTileAndNoOther) {
    VideoFrame& first = AddRemote("first");
    AddRemote("second");
    wall.RemoveTile(&first);
    wall.RemoveTile(&first);
    wall.RemoveTile(nullptr);
    EXPECT_EQ(Order(), (Ids{"second"}));
}

TEST_F(VideoThumbnailsTest, RemembersWhetherTheHostDrawsItsBorders) {
    EXPECT_FALSE(wall.HasDetachedBorders());
    wall.SetDetachedBorders(true);
    EXPECT_TRUE(wall.HasDetachedBorders());
}

TEST_F(VideoThumbnailsTest, PinsAndUnpinsAndLeavesStrangersAlone) {
    AddRemotes(4);
    wall.PinTile(&Tile("r2"));
    wall.PinTile(&Tile("r2"));
    wall.PinTile(&Tile("r3"));
    EXPECT_EQ(Order(), (Ids{"r2", "r3", "r0", "r1"}));
    wall.UnpinTile(&Tile("r2"));
    wall.UnpinTile(&Tile("r2"));
    EXPECT_EQ(Order(), (Ids{"r3", "r2", "r0", "r1"}));
    VideoFrame stranger("stranger", "", "", TileOrigin::Remote);
    wall.PinTile(&stranger);
    wall.UnpinTile(&stranger);
    wall.PinTile(nullptr);
    EXPECT_EQ(Order(), (Ids{"r3", "r2", "r0", "r1"}));
    EXPECT_FALSE(stranger.pinned);
}

TEST_F(VideoThumbnailsTest, AddsANewPinBehindTheRemainingOnesAfterAPinnedTileHasGone) {
    AddRemotes(4);
    wall.PinTile(&Tile("r3"));
    wall.PinTile(&Tile("r2"));
    Destroy("r3");
    wall.PinTile(&Tile("r1"));
    EXPECT_EQ(Order(), (Ids{"r2", "r1", "r0"}));
}

TEST_F(VideoThumbnailsTest, ReordersRemoteTilesAndForgetsThoseNotNamed) {
    AddRemotes(4);
    AddLocal("me");
    StartDrag("r1");
    wall.ReorderRemoteTiles({"r3", "nobody", "r0", "r3"});
    EXPECT_EQ(Order(), (Ids{"me", "r3", "r0"}));
    EXPECT_FALSE(Tile("r1").dragging);
}

TEST_F(VideoThumbnailsTest, MeasuresItselfForItsWindow) {
    AddRemotes(5);
    EXPECT_EQ(wall.GetTotalWidth(), 5 * 213);
    EXPECT_EQ(wall.GetMinimumWidth(), 5 * 213);
    EXPECT_EQ(wall.GetMinimumHeight(), 160);
    wall.SetMode(ThumbnailLayoutMode::Column, 3);
    EXPECT_EQ(wall.GetMinimumWidth(), 213);
    EXPECT_EQ(wall.GetMinimumHeight(), 800);
    wall.SetMode(ThumbnailLayoutMode::Grid, 2);
    room.viewWidth = 1440;
    Draw();
    EXPECT_EQ(wall.GetMode(), ThumbnailLayoutMode::Grid);
    EXPECT_EQ(wall.GetMinimumWidth(), 3 * 213);
    EXPECT_EQ(wall.GetMinimumHeight(), 2 * 160);
}

TEST_F(VideoThumbnailsTest, TakesItsTilesSizeFromTheirHeight) {
    AddRemotes(2);
    wall.SetTileHeight(240);
    Draw();
    EXPECT_EQ(Tile("r0").displayRect.w, 320);
    EXPECT_EQ(Tile("r0").displayRect.h, 240);
    EXPECT_EQ(wall.GetStripHeight(), 240);
    for (const int height : {0, -1, -160}) wall.SetTileHeight(height);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 240);
}

TEST_F(VideoThumbnailsTest, SizesTheMenusByTheTilesHeight) {
    AddRemotes(1);
    AddLocal("me");
    wall.SetTileHeight(240);
    for (const char* id : {"r0", "me"}) {
        UI::Menu& menu = Tile(id).GetMenu();
        EXPECT_EQ(menu.width, 210);
        EXPECT_EQ(menu.GetItemHeight(), 38);
        EXPECT_EQ(menu.GetScrollbar().GetThickness(), 12);
    }
}

TEST_F(VideoThumbnailsTest, WidensTheMenusWhileATileWantsIt) {
    AddRemotes(2);
    wall.SetTileHeight(160);
    UI::ToggleButton* toggle = Tile("r1").GetMenu().AddToggleButton({});
    Tile("r1").wideMenuToggle = toggle;
    Draw();
    EXPECT_EQ(Tile("r0").GetMenu().width, 140);
    toggle->SetToggled(true);
    Draw();
    EXPECT_EQ(Tile("r0").GetMenu().width, 145);
    EXPECT_EQ(Tile("r1").GetMenu().width, 145);
    Draw();
    EXPECT_EQ(Tile("r0").GetMenu().width, 145);
    toggle->SetToggled(false);
    Draw();
    EXPECT_EQ(Tile("r0").GetMenu().width, 140);
}

TEST_F(VideoThumbnailsTest, GrowsTheMenusWithTheTilesOfAGrid) {
    AddRemotes(1);
    wall.SetMode(ThumbnailLayoutMode::Grid, 1);
    wall.SetAreaWidth(640);
    wall.SetAreaHeight(480);
    Draw();
    EXPECT_EQ(Tile("r0").displayRect.h, 480);
    EXPECT_EQ(Tile("r0").GetMenu().width, 420);
    EXPECT_EQ(Tile("r0").GetMenu().GetItemHeight(), 75);
}

TEST_F(VideoThumbnailsTest, PutsAGridsTilesBackToTheBaseSizeForAStrip) {
    AddRemotes(1);
    wall.SetMode(ThumbnailLayoutMode::Grid, 1);
    Draw();
    ASSERT_GT(wall.GetStripHeight(), 160);
    wall.SetMode(ThumbnailLayoutMode::Strip, 1);
    EXPECT_EQ(wall.GetStripHeight(), 160);
    Draw();
    EXPECT_EQ(Tile("r0").displayRect.w, 213);
}

TEST_F(VideoThumbnailsTest, ClearsTheMarkOfTheMainVideo) {
    AddRemotes(2);
    AddLocal("me");
    room.mainId = "r1";
    Draw();
    ASSERT_TRUE(Tile("r1").onMainVideo);
    Tile("me").onMainVideo = true;
    wall.ClearMainTiles();
    EXPECT_FALSE(Tile("r1").onMainVideo);
    EXPECT_FALSE(Tile("me").onMainVideo);
}

TEST_F(VideoThumbnailsTest, SurvivesWildSizes) {
    AddRemotes(12);
    for (const auto mode :
         {ThumbnailLayoutMode::Grid, ThumbnailLayoutMode::Column, ThumbnailLayoutMode::Strip}) {
        for (const int size : {INT32_MIN, -640, 0, 1, 7680, INT32_MAX}) {
            wall.SetMode(mode, size);
            wall.SetAreaWidth(size);
            wall.SetAreaHeight(size);
            room.viewWidth = size;
            Tick();
            (void)wall.GetTotalWidth();
            (void)wall.GetMinimumHeight();
            (void)wall.GetMinimumWidth();
        }
    }
    EXPECT_EQ(wall.GetTileCount(), 12);
}

}  // namespace
}  // namespace Corvanta::Video
