// Dragging a tile to another place, by numbers and through the wall.
#include "video/WallDrag.h"

#include <gtest/gtest.h>

#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

TEST(TilePress, BecomesADragByOnePixelInEitherDirection) {
    const TilePress press{.pending = true, .at = {10, 20}};
    EXPECT_FALSE(press.HasMoved({10, 20}));
    EXPECT_TRUE(press.HasMoved({11, 20}));
    EXPECT_TRUE(press.HasMoved({9, 20}));
    EXPECT_TRUE(press.HasMoved({10, 21}));
    EXPECT_TRUE(press.HasMoved({10, 19}));
}

TEST(WallDrag, ChangesThePinOnlyWhenTheBorderIsCrossed) {
    struct Row {
        int from;
        int to;
        bool isPinned;
        int pinnedCount;
        PinChange change;
    };
    for (const Row& row : {Row{3, 0, false, 0, PinChange::None}, Row{3, 0, false, 1, PinChange::Pin},
                           Row{3, 1, false, 2, PinChange::Pin}, Row{3, 2, false, 2, PinChange::None},
                           Row{3, 2, false, 3, PinChange::Pin}, Row{1, 0, true, 2, PinChange::None},
                           Row{0, 1, true, 2, PinChange::None}, Row{0, 2, true, 2, PinChange::Unpin},
                           Row{1, 2, true, 2, PinChange::Unpin}, Row{0, 3, true, 2, PinChange::Unpin},
                           Row{2, 4, false, 2, PinChange::None}, Row{0, 1, true, 1, PinChange::Unpin}}) {
        EXPECT_EQ(PinChangeOfMove(row.from, row.to, row.isPinned, row.pinnedCount), row.change)
            << "from " << row.from << " to " << row.to << " of " << row.pinnedCount << " pinned";
    }
}

using Ids = std::vector<std::string>;

class WallDragTest : public WallTest {
protected:
    // Over the middle of that tile's place; two ticks, as the place follows the order of the tick before.
    void DragOver(const std::string& id) {
        MoveToTile(id);
        Tick();
    }
};

TEST_F(WallDragTest, CarriesTheTileWithThePointer) {
    AddRemotes(3);
    Tick();
    const SDL_Rect before = Tile("r1").displayRect;
    MoveToTile("r1");
    Press();
    MoveTo({pointer.x + 10, pointer.y + 7});
    EXPECT_EQ(Tile("r1").rect.x, before.x + 10);
    EXPECT_EQ(Tile("r1").rect.y, before.y + 7);
    MoveTo({pointer.x + 5, pointer.y + 100});
    EXPECT_EQ(Tile("r1").rect.x, before.x + 15);
    EXPECT_EQ(Tile("r1").rect.y, before.y + 107);
    Release();
    EXPECT_EQ(Tile("r1").dragPointer.x, 0);
    Tick();
    EXPECT_EQ(Tile("r1").rect.x, before.x);
    EXPECT_EQ(Tile("r1").rect.y, before.y);
}

TEST_F(WallDragTest, DrawsTheDraggedTileOnceAndLast) {
    AddRemotes(3);
    for (const auto& tile : tiles) Show(*tile);
    StartDrag("r2");
    Fake().ClearCalls();
    Tick();
    Ids places;
    for (const auto& call : Calls().Of("SDL_RenderCopy")) {
        if (call.arguments[2] == "0 0 64 48") places.push_back(call.arguments[3]);
    }
    EXPECT_EQ(places, (Ids{"393 0 213 160", "180 0 213 160", "607 0 213 160"}));
}

TEST_F(WallDragTest, PutsTheTileInTheOtherOnesPlaceAndKeepsTheOrderOfTheRest) {
    AddRemotes(4);
    StartDrag("r0");
    EXPECT_EQ(Order(), (Ids{"r0", "r1", "r2", "r3"}));
    DragOver("r2");
    EXPECT_EQ(Order(), (Ids{"r1", "r2", "r0", "r3"}));
    DragOver("r1");
    EXPECT_EQ(Order(), (Ids{"r0", "r1", "r2", "r3"}));
    DragOver("r3");
    Release();
    EXPECT_EQ(Order(), (Ids{"r1", "r2", "r3", "r0"}));
}

TEST_F(WallDragTest, LeavesTheUsersOwnTilesWhereTheyAre) {
    AddLocal("me");
    AddRemotes(2);
    StartDrag("r1");
    DragOver("me");
    EXPECT_EQ(Order(), (Ids{"me", "r0", "r1"}));
    MoveToTile("me");
    Release();
    Tick();
    Press();
    MoveTo({pointer.x + 5, pointer.y});
    EXPECT_FALSE(Tile("me").dragging);
}

TEST_F(WallDragTest, EndsTheDragWhoseReleaseWasLost) {
    AddRemotes(3);
    StartDrag("r2");
    DragOver("r1");
    ASSERT_EQ(Order(), (Ids{"r0", "r2", "r1"}));
    MoveToTile("r0");
    Press();
    MoveTo({pointer.x + 1, pointer.y});
    EXPECT_TRUE(Tile("r0").dragging);
    EXPECT_FALSE(Tile("r2").dragging);
    Release();
    for (const auto& tile : tiles) EXPECT_FALSE(tile->dragging) << tile->GetStreamId();
}

TEST_F(WallDragTest, PinsATileThatIsDraggedOverAPinnedOne) {
    AddRemotes(4);
    int calls = 0;
    AddPinToggle(Tile("r3"), calls);
    wall.PinTile(&Tile("r0"));
    StartDrag("r3");
    DragOver("r0");
    Tick();
    Release();
    EXPECT_EQ(Order(), (Ids{"r3", "r0", "r1", "r2"}));
    EXPECT_TRUE(Tile("r3").pinned);
    EXPECT_TRUE(Tile("r3").pinToggle->IsToggled());
    EXPECT_TRUE(Tile("r3").HasBadge(kPinIcon));
    EXPECT_EQ(calls, 0) << "it would move the tile again";
    // Two are pinned now: a third goes behind them.
    wall.PinTile(&Tile("r2"));
    EXPECT_EQ(Order(), (Ids{"r3", "r0", "r2", "r1"}));
    // The badge is there once.
    Tile("r3").RemoveBadge(kPinIcon);
    EXPECT_FALSE(Tile("r3").HasBadge(kPinIcon));
}

TEST_F(WallDragTest, UnpinsATileThatIsDraggedPastThePinnedOnes) {
    AddRemotes(4);
    int calls = 0;
    AddPinToggle(Tile("r0"), calls);
    wall.PinTile(&Tile("r0"));
    Tile("r0").pinToggle->SetToggled(true);
    Tile("r0").AddBadge(kPinIcon);
    wall.PinTile(&Tile("r1"));
    StartDrag("r0");
    DragOver("r1");
    EXPECT_TRUE(Tile("r0").pinned) << "still among the pinned ones";
    EXPECT_EQ(Order(), (Ids{"r1", "r0", "r2", "r3"}));
    DragOver("r2");
    EXPECT_EQ(Order(), (Ids{"r1", "r2", "r0", "r3"}));
    EXPECT_FALSE(Tile("r0").pinned);
    EXPECT_FALSE(Tile("r0").pinToggle->IsToggled());
    EXPECT_FALSE(Tile("r0").HasBadge(kPinIcon));
    EXPECT_EQ(calls, 0);
    Release();
    wall.PinTile(&Tile("r3"));
    EXPECT_EQ(Order(), (Ids{"r1", "r3", "r2", "r0"}));
}

TEST_F(WallDragTest, PinsATileThatHasNoMenuEntryForIt) {
    AddRemotes(2);
    wall.PinTile(&Tile("r0"));
    StartDrag("r1");
    DragOver("r0");
    EXPECT_TRUE(Tile("r1").pinned);
}

TEST_F(WallDragTest, HidesThePanelOfTheDraggedTile) {
    AddRemotes(2);
    Tick();
    Tile("r0").GetPanel().SetVisible(true);
    StartDrag("r0");
    EXPECT_FALSE(Tile("r0").GetPanel().visible);
}

TEST_F(WallDragTest, DragsNothingWhileItsPanelsScrollbarIsDragged) {
    AddRemotes(2);
    Tick();
    MoveToTile("r0");
    Press();
    Tile("r0").GetPanel().GetScrollbar().SetDragging(true);
    MoveTo({pointer.x + 5, pointer.y});
    EXPECT_FALSE(Tile("r0").dragging);
}

TEST_F(WallDragTest, LetsGoOfADraggedTileThatGoes) {
    AddRemotes(4);
    wall.PinTile(&Tile("r0"));
    StartDrag("r1");
    DragOver("r0");
    ASSERT_TRUE(Tile("r1").pinned);
    Destroy("r1");
    Tick();
    MoveTo({pointer.x + 50, pointer.y});
    Release();
    EXPECT_EQ(Order(), (Ids{"r0", "r2", "r3"}));
    wall.PinTile(&Tile("r3"));
    EXPECT_EQ(Order(), (Ids{"r0", "r3", "r2"}));
}

TEST_F(WallDragTest, SetsAnOrderThatADetachedWallKeeps) {
    AddRemotes(3);
    StartDrag("r0");
    DragOver("r1");
    // Also while the button is still down.
    room.detached = true;
    Show(Tile("r2"));
    Tick();
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r1", "r0", "r2"}));
    Release();
    Tick();
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r1", "r0", "r2"}));
}

TEST_F(WallDragTest, SetsNoOrderWhenNothingWasMoved) {
    AddRemotes(3);
    StartDrag("r0");
    Release();
    room.detached = true;
    Show(Tile("r2"));
    Tick();
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r2", "r0", "r1"}));
}

TEST_F(WallDragTest, ScrollsWhileItIsHeldAtTheEndOfTheArea) {
    AddRemotes(8);
    StartDrag("r1");
    MoveTo({950, 400});
    EXPECT_EQ(PlacesX().front(), 0);
    // The thumb of 586 pixels moves half a pixel per millisecond of its 414.
    TurnMs(int64_t{207} * 2);
    Tick();
    EXPECT_EQ(PlacesX().front(), -352);
    TurnMs(5000);
    Tick();
    EXPECT_EQ(PlacesX().front(), 1000 - 8 * 213);
    MoveTo({50, 400});
    TurnMs(int64_t{207} * 2);
    Tick();
    EXPECT_EQ(PlacesX().front(), -352);
    MoveTo({500, 400});
    TurnMs(1000);
    Tick();
    EXPECT_EQ(PlacesX().front(), -352);
    MoveTo({50, 400});
    Release();
    TurnMs(1000);
    Tick();
    EXPECT_EQ(PlacesX().front(), -352) << "nothing is held any more";
}

TEST_F(WallDragTest, ScrollsAColumnAtItsFoot) {
    AddRemotes(8);
    wall.SetMode(ThumbnailLayoutMode::Column, 1);
    StartDrag("r0");
    MoveTo({600, 700});
    TurnMs(100);
    Tick();
    EXPECT_LT(PlacesY().back(), 7 * 160);
}

TEST_F(WallDragTest, ScrollsNothingThatFits) {
    AddRemotes(3);
    StartDrag("r0");
    MoveTo({990, 400});
    TurnMs(1000);
    Tick();
    EXPECT_EQ(PlacesX()[1], 393);
}

TEST_F(WallDragTest, KeepsADraggedTileSubscribedWhoseOwnPlaceIsOutOfSight) {
    AddRemotes(12);
    StartDrag("r0");
    MoveTo({600, 500});
    wheel = {4000, 4000};
    Tick();
    Tick();
    EXPECT_TRUE(Tile("r0").IsActive());
    EXPECT_FALSE(Tile("r1").IsActive());
    Release();
    Tick();
    EXPECT_FALSE(Tile("r0").IsActive());
}

}  // namespace
}  // namespace Corvanta::Video
