#include <gtest/gtest.h>

#include <limits>

#include "tests/video/OverlayTest.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

class TilePointerTest : public TileOverlayTest {};

TEST_F(TilePointerTest, IsHoveredInsideItsPlaceOnTheWall) {
    Make();
    const struct {
        SDL_Point point;
        bool hovered;
    } rows[] = {{{20, 30}, true},  {{232, 189}, true},  {{19, 30}, false},
                {{20, 29}, false}, {{233, 189}, false}, {{232, 190}, false}};
    for (const auto& row : rows) {
        tile->OnPointer(row.point, false);
        EXPECT_EQ(tile->hovered, row.hovered) << row.point;
        tile->OnPointer(row.point, true);
        EXPECT_FALSE(tile->hovered) << row.point;
    }
}

TEST_F(TilePointerTest, GoesByThePlaceAndNotByWhereItIsDrawn) {
    Make();
    tile->rect = {400, 300, 213, 160};
    tile->OnPointer({450, 350}, false);
    EXPECT_FALSE(tile->hovered);
    tile->OnPointer({100, 100}, false);
    EXPECT_TRUE(tile->hovered);
}

TEST_F(TilePointerTest, StaysHoveredOnAMenuThatSticksOut) {
    Make();
    AddMenuButton();
    for (int i = 0; i < 5; ++i) tile->GetMenu().AddButton("icons/spotlight.png", "Item", [] {});
    Place({300, 30, 100, 75});
    tile->OnPointer({320, 50}, false);
    tile->GetMenu().SetVisible(true);
    Draw();
    const SDL_Rect menu = tile->GetMenu().rect;
    ASSERT_LT(menu.x, 300);
    ASSERT_GT(menu.y + menu.h, 105);
    const SDL_Point outside{menu.x + 5, menu.y + menu.h - 5};
    tile->OnPointer(outside, false);
    EXPECT_TRUE(tile->hovered);
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("thumbnailMenu").size(), 1U);
    tile->OnPointer(outside, true);
    EXPECT_FALSE(tile->hovered);
    tile->OnPointer(outside, false);
    EXPECT_TRUE(tile->hovered);
    tile->GetMenu().SetVisible(false);
    tile->OnPointer(outside, false);
    EXPECT_FALSE(tile->hovered);
}

TEST_F(TilePointerTest, TellsEveryControlWhereThePointerIs) {
    Make();
    UI::Button* button = AddMenuButton();
    UI::Button* other = tile->AddOtherButton(PictureButton("icons/pin.png"));
    other->rect = {300, 300, 10, 10};
    AddConnectionButton();
    tile->GetMenu().AddButton("icons/spotlight.png", "Item", [] {});
    tile->OnPointer({100, 100}, false);
    tile->GetMenu().SetVisible(true);
    Draw();
    tile->OnPointer({209, 45}, false);
    EXPECT_TRUE(button->hovered);
    tile->OnPointer({305, 305}, false);
    EXPECT_FALSE(button->hovered);
    EXPECT_TRUE(other->hovered);
    tile->OnPointer({100, 55}, false);
    EXPECT_TRUE(tile->GetMenu().hovered);
    tile->GetPanel().SetVisible(true);
    Draw();
    tile->OnPointer({100, 100}, false);
    EXPECT_TRUE(tile->GetPanel().hovered);
    tile->OnPointer({1, 1}, false);
    EXPECT_FALSE(tile->GetPanel().hovered);
}

TEST_F(TilePointerTest, ShowsAWholeNameWhileThePointerIsOnACutOne) {
    Make();
    tile->SetDisplayName("A name that is much too long for any plate");
    tile->OnPointer({100, 100}, false);
    Draw();
    const auto tooltips = [&] {
        Calls().Clear();
        Draw();
        size_t count = 0;
        for (const Call& call : Calls().Of("SDL_SetRenderDrawColor"))
            count += call.arguments[1] == "107" ? 1U : 0U;
        return count;
    };
    EXPECT_EQ(tooltips(), 0U);
    tile->OnPointer({45, 48}, false);
    EXPECT_EQ(tooltips(), 1U);
    tile->OnPointer({100, 100}, false);
    EXPECT_EQ(tooltips(), 0U);
}

TEST_F(TilePointerTest, RemembersThePointerOnceItIsHovered) {
    Make();
    tile->OnPointer({100, 100}, false);
    EXPECT_EQ(tile->dragPointer, (SDL_Point{0, 0}));
    tile->OnPointer({101, 102}, false);
    EXPECT_EQ(tile->dragPointer, (SDL_Point{101, 102}));
    tile->OnPointer({1, 1}, false);
    tile->OnPointer({2, 2}, false);
    EXPECT_EQ(tile->dragPointer, (SDL_Point{1, 1}));
}

TEST_F(TilePointerTest, ADraggedTileFollowsThePointerByDifferences) {
    Make();
    tile->dragPointer = {100, 100};
    tile->UpdateDragPosition({110, 95});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{30, 25}));
    EXPECT_EQ(tile->dragPointer, (SDL_Point{110, 95}));
    tile->rect.x = 30;
    tile->rect.y = 25;
    tile->UpdateDragPosition({110, 95});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{30, 25}));
}

TEST_F(TilePointerTest, ADraggedTileStaysRightOfAndBelowTheCorner) {
    Make();
    tile->dragPointer = {100, 100};
    tile->UpdateDragPosition({0, 100});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{0, 30}));
    tile->dragPointer = {100, 100};
    tile->UpdateDragPosition({100, -500});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{20, 0}));
}

TEST_F(TilePointerTest, SurvivesPointersAtTheLimitsOfAnInt) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    Make();
    Draw();
    tile->rect = {kMost, kMost, 100, 100};
    tile->dragPointer = {kLeast, kLeast};
    tile->UpdateDragPosition({kMost, kMost});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{kMost, kMost}));
    tile->UpdateDragPosition({kLeast, kLeast});
    EXPECT_EQ(tile->dragPosition, (SDL_Point{0, 0}));
    tile->OnPointer({kMost, kLeast}, false);
    tile->OnPointer({kLeast, kMost}, false);
    EXPECT_FALSE(tile->hovered);
}

}  // namespace
}  // namespace Corvanta::Video
