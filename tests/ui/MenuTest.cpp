#include "ui/Menu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/MenuTestBase.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::CentreOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kFirstRow;
using Testing::kMenuWidth;
using Testing::kRow;
using Testing::kSomeIcon;
using Testing::StandingClock;

using MenuTest = Testing::MenuTestBase;

TEST_F(MenuTest, IsClosedAtFirst) {
    const auto menu = MakeMenu();
    EXPECT_FALSE(menu->visible);
    EXPECT_EQ(menu->width, kMenuWidth);
    EXPECT_EQ(menu->height, 0);
    EXPECT_EQ(menu->GetItemWidth(), kMenuWidth);
    EXPECT_EQ(menu->GetItemHeight(), 48);
    EXPECT_FALSE(menu->IsScrollable());
    EXPECT_TRUE(menu->GetScrollbar().GetVertical());
    EXPECT_EQ(menu->GetAnchorElement(), nullptr);
}

TEST_F(MenuTest, HasItsRectInPlaceAlsoWhileClosed) {
    const auto menu = MakeMenu();
    AddRows(*menu, 3);
    Draw(*menu);
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 160}));
    EXPECT_THAT(Fills(), IsEmpty());
    EXPECT_THAT(Copies(), IsEmpty());
}

TEST_F(MenuTest, ListsItsRowsOnAPlateOfItsColour) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 3);
    Open(*menu);
    Draw(*menu);
    EXPECT_THAT(Fills(), ElementsAre(SDL_Rect{100, 50, kMenuWidth, 160}));
    EXPECT_TRUE(PixelIs(Read(), 100, 50, 0xFF336699));
    EXPECT_TRUE(PixelIs(Read(), 399, 209, 0xFF336699));
    EXPECT_EQ(rows[0]->rect, (SDL_Rect{100, 58, kMenuWidth, kRow}));
    EXPECT_EQ(rows[1]->rect, (SDL_Rect{100, 106, kMenuWidth, kRow}));
    EXPECT_EQ(rows[2]->rect, (SDL_Rect{100, 154, kMenuWidth, kRow}));
    EXPECT_EQ(menu->height, 144);
    EXPECT_EQ(DrawColour().a, 0);
}

TEST_F(MenuTest, TruncatesTheHalvesOfOddRows) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 2);
    menu->SetItemHeight(25);
    Open(*menu);
    Draw(*menu);
    EXPECT_EQ(menu->rect.h, 58);
    EXPECT_EQ(rows[0]->rect, (SDL_Rect{100, 54, kMenuWidth, 25}));
    EXPECT_EQ(rows[1]->rect, (SDL_Rect{100, 79, kMenuWidth, 25}));
}

TEST_F(MenuTest, IsTwoRowsAndAPixelHighWithADividerBetween) {
    const auto menu = MakeMenu();
    const Button* const first = AddRow(*menu);
    const Divider* const divider = menu->AddDivider();
    const Button* const second = AddRow(*menu);
    EXPECT_EQ(menu->height, 97);
    EXPECT_EQ(divider->width, kMenuWidth);
    EXPECT_EQ(divider->height, 1);
    Open(*menu);
    Draw(*menu);
    EXPECT_EQ(menu->rect.h, 113);
    EXPECT_EQ(first->rect.y, 58);
    EXPECT_EQ(divider->rect, (SDL_Rect{100, 106, kMenuWidth, 1}));
    EXPECT_EQ(second->rect.y, 106);
}

TEST_F(MenuTest, CountsADividerAlsoWhenItIsTakenOut) {
    const auto menu = MakeMenu();
    AddRow(*menu);
    Divider* const divider = menu->AddDivider();
    AddRow(*menu);
    menu->RemoveItem(divider);
    EXPECT_EQ(menu->height, 2 * kRow - (kRow - 1));
}

TEST_F(MenuTest, IgnoresAnItemThatIsNone) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 2);
    menu->InsertItem(nullptr, 1);
    EXPECT_THAT(menu->GetItems(), ElementsAre(rows[0], rows[1]));
    menu->SetScale(1.5F);
    Open(*menu);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    menu->ReleaseTextures();
}

TEST_F(MenuTest, MakesRowsWithTheLabelBesideTheIcon) {
    const auto menu = MakeMenu();
    const Button* const button = menu->AddButton(kSomeIcon, "Some label", [] {});
    const ToggleButton* const toggle = menu->AddToggleButton(
        {.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Off", .onLabel = "On"});
    EXPECT_EQ(button->width, kMenuWidth);
    EXPECT_EQ(button->height, kRow);
    EXPECT_EQ(toggle->width, kMenuWidth);
    EXPECT_EQ(toggle->height, kRow);
    Open(*menu);
    Draw(*menu);
    // Icon, label, the toggle's label and its icon.
    ASSERT_EQ(Copies().size(), 4U);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{124, 70, 24, 24}));
    EXPECT_EQ(Copies()[1].destination.x, 172);
    EXPECT_EQ(Copies()[2].destination.x, 172);
    EXPECT_EQ(Copies()[3].destination, (SDL_Rect{124, 118, 24, 24}));
}

TEST_F(MenuTest, MarksAHoveredRowWithTheRowColour) {
    const auto menu = MakeMenu();
    AddRow(*menu);
    menu->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon});
    Open(*menu);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    Draw(*menu);
    EXPECT_THAT(Fills(), ElementsAre(menu->rect, SDL_Rect{100, 58, kMenuWidth, kRow}));
    // White with an alpha of 20, and of 30 on a toggle.
    EXPECT_TRUE(PixelIs(Read(), 390, 60, 0xFF4372A1, 1));
    menu->OnHover({250, 130});
    Draw(*menu);
    EXPECT_TRUE(PixelIs(Read(), 390, 110, 0xFF4B78A5, 1));
}

TEST_F(MenuTest, WritesBoldLabelsUnlessToldOtherwise) {
    const auto menu = MakeMenu();
    menu->AddButton(kSomeIcon, "Bold", [] {});
    menu->SetRegularLabels(true);
    menu->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Regular"});
    Open(*menu);
    Draw(*menu);
    std::vector<std::string> fonts;
    for (const auto& call : Testing::Calls().Of("TTF_OpenFont")) {
        fonts.push_back(call.arguments[0] + " " + call.arguments[1]);
    }
    // 0.36 and 0.34 of a row.
    EXPECT_THAT(fonts, ElementsAre(".//fonts/FKGrotesk-Bolder.ttf 17", ".//fonts/FKGrotesk-Regular.ttf 16"));
}

TEST_F(MenuTest, ComesDownFromAbove) {
    const auto menu = MakeMenu(MenuDirection::FromAbove);
    const auto rows = AddRows(*menu, 3);
    menu->SetVisible(true);
    Draw(*menu);
    EXPECT_THAT(Fills(), ElementsAre(SDL_Rect{100, -94, kMenuWidth, 160}));
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 160}));
    StandingClock::TurnMs(62);
    Draw(*menu);
    // 72.576 above, truncated toward zero.
    EXPECT_THAT(Fills(), ElementsAre(SDL_Rect{100, -22, kMenuWidth, 160}));
    // The first row is still above the rest place's top line, and the second is cut at it.
    EXPECT_EQ(rows[0]->rect.w, 0);
    EXPECT_EQ(rows[1]->rect, (SDL_Rect{100, 34, kMenuWidth, kRow}));
    ASSERT_EQ(Copies().size(), 2U);
    EXPECT_TRUE(Copies()[0].cut);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{124, 50, 24, 20}));
    EXPECT_FALSE(Copies()[1].cut);
    StandingClock::TurnMs(62);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 48);
    StandingClock::TurnMs(1);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 50);
}

TEST_F(MenuTest, ComesUpFromBelow) {
    const auto menu = MakeMenu(MenuDirection::FromBelow);
    const auto rows = AddRows(*menu, 3);
    menu->SetVisible(true);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 194);
    StandingClock::TurnMs(62);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 122);
    // The line below is the rest place's: 210.
    EXPECT_EQ(rows[0]->rect.y, 130);
    EXPECT_EQ(rows[1]->rect.y, 178);
    EXPECT_EQ(rows[2]->rect.w, 0);
    ASSERT_EQ(Copies().size(), 2U);
    EXPECT_FALSE(Copies()[0].cut);
    EXPECT_TRUE(Copies()[1].cut);
    // 0.83 of the icon's 24 pixels from 190 on.
    EXPECT_EQ(Copies()[1].destination, (SDL_Rect{124, 190, 24, 20}));
    StandingClock::TurnMs(63);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 50);
}

TEST_F(MenuTest, StandsStillWithAnyOtherDirection) {
    const auto menu = MakeMenu(static_cast<MenuDirection>(2));
    AddRows(*menu, 3);
    menu->SetVisible(true);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 50);
}

TEST_F(MenuTest, BeginsItsSlideAgainWhenShownAgain) {
    const auto menu = MakeMenu();
    AddRows(*menu, 3);
    menu->SetVisible(true);
    StandingClock::TurnMs(62);
    menu->SetVisible(true);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, -94);
    StandingClock::TurnMs(200);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 50);
    menu->SetVisible(true);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, -94);
}

TEST_F(MenuTest, CountsWholeMillisecondsOfItsSlide) {
    const auto menu = MakeMenu();
    AddRows(*menu, 3);
    menu->SetVisible(true);
    StandingClock::TurnNs(125'000'000 - 1);
    Draw(*menu);
    EXPECT_EQ(Fills()[0].y, 48);
}

TEST_F(MenuTest, ClosesAtOnce) {
    const auto menu = MakeMenu();
    AddRows(*menu, 3);
    Open(*menu);
    Draw(*menu);
    menu->SetVisible(false);
    Draw(*menu);
    EXPECT_THAT(Fills(), IsEmpty());
    EXPECT_EQ(menu->rect, (SDL_Rect{100, 50, kMenuWidth, 160}));
}

TEST_F(MenuTest, KeepsItsItemsStatesWhileClosed) {
    const auto menu = MakeMenu();
    ToggleButton* const toggle =
        menu->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .onToggledOn = [] {}});
    toggle->OnClick();
    Open(*menu);
    menu->SetVisible(false);
    Open(*menu);
    EXPECT_TRUE(toggle->IsToggled());
}

TEST_F(MenuTest, LeavesAnItemThatIsThereWhereItIs) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 3);
    menu->InsertItem(rows[2], 0);
    EXPECT_THAT(menu->GetItems(), ElementsAre(rows[0], rows[1], rows[2]));
    EXPECT_EQ(menu->height, 144);
}

TEST_F(MenuTest, TakesItemsOutAndPutsThemBack) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 3);
    menu->RemoveItem(rows[1]);
    EXPECT_THAT(menu->GetItems(), ElementsAre(rows[0], rows[2]));
    EXPECT_EQ(menu->height, 96);
    menu->RemoveItem(rows[1]);
    EXPECT_EQ(menu->height, 96);
    menu->InsertItem(rows[1], 0);
    EXPECT_THAT(menu->GetItems(), ElementsAre(rows[1], rows[0], rows[2]));
    menu->RemoveItem(rows[0]);
    menu->InsertItem(rows[0], 2);
    EXPECT_THAT(menu->GetItems(), ElementsAre(rows[1], rows[2], rows[0]));
    EXPECT_EQ(menu->height, 144);
    // Beyond the end is the end.
    Button other(kMenuWidth, kRow, LabelPlace::Beside, ButtonStyle::Row);
    menu->InsertItem(&other, 99);
    EXPECT_EQ(menu->GetItems().back(), &other);
    menu->RemoveItem(&other);
}

TEST_F(MenuTest, KeepsASecondListForItsOwner) {
    const auto menu = MakeMenu();
    const auto rows = AddRows(*menu, 3);
    menu->AddTrackedItem(rows[2]);
    menu->AddTrackedItem(rows[0]);
    menu->RemoveItem(rows[0]);
    EXPECT_THAT(menu->GetTrackedItems(), ElementsAre(rows[2], rows[0]));
    menu->SetAnchorElement(rows[1]);
    EXPECT_EQ(menu->GetAnchorElement(), rows[1]);
}

TEST_F(MenuTest, ScalesRowsButNotItsDividersHeights) {
    const auto menu = MakeMenu();
    const Button* const row = AddRow(*menu);
    const Divider* const divider = menu->AddDivider();
    menu->SetScale(1.5F);
    EXPECT_EQ(menu->width, 450);
    EXPECT_EQ(menu->GetItemWidth(), 450);
    EXPECT_EQ(menu->GetItemHeight(), 72);
    EXPECT_EQ(row->width, 450);
    EXPECT_EQ(row->height, 72);
    EXPECT_EQ(divider->width, 450);
    EXPECT_EQ(divider->height, 1);
    EXPECT_EQ(menu->height, 73);
    menu->SetScale(1.0F);
    EXPECT_EQ(menu->width, kMenuWidth);
    EXPECT_EQ(menu->GetItemHeight(), 48);
    EXPECT_EQ(row->height, 48);
    EXPECT_EQ(divider->height, 1);
}

TEST_F(MenuTest, TruncatesItsScaledSizes) {
    const auto menu = MakeMenu();
    // The width in single precision: 344.99999 becomes 345.
    menu->SetScale(1.15F);
    EXPECT_EQ(menu->width, 345);
    EXPECT_EQ(menu->GetItemHeight(), 55);
}

TEST_F(MenuTest, GivesNewItemsTheSizesThatItHas) {
    const auto menu = MakeMenu();
    menu->SetScale(2.0F);
    const Button* const row = AddRow(*menu);
    EXPECT_EQ(row->width, 600);
    EXPECT_EQ(row->height, 96);
    EXPECT_EQ(menu->AddDivider()->width, 600);
}

TEST_F(MenuTest, GivesAClickToTheFirstHoveredItem) {
    const auto menu = MakeMenu();
    std::vector<int> clicks;
    for (int i = 0; i < 3; ++i) menu->AddButton(kSomeIcon, "", [&clicks, i] { clicks.push_back(i); });
    EXPECT_FALSE(menu->OnClick());
    Open(*menu);
    Draw(*menu);
    menu->OnHover({kFirstRow.x, kFirstRow.y + kRow});
    EXPECT_TRUE(menu->hovered);
    EXPECT_TRUE(menu->OnClick());
    EXPECT_THAT(clicks, ElementsAre(1));
    // On the padding the menu is hovered and no row is.
    menu->OnHover({250, 52});
    EXPECT_TRUE(menu->hovered);
    EXPECT_FALSE(menu->OnClick());
    menu->OnHover({99, kFirstRow.y});
    EXPECT_FALSE(menu->hovered);
    EXPECT_FALSE(menu->OnClick());
    EXPECT_EQ(clicks.size(), 1U);
}

TEST_F(MenuTest, TakesAClickOnADivider) {
    const auto menu = MakeMenu();
    AddRow(*menu);
    Divider* const divider = menu->AddDivider();
    Open(*menu);
    Draw(*menu);
    menu->OnHover(CentreOf(*divider));
    EXPECT_TRUE(divider->hovered);
    EXPECT_TRUE(menu->OnClick());
}

TEST_F(MenuTest, RaisesOnAClickWithoutAFunction) {
    const auto menu = MakeMenu();
    menu->AddButton(kSomeIcon, "", {});
    Open(*menu);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    EXPECT_THROW(menu->OnClick(), std::bad_function_call);
}

TEST_F(MenuTest, MayBeDestroyedByAClick) {
    auto menu = MakeMenu();
    menu->AddButton(kSomeIcon, "", [&menu] { menu.reset(); });
    Open(*menu);
    Draw(*menu);
    menu->OnHover(kFirstRow);
    EXPECT_TRUE(menu->OnClick());
    EXPECT_EQ(menu, nullptr);
}

TEST_F(MenuTest, LetsAClickTakeItsItemAway) {
    const auto menu = MakeMenu();
    Button* own = nullptr;
    own = menu->AddButton(kSomeIcon, "", [&] { menu->RemoveItem(own); });
    std::unique_ptr<Button> borrowed;
    borrowed = std::make_unique<Button>(Renderer(), Button::Options{.width = kMenuWidth,
                                                                    .height = kRow,
                                                                    .iconName = kSomeIcon,
                                                                    .label = "",
                                                                    .onClick =
                                                                        [&] {
                                                                            menu->RemoveItem(borrowed.get());
                                                                            borrowed.reset();
                                                                        },
                                                                    .labelPlace = LabelPlace::Beside,
                                                                    .style = ButtonStyle::Row,
                                                                    .tooltip = "",
                                                                    .hoverIconName = ""});
    menu->InsertItem(borrowed.get(), 1);
    Open(*menu);
    for (int left = 1; left >= 0; --left) {
        Draw(*menu);
        menu->OnHover(kFirstRow);
        EXPECT_TRUE(menu->OnClick());
        EXPECT_EQ(menu->GetItems().size(), static_cast<size_t>(left));
    }
    EXPECT_EQ(borrowed, nullptr);
    Draw(*menu);
    EXPECT_EQ(menu->rect.h, 16);
}

TEST_F(MenuTest, ComesBackOnAnotherRenderer) {
    const auto menu = MakeMenu();
    menu->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Off"});
    menu->AddDivider();
    for (int i = 0; i < 6; ++i) menu->AddButton(kSomeIcon, "Label", [] {});
    Button* const out = menu->AddButton(kSomeIcon, "Out", [] {});
    menu->SetScrollable(true);
    Open(*menu);
    Draw(*menu);
    Draw(*menu);
    menu->RemoveItem(out);
    Draw(*menu);
    const auto before = Read();
    menu->ReleaseTextures();
    ReleaseRendererTextures(Renderer());
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 0U);
    ReplaceRenderer();
    Draw(*menu);
    EXPECT_TRUE(SamePicture(Read(), before));
    menu->InsertItem(out, 0);
    Draw(*menu);
}

TEST_F(MenuTest, DrawsNothingWrongAtAnySize) {
    for (const int width : {0, -300, 30'000}) {
        for (const int height : {0, 1, -48, 30'000}) {
            SCOPED_TRACE(::testing::Message() << width << " x " << height);
            Menu menu(Renderer(), MenuDirection::FromBelow, width, 0xFF424242);
            AddRows(menu, 7);
            menu.AddDivider();
            menu.SetItemHeight(height);
            for (const bool scrollable : {false, true, false}) {
                menu.SetScrollable(scrollable);
                menu.SetVisible(true);
                for (int i = 0; i < 3; ++i) {
                    Draw(menu);
                    menu.OnHover(kFirstRow);
                    Scroll(menu, 10);
                    StandingClock::TurnMs(60);
                }
            }
            menu.SetScale(0.0F);
            Draw(menu);
            menu.SetScale(-1.0F);
            Draw(menu);
        }
    }
}

}  // namespace
}  // namespace Corvanta::UI
