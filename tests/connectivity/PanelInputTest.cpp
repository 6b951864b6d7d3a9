// Mouse on the panel: its close button and its scrollbar.
#include "tests/connectivity/PanelTest.h"

namespace Corvanta::Connectivity {
namespace {

constexpr SDL_Point kOnCloseButton{280, 44};
constexpr SDL_Point kInTheMiddle{160, 120};
constexpr SDL_Point kOutside{5, 5};
// So that ten rows overflow.
constexpr int kLargeFont = 20;

class PanelInput : public Testing::PanelTest {
protected:
    void Open(int fontSize = kFontSize) {
        MakeLocal().SetVisible(true);
        Update(kArea, fontSize);
    }
};

TEST_F(PanelInput, HoversWithinItsArea) {
    Open();
    Panel().OnHover(kInTheMiddle);
    EXPECT_TRUE(Panel().hovered);
    Panel().OnHover(kOutside);
    EXPECT_FALSE(Panel().hovered);
}

TEST_F(PanelInput, ClosesByItsButton) {
    Open();
    Panel().OnHover(kOnCloseButton);
    EXPECT_TRUE(Panel().OnClick());
    EXPECT_FALSE(Panel().visible);
    EXPECT_FALSE(Panel().OnClick()) << "hidden, it takes no click";
}

TEST_F(PanelInput, LeavesOtherClicksToTheTile) {
    Open();
    for (const SDL_Point mouse : {kInTheMiddle, kOutside}) {
        Panel().OnHover(mouse);
        EXPECT_FALSE(Panel().OnClick());
        EXPECT_TRUE(Panel().visible);
    }
}

TEST_F(PanelInput, HoversOnACloseButtonThatStandsOutOfTheArea) {
    MakeLocal().SetVisible(true);
    // Wide and low: the button hangs out.
    Update({10, 14, 300, 20});
    Panel().OnHover({280, 50});
    EXPECT_TRUE(Panel().hovered);
    EXPECT_TRUE(Panel().OnClick());
}

TEST_F(PanelInput, HasNoScrollbarToPressWhileEverythingFits) {
    Open();
    Panel().OnHover({304, 70});
    EXPECT_FALSE(Panel().ScrollbarClick());
    EXPECT_FALSE(Panel().GetScrollbar().IsDragging());
}

TEST_F(PanelInput, DragsItsScrollbarByAPressOnTheThumb) {
    Open(kLargeFont);
    UI::VideoScrollbar& bar = Panel().GetScrollbar();
    Panel().OnHover({304, 70});
    EXPECT_TRUE(Panel().ScrollbarClick());
    EXPECT_TRUE(bar.IsDragging());
    Panel().OnHover({304, 90});
    EXPECT_EQ(bar.rect.y, 80);
    bar.EndDrag();
    Panel().OnHover({304, 100});
    EXPECT_EQ(bar.rect.y, 80);
}

TEST_F(PanelInput, TakesNoPressBesideTheThumb) {
    Open(kLargeFont);
    for (const SDL_Point mouse : {kInTheMiddle, SDL_Point{304, 205}}) {
        Panel().OnHover(mouse);
        EXPECT_FALSE(Panel().ScrollbarClick());
    }
}

TEST_F(PanelInput, TakesNoPressOnAHiddenPanelsScrollbar) {
    Open(kLargeFont);
    Panel().OnHover({304, 70});
    Panel().SetVisible(false);
    EXPECT_FALSE(Panel().ScrollbarClick());
}

TEST_F(PanelInput, KeepsTheDragOfAScrollbarThatRunsOffTheThumb) {
    Open(kLargeFont);
    Panel().OnHover({304, 70});
    ASSERT_TRUE(Panel().ScrollbarClick());
    Panel().OnHover({20, 75});
    EXPECT_EQ(Panel().GetScrollbar().rect.y, 65);
}

}  // namespace
}  // namespace Corvanta::Connectivity
