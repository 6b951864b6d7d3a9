// What a bar and an open menu cost while nothing changes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/TextCalls.h"
#include "ui/ButtonBar.h"
#include "ui/Menu.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using ::testing::IsEmpty;
using Testing::kSomeIcon;

class ControlsSteadyState : public Testing::ControlTest {
protected:
    ControlsSteadyState()
        : bar_(Renderer(), 1280, 100, "A room's name of more than three letters", true),
          menu_(Renderer(), MenuDirection::FromBelow, 300, 0xFF424242) {
        for (int i = 0; i < 4; ++i) {
            for (const BarGroup group : {BarGroup::Left, BarGroup::Centre}) {
                bar_.AddButton(
                    kSomeIcon, "Label", [] {}, group, ButtonStyle::FillAndOutline, "A tooltip");
            }
            const BarGroup group = i == 0 ? static_cast<BarGroup>(0) : BarGroup::Right;
            ToggleButton* const button = bar_.AddToggleButton({.offIconName = kSomeIcon,
                                                               .onIconName = kSomeIcon,
                                                               .offLabel = "Off",
                                                               .onLabel = "On",
                                                               .onToggledOn = [] {},
                                                               .showLabel = true},
                                                              group);
            wanted_[button] = true;
        }
        bar_.SetTextButton("Invite", [] {});
        for (int i = 0; i < 11; ++i)
            menu_.AddButton(kSomeIcon, "A row's label, row " + std::to_string(i), [] {});
        menu_.AddToggleButton({.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Off"});
        menu_.AddDivider();
        menu_.SetScrollable(true);
        Open();
    }

    void Open() {
        menu_.SetVisible(true);
        Testing::StandingClock::TurnMs(125);
    }
    void Tick(SDL_Point mouse) {
        bar_.UpdateRightGroup(wanted_);
        bar_.Render(Renderer(), {0, 600});
        menu_.Render(Renderer(), {900, 300});
        bar_.OnHover(mouse);
        menu_.OnHover(mouse);
        SDL_RenderPresent(Renderer());
    }

    ButtonBar bar_;
    Menu menu_;
    std::map<ToggleButton*, bool> wanted_;
};

TEST_F(ControlsSteadyState, AllocatesNothingAndRasterisesNoText) {
    // The mouse on a button of the bar, and on a row of the menu: their tooltip and their hover are drawn.
    for (const SDL_Point mouse : {SDL_Point{54, 650}, SDL_Point{950, 330}, SDL_Point{-1, -1}}) {
        for (int i = 0; i < 4; ++i) Tick(mouse);
        ASSERT_FALSE(bar_.IsCompact());
        ASSERT_TRUE(bar_.visible);
        ASSERT_TRUE(menu_.GetScrollbar().visible);
        Calls().Clear();
        AllocationCounter::Start();
        for (int i = 0; i < 10; ++i) Tick(mouse);
        EXPECT_EQ(AllocationCounter::Stop(), 0U) << AllocationCounter::Bytes() << " bytes";
        EXPECT_THAT(Testing::RasterisedTexts(), IsEmpty());
        EXPECT_EQ(Testing::Measurements(), 0U);
        for (const char* name : {"SDL_CreateTextureFromSurface", "SDL_CreateTexture", "SDL_DestroyTexture",
                                 "TTF_OpenFont", "IMG_LoadTexture"}) {
            EXPECT_EQ(Calls().Count(name), 0U) << name;
        }
        EXPECT_GT(Calls().Count("SDL_RenderCopy"), 10U * 30U);
    }
}

TEST_F(ControlsSteadyState, AllocatesNothingWhileItMoves) {
    // Each row's text is made when it is seen for the first time.
    for (const int way : {1000, -1000, 0}) {
        Tick({-1, -1});
        menu_.GetScrollbar().Move({0, way}, true);
    }
    Tick({-1, -1});
    Calls().Clear();
    menu_.SetVisible(true);
    bar_.SetVisible(true);
    AllocationCounter::Start();
    for (int i = 0; i < 20; ++i) {
        Tick({-1, -1});
        menu_.GetScrollbar().Move({0, 1}, true);
        Testing::StandingClock::TurnMs(16);
    }
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_THAT(Testing::RasterisedTexts(), IsEmpty());
}

TEST_F(ControlsSteadyState, AllocatesNothingInACompactBar) {
    for (const auto& [button, on] : wanted_) bar_.AddCompactButton(button);
    bar_.SetWidth(400);
    for (int i = 0; i < 4; ++i) Tick({200, 650});
    ASSERT_TRUE(bar_.IsCompact());
    AllocationCounter::Start();
    for (int i = 0; i < 10; ++i) Tick({200, 650});
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
