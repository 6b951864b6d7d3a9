#include "ui/ButtonBar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "tests/ui/BarTest.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/TextCalls.h"

namespace Corvanta::UI {
namespace {

using Testing::CentreOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kBarHeight;
using Testing::kBarMiddleY;
using Testing::kBarWidth;
using Testing::kSomeIcon;
using Testing::SlotElement;

using ButtonBarTest = Testing::BarTest;

TEST_F(ButtonBarTest, IsVisibleAndOfItsSizeFromTheStart) {
    const auto bar = MakeBar("Room");
    EXPECT_TRUE(bar->visible);
    EXPECT_EQ(bar->width, kBarWidth);
    EXPECT_EQ(bar->height, kBarHeight);
    EXPECT_EQ(bar->GetTitle(), "Room");
    EXPECT_TRUE(bar->IsAutoHide());
    EXPECT_EQ(bar->GetTag(), -1);
}

TEST_F(ButtonBarTest, DrawsItsBackgroundWithNothingInIt) {
    const auto bar = MakeBar();
    Draw(*bar);
    EXPECT_THAT(Fills(), ElementsAre(SDL_Rect{0, 600, kBarWidth, kBarHeight}));
    EXPECT_EQ(bar->rect, (SDL_Rect{0, 600, kBarWidth, kBarHeight}));
    EXPECT_EQ(DrawColour().a, 0);
}

TEST_F(ButtonBarTest, DarkensWhatLiesUnderIt) {
    const auto bar = MakeBar("", 100);
    SDL_SetRenderDrawColor(Renderer(), 255, 255, 255, 255);
    SDL_RenderFillRect(Renderer(), nullptr);
    bar->Render(Renderer(), {10, 20});
    // Black with an alpha of 100 over white.
    EXPECT_TRUE(AreaIs(Read(), {10, 20, 100, kBarHeight}, 0xFF9B9B9B, 1));
    EXPECT_TRUE(PixelIs(Read(), 9, 20, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(Read(), 110, 20, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(Read(), 10, 19, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(Read(), 10, 105, 0xFFFFFFFF));
}

TEST_F(ButtonBarTest, LaysItsThreeGroupsOut) {
    const auto bar = MakeBar();
    const auto left = AddToggles(*bar, BarGroup::Left, 2);
    const auto centre = AddToggles(*bar, BarGroup::Centre, 3);
    const auto right = AddToggles(*bar, BarGroup::Right, 4);
    Draw(*bar);
    EXPECT_FALSE(bar->IsCompact());
    EXPECT_THAT(Middles(left), ElementsAre(SDL_Point{46, kBarMiddleY}, SDL_Point{92, kBarMiddleY}));
    EXPECT_THAT(Middles(centre), ElementsAre(SDL_Point{574, kBarMiddleY}, SDL_Point{640, kBarMiddleY},
                                             SDL_Point{706, kBarMiddleY}));
    EXPECT_THAT(Middles(right), ElementsAre(SDL_Point{1234, kBarMiddleY}, SDL_Point{1174, kBarMiddleY},
                                            SDL_Point{1126, kBarMiddleY}, SDL_Point{1078, kBarMiddleY}));
}

TEST_F(ButtonBarTest, LaysOutAnewInEachFrame) {
    const auto bar = MakeBar();
    const auto centre = AddToggles(*bar, BarGroup::Centre, 2);
    const auto right = AddToggles(*bar, BarGroup::Right, 1);
    Draw(*bar);
    bar->SetWidth(800);
    bar->height = 100;
    Draw(*bar, {10, 0});
    EXPECT_THAT(Middles(centre), ElementsAre(SDL_Point{371, 50}, SDL_Point{449, 50}));
    EXPECT_EQ(CentreOf(*right[0]), (SDL_Point{746, 50}));
}

TEST_F(ButtonBarTest, KeepsHalfOfEachOfTwoRightNeighboursApart) {
    const auto bar = MakeBar();
    AddToggles(*bar, BarGroup::Right, 2);
    Button* const wide = bar->AddButton(
        kSomeIcon, "", [] {}, BarGroup::Right, ButtonStyle::Plain, "");
    Button* const last = AddToggle(*bar, BarGroup::Right);
    // Each half is truncated.
    wide->SetWidth(69);
    last->SetWidth(29);
    Draw(*bar);
    EXPECT_EQ(CentreOf(*wide).x, 1174 - (14 + 34 + 20));
    EXPECT_EQ(CentreOf(*last).x, 1106 - (34 + 14 + 20));
}

TEST_F(ButtonBarTest, UsesTheWidthThatALabelHasJustGivenAButton) {
    const auto bar = MakeBar();
    AddToggle(*bar, BarGroup::Right);
    ToggleButton* const labelled = bar->AddToggleButton({.offIconName = kSomeIcon,
                                                         .onIconName = kSomeIcon,
                                                         .offLabel = "A label wider than its button",
                                                         .showLabel = true},
                                                        BarGroup::Right);
    const ToggleButton* const next = AddToggle(*bar, BarGroup::Right);
    Draw(*bar);
    ASSERT_GT(labelled->width, 28);
    EXPECT_EQ(CentreOf(*next).x, 1174 - (labelled->width / 2 + 14 + 20));
}

TEST_F(ButtonBarTest, PutsTheRecordButtonBehindTheFirstRightOne) {
    const auto bar = MakeBar();
    auto slot = std::make_unique<SlotElement>(63);
    const SlotElement* const record = slot.get();
    bar->SetRecordButton(std::move(slot));
    Draw(*bar);
    EXPECT_EQ(record->lastPosition, (SDL_Point{1194, kBarMiddleY}));
    const auto right = AddToggles(*bar, BarGroup::Right, 3);
    Draw(*bar);
    EXPECT_EQ(record->renders, 2);
    EXPECT_EQ(record->lastPosition, (SDL_Point{1194, kBarMiddleY}));
    EXPECT_EQ(CentreOf(*right[0]).x, 1234);
    EXPECT_EQ(CentreOf(*right[1]).x, 1091);
    EXPECT_EQ(CentreOf(*right[2]).x, 1043);
    bar->SetRecordButton(nullptr);
    Draw(*bar);
    EXPECT_EQ(CentreOf(*right[1]).x, 1174);
}

TEST_F(ButtonBarTest, CountsTheRecordButtonsWidthAmongWhatMustFit) {
    // Three centre buttons need 264; 63 more is 327, and the title space is enough from 356 on.
    const auto bar = MakeBar("", 360);
    AddToggles(*bar, BarGroup::Centre, 3);
    Draw(*bar);
    EXPECT_FALSE(bar->IsCompact());
    bar->SetRecordButton(std::make_unique<SlotElement>(97));
    Draw(*bar);
    // Its width is known once it was drawn.
    EXPECT_FALSE(bar->IsCompact());
    Draw(*bar);
    EXPECT_TRUE(bar->IsCompact());
    bar->SetRecordButton(std::make_unique<SlotElement>(96));
    Draw(*bar);
    Draw(*bar);
    EXPECT_FALSE(bar->IsCompact());
}

TEST_F(ButtonBarTest, GoesCompactWithLessTitleSpaceThanTheLeftGap) {
    // Everything would fit into 264 pixels.
    const auto bar = MakeBar("", 356);
    AddToggles(*bar, BarGroup::Centre, 3);
    Draw(*bar);
    EXPECT_FALSE(bar->IsCompact());
    bar->SetWidth(354);
    Draw(*bar);
    EXPECT_TRUE(bar->IsCompact());
    bar->SetWidth(356);
    Draw(*bar);
    EXPECT_FALSE(bar->IsCompact());
}

TEST_F(ButtonBarTest, DrawsTheCompactSetAloneInTheMiddle) {
    const auto bar = MakeBar("Title", 300);
    const auto centre = AddToggles(*bar, BarGroup::Centre, 4);
    ToggleButton* const other = AddToggle(*bar, static_cast<BarGroup>(0));
    bar->AddCompactButton(centre[2]);
    bar->AddCompactButton(other);
    bar->SetRecordButton(std::make_unique<SlotElement>(63));
    Draw(*bar, {10, 600});
    ASSERT_TRUE(bar->IsCompact());
    // 150 - (2 * 66 - 52) / 2 + 20 + 10
    EXPECT_EQ(CentreOf(*centre[2]), (SDL_Point{140, kBarMiddleY}));
    EXPECT_EQ(CentreOf(*other), (SDL_Point{206, kBarMiddleY}));
    EXPECT_EQ(centre[0]->rect, (SDL_Rect{0, 0, 0, 0}));
    EXPECT_EQ(Copies().size(), 2U);
}

TEST_F(ButtonBarTest, DrawsNoButtonOfAnotherGroup) {
    const auto bar = MakeBar();
    const ToggleButton* const stray = AddToggle(*bar, static_cast<BarGroup>(703));
    Draw(*bar);
    EXPECT_EQ(stray->rect, (SDL_Rect{0, 0, 0, 0}));
}

TEST_F(ButtonBarTest, GivesButtonsFourFifthsAndTogglesAThirdOfItsHeight) {
    const auto bar = MakeBar();
    const Button* const button = bar->AddButton(
        kSomeIcon, "Label", [] {}, BarGroup::Left, ButtonStyle::Plain, "Tip");
    const ToggleButton* const toggle = AddToggle(*bar, BarGroup::Left);
    EXPECT_EQ(button->width, 68);
    EXPECT_EQ(button->height, 68);
    EXPECT_EQ(button->GetLabel(), "Label");
    EXPECT_EQ(toggle->width, 28);
    EXPECT_EQ(toggle->height, 28);
}

TEST_F(ButtonBarTest, PutsLabelsBelowTheIcons) {
    const auto bar = MakeBar();
    // Beside an icon a long label would not widen its button.
    const Button* const button = bar->AddButton(
        kSomeIcon, "A label that is wider than its button", [] {}, BarGroup::Left, ButtonStyle::Plain, "");
    Draw(*bar);
    EXPECT_GT(button->width, 68);
}

TEST_F(ButtonBarTest, ShowsAToggledButtonsTooltip) {
    const auto bar = MakeBar();
    bar->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Tip"},
                         BarGroup::Left);
    Draw(*bar);
    bar->OnHover({46, kBarMiddleY});
    Draw(*bar);
    EXPECT_THAT(Testing::RasterisedTexts(), ElementsAre("Tip"));
}

TEST_F(ButtonBarTest, KeepsTheTooltipsOfItsButtonsAwayUntilTheyAreAllowed) {
    const auto bar = MakeBar();
    bar->AddButton(
        kSomeIcon, "", [] {}, BarGroup::Left, ButtonStyle::Plain, "Tip");
    EXPECT_TRUE(bar->AreTooltipsAllowed());
    bar->SetTooltipsAllowed(false);
    EXPECT_FALSE(bar->AreTooltipsAllowed());
    Draw(*bar);
    bar->OnHover({46, kBarMiddleY});
    Draw(*bar);
    EXPECT_THAT(Testing::RasterisedTexts(), IsEmpty());
    bar->SetTooltipsAllowed(true);
    Draw(*bar);
    EXPECT_THAT(Testing::RasterisedTexts(), ElementsAre("Tip"));
}

TEST_F(ButtonBarTest, HoldsButtonsThatComeLaterToWhatItsTooltipsMay) {
    const auto bar = MakeBar();
    ToggleButton borrowedCompact(Renderer(), {});
    ToggleButton borrowedRight(Renderer(), {});
    bar->SetTooltipsAllowed(false);
    const std::vector<const Button*> added{
        AddToggle(*bar, BarGroup::Centre), AddToggle(*bar, static_cast<BarGroup>(0)),
        bar->AddButton(
            kSomeIcon, "", [] {}, BarGroup::Right, ButtonStyle::Plain, "Tip"),
        &borrowedCompact, &borrowedRight};
    bar->AddCompactButton(&borrowedCompact);
    bar->UpdateRightGroup({{&borrowedRight, true}});
    for (const Button* button : added) EXPECT_FALSE(button->IsTooltipAllowed());
    bar->SetTooltipsAllowed(true);
    for (const Button* button : added) EXPECT_TRUE(button->IsTooltipAllowed());
}

TEST_F(ButtonBarTest, GivesAButtonThatComesBackTheSizeOfTheOthers) {
    const auto bar = MakeBar();
    ToggleButton* const optional = AddToggle(*bar, BarGroup::Right);
    bar->UpdateRightGroup({{optional, false}});
    bar->SetHeight(100);
    EXPECT_EQ(optional->width, 28);
    bar->UpdateRightGroup({{optional, true}});
    EXPECT_EQ(optional->width, 55);
    EXPECT_EQ(optional->height, 52);
}

TEST_F(ButtonBarTest, ClicksAButtonThatStartsToggledBeforeItIsReturned) {
    const auto bar = MakeBar();
    int on = 0;
    int off = 0;
    ToggleButton* const button = bar->AddToggleButton({.offIconName = kSomeIcon,
                                                       .onIconName = kSomeIcon,
                                                       .onToggledOn = [&on] { ++on; },
                                                       .onToggledOff = [&off] { ++off; },
                                                       .startToggled = true},
                                                      BarGroup::Right);
    EXPECT_EQ(on, 1);
    EXPECT_EQ(off, 0);
    EXPECT_TRUE(button->IsToggled());
    EXPECT_FALSE(AddToggle(*bar, BarGroup::Right)->IsToggled());
}

TEST_F(ButtonBarTest, RaisesOnAStartToggledWithoutAFunction) {
    const auto bar = MakeBar();
    EXPECT_THROW(
        bar->AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .startToggled = true},
                             BarGroup::Right),
        std::bad_function_call);
    // The button is there all the same.
    Draw(*bar);
    EXPECT_EQ(Copies().size(), 1U);
}

TEST_F(ButtonBarTest, ClicksTheFirstCentreButtonOfALabel) {
    const auto bar = MakeBar();
    std::vector<int> clicks;
    const auto add = [&](const char* label, BarGroup group, int number) {
        bar->AddButton(
            kSomeIcon, label, [&clicks, number] { clicks.push_back(number); }, group, ButtonStyle::Plain, "");
    };
    add("Leave", BarGroup::Left, 1);
    add("Stay", BarGroup::Centre, 2);
    add("Leave", BarGroup::Centre, 3);
    add("Leave", BarGroup::Centre, 4);
    bar->ClickCentreButton("Leave");
    EXPECT_THAT(clicks, ElementsAre(3));
    bar->ClickCentreButton("leave");
    bar->ClickCentreButton("");
    EXPECT_THAT(clicks, ElementsAre(3));
}

TEST_F(ButtonBarTest, ResizesGroupedButtonsAndTextsWithItsHeight) {
    const auto bar = MakeBar("Some title");
    Button* const left = bar->AddButton(
        kSomeIcon, "", [] {}, BarGroup::Left, ButtonStyle::Plain, "");
    ToggleButton* const centre = AddToggle(*bar, BarGroup::Centre);
    ToggleButton* const right = AddToggle(*bar, BarGroup::Right);
    ToggleButton* const stray = AddToggle(*bar, static_cast<BarGroup>(0));
    bar->AddCompactButton(stray);
    auto slot = std::make_unique<SlotElement>(10);
    const SlotElement* const record = slot.get();
    bar->SetRecordButton(std::move(slot));
    bar->SetHeight(100);
    EXPECT_EQ(bar->height, 100);
    for (const GraphicElementInterface* element :
         std::vector<const GraphicElementInterface*>{left, centre, right, record}) {
        EXPECT_EQ(element->width, 55);
        EXPECT_EQ(element->height, 52);
    }
    EXPECT_EQ(stray->width, 28);
    EXPECT_EQ(stray->height, 28);
}

TEST_F(ButtonBarTest, SizesItsTextsBy12HundredthsOfItsHeightInSinglePrecision) {
    const auto bar = MakeBar("Some title");
    TextButton* const text = bar->SetTextButton("Click", [] {});
    bar->SetWidth(1400);
    // In double precision 25 would give a size of 2.
    for (const auto& [height, size] : {std::pair(100, 12), std::pair(85, 10), std::pair(25, 3)}) {
        bar->SetHeight(height);
        Wipe();
        bar->Render(Renderer(), {0, 0});
        TextTexture same;
        same.SetFontName("FKGrotesk-Bolder");
        same.SetFontSize(size);
        same.SetText("Click");
        EXPECT_EQ(text->GetText().MeasureText(), same.MeasureText());
        same.SetText("Some title");
        ASSERT_FALSE(Copies().empty());
        EXPECT_EQ(Copies()[0].destination.w, same.MeasureText().x);
    }
}

}  // namespace
}  // namespace Corvanta::UI
