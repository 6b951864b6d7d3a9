#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/MenuTestBase.h"
#include "ui/Menu.h"

namespace Corvanta::UI {
namespace {

using ::testing::ElementsAre;
using Testing::kFirstRow;
using Testing::kMenuWidth;
using Testing::kRow;
using Testing::kSomeIcon;

// The plate of five rows is 256 high: its bottom line is 306.
class MenuScrollTest : public Testing::MenuTestBase {
protected:
    std::unique_ptr<Menu> MakeScrollable(int rows) {
        auto menu = MakeMenu();
        rows_ = AddRows(*menu, rows);
        menu->SetScrollable(true);
        Open(*menu);
        return menu;
    }

    std::vector<Button*> rows_;
};

TEST_F(MenuScrollTest, HasNoBarWithFiveRows) {
    const auto menu = MakeScrollable(5);
    Draw(*menu);
    EXPECT_FALSE(menu->GetScrollbar().visible);
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 256}));
    EXPECT_EQ(menu->GetItemWidth(), kMenuWidth);
}

TEST_F(MenuScrollTest, ShowsFiveRowsAndABarOfSix) {
    const auto menu = MakeScrollable(6);
    Draw(*menu);
    EXPECT_TRUE(menu->GetScrollbar().visible);
    EXPECT_EQ(menu->GetItemWidth(), 292);
    for (const Button* row : rows_) EXPECT_EQ(row->width, 292);
    // In the frame in which it appears the bar stands beside the rows' old width.
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, 308, 256}));
    EXPECT_EQ(menu->GetScrollbar().rect, (SDL_Rect{400, 50, 8, 215}));
    Draw(*menu);
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 256}));
    EXPECT_EQ(menu->GetScrollbar().rect, (SDL_Rect{392, 50, 8, 215}));
    EXPECT_EQ(menu->GetItemWidth(), 292);
    EXPECT_EQ(rows_[0]->rect, (SDL_Rect{100, 58, 292, kRow}));
}

TEST_F(MenuScrollTest, GivesTheWidthBackWhenARowGoes) {
    const auto menu = MakeScrollable(6);
    Draw(*menu);
    Draw(*menu);
    menu->RemoveItem(rows_[5]);
    EXPECT_EQ(menu->GetItemWidth(), 292);
    Draw(*menu);
    EXPECT_EQ(menu->GetItemWidth(), kMenuWidth);
    EXPECT_EQ(rows_[0]->width, kMenuWidth);
    EXPECT_FALSE(menu->GetScrollbar().visible);
    Draw(*menu);
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 256}));
    menu->InsertItem(rows_[5], 5);
    Draw(*menu);
    EXPECT_EQ(menu->GetItemWidth(), 292);
}

TEST_F(MenuScrollTest, TellsARowThatIsScrolledOutWhereTheMouseIs) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Scroll(*menu, 1000);
    Draw(*menu);
    EXPECT_FALSE(rows_[0]->hovered);
    menu->OnHover(kFirstRow);
    EXPECT_TRUE(rows_[0]->hovered);
    menu->OnHover({kFirstRow.x, kFirstRow.y + 2 * kRow});
    EXPECT_FALSE(rows_[0]->hovered);
}

TEST_F(MenuScrollTest, CutsTheLastRowAtTheBottomLine) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    EXPECT_EQ(rows_[4]->rect.y, 250);
    EXPECT_EQ(rows_[5]->rect.y, 298);
    // Wholly outside, it is not drawn.
    EXPECT_EQ(rows_[6]->rect.w, 0);
    // Six icons and the bar's three pieces; of the sixth nothing is left inside the line.
    ASSERT_EQ(Copies().size(), 9U);
    EXPECT_TRUE(Copies()[5].cut);
    EXPECT_LE(Copies()[5].destination.h, 0);
    EXPECT_FALSE(Copies()[4].cut);
    menu->GetScrollbar().Move({0, 5}, true);
    Draw(*menu);
    // 5 of 70 pixels of travel are 6.86 of 96.
    EXPECT_EQ(rows_[5]->rect.y, 292);
}

TEST_F(MenuScrollTest, ScrollsToTheVeryEnd) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Scroll(*menu, 1000);
    Draw(*menu);
    // 96 pixels up.
    EXPECT_EQ(rows_[6]->rect, (SDL_Rect{100, 250, 292, kRow}));
    EXPECT_EQ(rows_[2]->rect.y, 58);
    EXPECT_EQ(rows_[1]->rect.y, 10);
    EXPECT_EQ(rows_[0]->rect.y, 58);  // as it was last drawn
}

TEST_F(MenuScrollTest, HoversARowThatIsScrolledOutWhereItWasDrawnLast) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    EXPECT_TRUE(rows_[0]->hovered);
    Scroll(*menu, 1000);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    EXPECT_TRUE(rows_[0]->hovered);
    EXPECT_TRUE(rows_[2]->hovered);
}

TEST_F(MenuScrollTest, KeepsTheClipLinesOfARow) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Scroll(*menu, 1000);
    Draw(*menu);
    Scroll(*menu, -1000);
    // At another place the second row crosses no line, but it still has those of the menu's old place.
    Draw(*menu, {100, -20});
    Draw(*menu, {100, -20});
    EXPECT_EQ(rows_[1]->rect.y, 36);
    bool secondIsCut = false;
    for (const auto& copy : Copies()) {
        secondIsCut |= copy.cut && copy.destination == SDL_Rect{124, 50, 24, 22};
    }
    EXPECT_TRUE(secondIsCut);
}

TEST_F(MenuScrollTest, GivesTheBarTheClickAndTheDrag) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Draw(*menu);
    VideoScrollbar& bar = menu->GetScrollbar();
    const SDL_Point onThumb{395, 60};
    menu->OnHover(onThumb);
    EXPECT_TRUE(bar.hovered);
    EXPECT_TRUE(menu->OnClick());
    EXPECT_TRUE(bar.IsDragging());
    menu->OnHover({395, 80});
    EXPECT_EQ(bar.rect.y, 70);
    menu->OnHover({20, 70});
    EXPECT_EQ(bar.rect.y, 60);
    bar.EndDrag();
    menu->OnHover({20, 90});
    EXPECT_EQ(bar.rect.y, 60);
    EXPECT_FALSE(bar.hovered);
}

TEST_F(MenuScrollTest, GivesTheRowsTheClickWhileTheBarIsNotShown) {
    const auto menu = MakeMenu();
    int clicks = 0;
    menu->AddButton(kSomeIcon, "", [&clicks] { ++clicks; });
    Open(*menu);
    Draw(*menu, {0, -8});
    // Where a bar that was never laid out thinks it is.
    menu->OnHover({3, 3});
    EXPECT_TRUE(menu->OnClick());
    EXPECT_EQ(clicks, 1);
}

TEST_F(MenuScrollTest, KeepsTheBarAtTheMenusTop) {
    const auto menu = MakeScrollable(7);
    Draw(*menu, {100, 50});
    EXPECT_EQ(menu->GetScrollbar().GetTrackStart(), 50);
    Draw(*menu, {100, 70});
    EXPECT_EQ(menu->GetScrollbar().GetTrackStart(), 70);
}

TEST_F(MenuScrollTest, StaysUnscrolledWithoutABar) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Scroll(*menu, 1000);
    Draw(*menu);
    menu->SetScrollable(false);
    Draw(*menu);
    EXPECT_EQ(rows_[0]->rect.y, 58);
    EXPECT_EQ(rows_[6]->rect.y, 346);
    EXPECT_EQ(menu->rect.h, 352);
}

TEST_F(MenuScrollTest, SlidesItsPlateButNotItsBar) {
    const auto menu = MakeScrollable(7);
    Draw(*menu);
    Draw(*menu);
    menu->SetVisible(true);
    Draw(*menu);
    // Seven rows of 48 above.
    EXPECT_THAT(Fills(), ElementsAre(SDL_Rect{100, -286, kMenuWidth, 256}));
    EXPECT_EQ(menu->GetScrollbar().rect.y, 50);
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 256}));
}

}  // namespace
}  // namespace Corvanta::UI
