#include <gtest/gtest.h>

#include "tests/ui/ControlSurroundings.h"
#include "ui/ButtonBar.h"

namespace Corvanta::UI {
namespace {

using Testing::kSomeIcon;
using Testing::StandingClock;

constexpr SDL_Point kTopLeft{0, 600};
constexpr SDL_Point kOn{700, 640};
constexpr SDL_Point kOff{700, 599};
// Travels 100 pixels: its height of 85 and an offset of 15.
constexpr int kAtRest = 600;
constexpr int kHalfWay = 650;
constexpr int kNotDrawn = -1;

class ButtonBarVisibilityTest : public Testing::ControlTest {
protected:
    enum class State { Hidden, SlidingIn, Shown, Leaving };

    ButtonBarVisibilityTest() : bar_(Renderer(), 1280, 85, "", true) { bar_.SetOffset(15); }

    // One tick of a view: a drawing, then the hover pass. Returns where the bar was drawn.
    int Tick(SDL_Point mouse) {
        const int y = Draw();
        bar_.OnHover(mouse);
        return y;
    }
    int Draw() {
        Wipe();
        bar_.Render(Renderer(), kTopLeft);
        EXPECT_EQ(bar_.rect, (SDL_Rect{0, 600, 1280, 85}));
        return Fills().empty() ? kNotDrawn : Fills()[0].y;
    }
    [[nodiscard]] State Now() const {
        if (!bar_.visible) {
            EXPECT_FALSE(bar_.IsSliding());
            EXPECT_FALSE(bar_.IsHiding());
            return State::Hidden;
        }
        if (bar_.IsHiding()) return State::Leaving;
        return bar_.IsSliding() ? State::SlidingIn : State::Shown;
    }
    // From wherever it is.
    void Hide() {
        bar_.OnHover(kOff);
        StandingClock::TurnMs(4250);
        Draw();
        ASSERT_EQ(Now(), State::Hidden);
    }

    ButtonBar bar_;
};

TEST_F(ButtonBarVisibilityTest, IsShownAtFirst) {
    EXPECT_EQ(Now(), State::Shown);
    EXPECT_EQ(Draw(), kAtRest);
}

TEST_F(ButtonBarVisibilityTest, SlidesInWhenTheMouseReachesItsRestPlace) {
    Hide();
    EXPECT_EQ(Tick(kOff), kNotDrawn);
    EXPECT_EQ(Now(), State::Hidden);
    EXPECT_EQ(Tick(kOn), kNotDrawn);
    EXPECT_EQ(Now(), State::SlidingIn);
    EXPECT_EQ(Tick(kOn), 700);
    StandingClock::TurnMs(125);
    EXPECT_EQ(Tick(kOn), kHalfWay);
    StandingClock::TurnMs(124);
    EXPECT_EQ(Tick(kOn), kAtRest);
    EXPECT_EQ(Now(), State::SlidingIn);
    StandingClock::TurnMs(1);
    EXPECT_EQ(Tick(kOn), kAtRest);
    EXPECT_EQ(Now(), State::Shown);
}

TEST_F(ButtonBarVisibilityTest, TellsItsPlaceOfThisFrameBeforeItIsDrawn) {
    Hide();
    EXPECT_EQ(Tick(kOn), kNotDrawn);
    EXPECT_EQ(Tick(kOn), 700);
    StandingClock::TurnMs(125);
    bar_.UpdateSlide({0, kAtRest});
    EXPECT_EQ(bar_.rect.y, kHalfWay);
    // Once in a frame, however often it is asked for.
    StandingClock::TurnMs(60);
    EXPECT_EQ(Tick(kOn), kHalfWay);
    EXPECT_EQ(bar_.rect.y, kAtRest);
    EXPECT_LT(Tick(kOn), kHalfWay);
}

TEST_F(ButtonBarVisibilityTest, SlidesInWhenItIsKeptAlive) {
    Hide();
    bar_.KeepAlive();
    EXPECT_EQ(Now(), State::SlidingIn);
}

TEST_F(ButtonBarVisibilityTest, StaysWhileTheMouseIsOnIt) {
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Tick(kOn), kAtRest);
        EXPECT_EQ(Now(), State::Shown);
        StandingClock::TurnMs(4000);
    }
}

TEST_F(ButtonBarVisibilityTest, GoesFourSecondsAfterTheMouseHasLeft) {
    Tick(kOn);
    Tick(kOff);
    EXPECT_EQ(Now(), State::Leaving);
    StandingClock::TurnMs(4000);
    EXPECT_EQ(Tick(kOff), kAtRest);
    StandingClock::TurnMs(125);
    EXPECT_EQ(Tick(kOff), kHalfWay);
    StandingClock::TurnMs(124);
    EXPECT_EQ(Tick(kOff), 699);
    EXPECT_EQ(Now(), State::Leaving);
    StandingClock::TurnMs(1);
    EXPECT_EQ(Tick(kOff), kNotDrawn);
    EXPECT_EQ(Now(), State::Hidden);
}

TEST_F(ButtonBarVisibilityTest, GoesAfterThePointerHasLeftTheWindow) {
    Tick(kOn);
    StandingClock::TurnMs(10'000);
    Tick(kOn);
    EXPECT_EQ(Now(), State::Shown);
    // What a host sends for a pointer that is elsewhere.
    Tick({-1, -1});
    EXPECT_EQ(Now(), State::Leaving);
    StandingClock::TurnMs(4250);
    EXPECT_EQ(Tick({-1, -1}), kNotDrawn);
    EXPECT_EQ(Now(), State::Hidden);
}

TEST_F(ButtonBarVisibilityTest, IsKeptByTheMouseComingBackDuringTheWait) {
    Tick(kOff);
    StandingClock::TurnMs(3999);
    Tick(kOn);
    EXPECT_EQ(Now(), State::Shown);
    StandingClock::TurnMs(300);
    EXPECT_EQ(Tick(kOn), kAtRest);
    // The next wait is a whole one.
    Tick(kOff);
    StandingClock::TurnMs(4000);
    EXPECT_EQ(Tick(kOff), kAtRest);
}

TEST_F(ButtonBarVisibilityTest, IsKeptByTheMouseComingBackDuringTheWayOut) {
    Tick(kOff);
    StandingClock::TurnMs(4125);
    EXPECT_EQ(Tick(kOn), kHalfWay);
    EXPECT_EQ(Now(), State::Shown);
    EXPECT_EQ(Tick(kOn), kAtRest);
}

TEST_F(ButtonBarVisibilityTest, DoesNotRestartTheWaitWhenHiddenTwice) {
    bar_.SetVisible(false);
    StandingClock::TurnMs(3000);
    bar_.SetVisible(false);
    StandingClock::TurnMs(1125);
    EXPECT_EQ(Draw(), kHalfWay);
}

TEST_F(ButtonBarVisibilityTest, RestartsTheWaitWhenItIsKeptAlive) {
    bar_.SetVisible(false);
    StandingClock::TurnMs(3000);
    bar_.KeepAlive();
    EXPECT_EQ(Now(), State::Leaving);
    StandingClock::TurnMs(4000);
    EXPECT_EQ(Draw(), kAtRest);
    StandingClock::TurnMs(125);
    EXPECT_EQ(Draw(), kHalfWay);
    bar_.KeepAlive();
    EXPECT_EQ(Draw(), kAtRest);
}

TEST_F(ButtonBarVisibilityTest, LeavesAShownBarAloneWhenItIsKeptAlive) {
    Tick(kOn);
    bar_.KeepAlive();
    EXPECT_EQ(Now(), State::Shown);
}

TEST_F(ButtonBarVisibilityTest, KeepsAWaitThatRunsWhenShownByCommand) {
    bar_.SetVisible(false);
    StandingClock::TurnMs(3950);
    bar_.SetVisible(true);
    EXPECT_TRUE(bar_.IsSliding());
    EXPECT_TRUE(bar_.IsHiding());
    StandingClock::TurnMs(125);
    EXPECT_EQ(Draw(), 680);
    StandingClock::TurnMs(175);
    EXPECT_EQ(Draw(), kNotDrawn);
}

TEST_F(ButtonBarVisibilityTest, StartsTheWaitAlsoWhileItIsHidden) {
    Hide();
    bar_.SetVisible(false);
    EXPECT_TRUE(bar_.IsHiding());
    EXPECT_FALSE(bar_.visible);
    // Which is what the next KeepAlive finds.
    bar_.KeepAlive();
    EXPECT_FALSE(bar_.visible);
    bar_.OnHover(kOn);
    EXPECT_EQ(Now(), State::SlidingIn);
}

TEST_F(ButtonBarVisibilityTest, StaysWithoutTheMouseWhilePinned) {
    bar_.Pin();
    Tick(kOff);
    EXPECT_EQ(Now(), State::Shown);
    StandingClock::TurnMs(10'000);
    EXPECT_EQ(Tick(kOff), kAtRest);
    bar_.Unpin();
    Tick(kOff);
    EXPECT_EQ(Now(), State::Leaving);
    // Pinning stops no wait that runs.
    bar_.Pin();
    StandingClock::TurnMs(4250);
    EXPECT_EQ(Tick(kOff), kNotDrawn);
}

TEST_F(ButtonBarVisibilityTest, ComesAndGoesAtOnceWithoutAutoHide) {
    bar_.SetAutoHide(false);
    EXPECT_FALSE(bar_.IsAutoHide());
    Tick(kOff);
    // Asked to hide by the mouse's leaving, it stays: it never hides.
    EXPECT_EQ(Now(), State::Shown);
    bar_.SetVisible(false);
    EXPECT_EQ(Now(), State::Shown);
    bar_.SetAutoHide(true);
    Hide();
    bar_.SetAutoHide(false);
    bar_.SetVisible(true);
    EXPECT_EQ(Now(), State::Shown);
    EXPECT_EQ(Draw(), kAtRest);
}

TEST_F(ButtonBarVisibilityTest, EndsBothWaysWhenShownWithoutAutoHide) {
    bar_.SetVisible(true);
    bar_.SetVisible(false);
    bar_.SetAutoHide(false);
    bar_.SetVisible(true);
    EXPECT_EQ(Now(), State::Shown);
    EXPECT_FALSE(bar_.IsSliding());
}

TEST_F(ButtonBarVisibilityTest, IsAlwaysVisibleWhenTold) {
    Hide();
    bar_.SetAlwaysVisible(true, ButtonBar::Remember::No);
    EXPECT_EQ(Now(), State::Shown);
    EXPECT_FALSE(bar_.IsAutoHide());
    Tick(kOff);
    StandingClock::TurnMs(10'000);
    EXPECT_EQ(Tick(kOff), kAtRest);
    bar_.SetAlwaysVisible(false, ButtonBar::Remember::No);
    EXPECT_TRUE(bar_.IsAutoHide());
    EXPECT_EQ(Now(), State::Leaving);
}

TEST_F(ButtonBarVisibilityTest, RestoresWhatItWasToldToRemember) {
    bar_.RestoreAlwaysVisible();
    EXPECT_TRUE(bar_.IsAutoHide());
    bar_.SetAlwaysVisible(true, ButtonBar::Remember::Yes);
    bar_.SetAlwaysVisible(false, ButtonBar::Remember::No);
    EXPECT_TRUE(bar_.IsAutoHide());
    bar_.RestoreAlwaysVisible();
    EXPECT_FALSE(bar_.IsAutoHide());
    EXPECT_EQ(Now(), State::Shown);
    bar_.SetAlwaysVisible(false, ButtonBar::Remember::Yes);
    bar_.SetAlwaysVisible(true, ButtonBar::Remember::No);
    bar_.RestoreAlwaysVisible();
    EXPECT_TRUE(bar_.IsAutoHide());
    EXPECT_EQ(Now(), State::Leaving);
}

TEST_F(ButtonBarVisibilityTest, MakesRoomAtOnceWhileItsHiddenFlagIsSet) {
    Tick(kOn);
    bar_.SetHidden(true);
    bar_.SetVisible(false);
    EXPECT_EQ(Now(), State::Hidden);
    EXPECT_EQ(Tick(kOn), kNotDrawn);
    bar_.KeepAlive();
    EXPECT_EQ(Tick(kOn), kNotDrawn);
    EXPECT_EQ(Now(), State::Hidden);
    EXPECT_TRUE(bar_.IsAutoHide());
    bar_.SetHidden(false);
    bar_.SetVisible(true);
    EXPECT_EQ(Now(), State::SlidingIn);
}

TEST_F(ButtonBarVisibilityTest, MakesRoomAlsoWithoutAutoHide) {
    bar_.SetAutoHide(false);
    bar_.SetHidden(true);
    bar_.SetVisible(false);
    EXPECT_EQ(Now(), State::Hidden);
    EXPECT_EQ(Tick(kOn), kNotDrawn);
    EXPECT_FALSE(bar_.IsAutoHide());
    bar_.SetHidden(false);
    bar_.SetVisible(true);
    EXPECT_EQ(Now(), State::Shown);
}

TEST_F(ButtonBarVisibilityTest, MovesItsButtonsButNotItsHitAreaWhileItSlides) {
    ToggleButton* const button = bar_.AddToggleButton(
        {.offIconName = kSomeIcon, .onIconName = kSomeIcon, .onToggledOn = [] {}}, BarGroup::Left);
    bar_.SetVisible(true);
    StandingClock::TurnMs(125);
    EXPECT_EQ(Draw(), kHalfWay);
    EXPECT_EQ(button->rect.y, 650 + 42 - 14);
    bar_.OnHover({46, 610});
    EXPECT_TRUE(bar_.hovered);
    EXPECT_FALSE(button->hovered);
    bar_.OnHover({46, 690});
    EXPECT_FALSE(bar_.hovered);
    EXPECT_TRUE(button->hovered);
    EXPECT_FALSE(bar_.OnClick());
}

TEST_F(ButtonBarVisibilityTest, ShowsItsButtonsTheMouseOnlyWhileItIsVisible) {
    ToggleButton* const button = bar_.AddToggleButton(
        {.offIconName = kSomeIcon, .onIconName = kSomeIcon, .onToggledOn = [] {}}, BarGroup::Left);
    Draw();
    Hide();
    // This pass shows the bar; the next one reaches what is on it.
    bar_.OnHover({46, 642});
    EXPECT_FALSE(button->hovered);
    EXPECT_EQ(Now(), State::SlidingIn);
    bar_.OnHover({46, 642});
    EXPECT_TRUE(button->hovered);
}

}  // namespace
}  // namespace Corvanta::UI
