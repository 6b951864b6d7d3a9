#include "ui/ButtonWithState.h"

#include <memory>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/ui/ToolkitTest.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using Testing::kMissingIcon;
using Testing::kOtherIcon;
using Testing::kSquareIcon;
using Testing::kTallIcon;
using Testing::kWideIcon;
using Testing::Measurements;
using Testing::RasterisedTexts;
using Testing::Sdl;
using IconPlace = ButtonWithState::IconPlace;
using PressState = ButtonWithState::PressState;
using Style = ButtonWithState::Style;

constexpr SDL_Color kWhite{255, 255, 255, 255};
constexpr SDL_Color kHover{255, 255, 255, 30};
constexpr SDL_Color kFaintHover{255, 255, 255, 20};
constexpr SDL_Color kPressed{128, 128, 128, 20};
constexpr SDL_Color kPlate{107, 107, 107, 255};

constexpr SDL_Point kCentre{160, 120};
constexpr SDL_Point kOutside{0, 0};
// Of a button of 81 x 45 around the centre, and its icon in the middle of it.
constexpr SDL_Rect kRect{120, 98, 81, 45};
constexpr SDL_Rect kIcon{151, 111, 18, 18};

ButtonWithState::Options OneState(Style style = Style::Fill) {
    ButtonWithState::Options options;
    options.width = 81;
    options.height = 45;
    options.offIconName = kSquareIcon;
    options.onClickWhileOff = [] {};
    options.iconPlace = IconPlace::Centred;
    options.style = style;
    return options;
}

ButtonWithState::Options TwoStates(Style style = Style::Fill) {
    ButtonWithState::Options options = OneState(style);
    options.onIconName = kOtherIcon;
    options.onClickWhileOn = [] {};
    return options;
}

class ButtonWithStateTest : public Testing::ToolkitTest {
protected:
    // So that the pointer finds it.
    void Place(ButtonWithState& button) {
        button.Render(Renderer(), kCentre);
        Clear();
        Calls().Clear();
    }
    void Hover(ButtonWithState& button) {
        Place(button);
        button.OnHover(kCentre);
    }
    void Press(ButtonWithState& button) {
        Hover(button);
        button.OnMouseDown();
    }
    void Click(ButtonWithState& button) {
        Press(button);
        button.OnMouseUp();
    }
    // As a tooltip of a button at kRect, at scale 1.
    void ExpectTooltip(const std::string& text) {
        const SDL_Point size = SizeOf(FontBolder, 12, text);
        const SDL_Point place{120 - (size.x - 81) / 2, 98 - static_cast<int>((size.y + 2) * 1.5)};
        ExpectFill({place.x - 4, place.y - 1, size.x + 8, size.y + 2}, kPlate);
        ExpectText(FontBolder, 12, text, place);
    }
};

TEST_F(ButtonWithStateTest, IsIdleAtFirst) {
    ButtonWithState button(Renderer(), TwoStates());
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
    EXPECT_FALSE(button.IsPressed());
    EXPECT_FALSE(button.IsOn());
    EXPECT_FALSE(button.IsDisabled());
    EXPECT_TRUE(button.HasOnState());
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, kRect);
    ExpectIcon(kSquareIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

struct BackgroundCase {
    PressState state;
    int style;
    std::vector<SDL_Color> fills;
    bool outlined;
};

TEST_F(ButtonWithStateTest, HasABackgroundByItsStateAndStyle) {
    const BackgroundCase cases[] = {
        {PressState::Hovered, 1, {kHover}, true},
        {PressState::Hovered, 2, {kHover}, false},
        {PressState::Hovered, 3, {kFaintHover}, false},
        {PressState::Pressed, 1, {kHover, kPressed}, false},
        {PressState::Pressed, 2, {kPressed}, false},
        {PressState::Pressed, 3, {kPressed}, false},
        {PressState::Idle, 1, {}, false},
        {PressState::Idle, 2, {}, false},
        {PressState::Idle, 3, {}, false},
        {PressState::Hovered, 0, {}, false},
        {PressState::Hovered, 4, {}, false},
        {PressState::Hovered, 5, {}, false},
        {PressState::Hovered, 6, {}, false},
        {PressState::Pressed, 0, {}, false},
        {PressState::Pressed, 4, {}, false},
        {PressState::Pressed, 5, {}, false},
        {PressState::Pressed, -1, {}, false},
    };
    for (const BackgroundCase& row : cases) {
        ButtonWithState button(Renderer(), OneState(static_cast<Style>(row.style)));
        Place(button);
        if (row.state != PressState::Idle) button.OnHover(kCentre);
        if (row.state == PressState::Pressed) button.OnMouseDown();
        ASSERT_EQ(button.GetPressState(), row.state);
        button.Render(Renderer(), kCentre);
        for (const SDL_Color fill : row.fills) ExpectFill(kRect, fill);
        if (row.outlined) ExpectOutline(kRect, kWhite);
        const bool full = row.style == 0 || row.style == 4 || row.style == 5;
        const bool grown = row.style == 4 && row.state == PressState::Hovered;
        ExpectIcon(kSquareIcon, grown ? SDL_Rect{136, 96, 49, 49} : full ? SDL_Rect{138, 98, 45, 45} : kIcon);
        EXPECT_TRUE(DrawnAsExpected()) << row.style << ' ' << static_cast<int>(row.state);
        EXPECT_TRUE(DrawColourIsZero());
    }
}

TEST_F(ButtonWithStateTest, PutsItsIconAtTheLeft) {
    const std::pair<Style, SDL_Rect> cases[] = {
        {Style::FullHeight, {142, 109, 67, 45}}, {Style::FillAndOutline, {142, 109, 33, 22}},
        {Style::Fill, {142, 109, 33, 22}},       {Style::FaintFill, {142, 109, 33, 22}},
        {Style::Grow, {142, 109, 67, 45}},       {Style::SwapPicture, {142, 109, 67, 45}},
    };
    for (const auto& [style, icon] : cases) {
        Clear();
        ButtonWithState::Options options = OneState(style);
        options.iconPlace = IconPlace::Left;
        options.offIconName = kWideIcon;
        ButtonWithState button(Renderer(), std::move(options));
        button.Render(Renderer(), kCentre);
        ExpectIcon(kWideIcon, icon);
        EXPECT_TRUE(DrawnAsExpected()) << static_cast<int>(style);
    }
}

TEST_F(ButtonWithStateTest, GrowsUnderThePointerAlone) {
    ButtonWithState::Options options = OneState(Style::Grow);
    options.iconPlace = IconPlace::Left;
    ButtonWithState button(Renderer(), std::move(options));
    Hover(button);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {144, 108, 49, 49});
    EXPECT_TRUE(DrawnAsExpected());

    button.OnMouseDown();
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {142, 109, 45, 45});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, ScalesItsRectangleAndNotItsIcon) {
    ButtonWithState button(Renderer(), OneState());
    button.SetScale(1.5F);
    Hover(button);
    button.Render(Renderer(), kCentre);
    const SDL_Rect scaled{100, 87, 121, 67};
    EXPECT_EQ(button.rect, scaled);
    ExpectFill(scaled, kHover);
    ExpectIcon(kSquareIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, ShowsItsTooltipUnderThePointer) {
    ButtonWithState::Options options = OneState(Style::FullHeight);
    options.offTooltip = "Next frame";
    ButtonWithState button(Renderer(), std::move(options));
    Hover(button);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {138, 98, 45, 45});
    ExpectTooltip("Next frame");
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());

    button.OnHover(kOutside);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {138, 98, 45, 45});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, ScalesItsTooltip) {
    ButtonWithState::Options options = OneState(Style::FullHeight);
    options.offTooltip = "Next frame";
    ButtonWithState button(Renderer(), std::move(options));
    button.SetScale(1.5F);
    Hover(button);
    button.Render(Renderer(), kCentre);
    const SDL_Point size = SizeOf(FontBolder, 18, "Next frame");
    const SDL_Point place{100 - (size.x - 121) / 2, 87 - static_cast<int>((size.y + 2) * 1.5)};
    ExpectIcon(kSquareIcon, {138, 98, 45, 45});
    ExpectFill({place.x - 6, place.y - 1, size.x + 12, size.y + 2}, kPlate);
    ExpectText(FontBolder, 18, "Next frame", place);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, HasATooltipForEachState) {
    ButtonWithState::Options options = TwoStates(Style::FullHeight);
    options.offTooltip = "Play";
    options.onTooltip = "Pause";
    ButtonWithState button(Renderer(), std::move(options));
    Hover(button);
    button.SetOn(true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, {138, 98, 45, 45});
    ExpectTooltip("Pause");
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, ShowsNoPlateForAnEmptyTooltip) {
    ButtonWithState::Options options = TwoStates(Style::FullHeight);
    options.offTooltip = "Play";
    ButtonWithState button(Renderer(), std::move(options));
    button.SetOn(true);
    Hover(button);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
}

TEST_F(ButtonWithStateTest, ShowsItsOnPictureWhileOn) {
    ButtonWithState button(Renderer(), TwoStates());
    button.SetOn(true);
    EXPECT_TRUE(button.IsOn());
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, SwapsItsPictureUnderThePointer) {
    ButtonWithState button(Renderer(), TwoStates(Style::SwapPicture));
    Hover(button);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, {138, 98, 45, 45});
    EXPECT_TRUE(DrawnAsExpected());

    ButtonWithState single(Renderer(), OneState(Style::SwapPicture));
    Hover(single);
    single.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {138, 98, 45, 45});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, ShowsItsDisabledPictureWhileDisabled) {
    ButtonWithState button(Renderer(), TwoStates());
    button.SetDisabledIcon(Renderer(), kTallIcon);
    button.SetOn(true);
    button.SetDisabled(true);
    EXPECT_TRUE(button.IsDisabled());
    button.Render(Renderer(), kCentre);
    ExpectIcon(kTallIcon, {158, 111, 5, 18});
    EXPECT_TRUE(DrawnAsExpected());

    button.SetDisabled(false);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, KeepsItsPictureWhileDisabledWithoutAnother) {
    ButtonWithState button(Renderer(), TwoStates());
    button.SetOn(true);
    button.SetDisabled(true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, MovesThroughItsStates) {
    ButtonWithState button(Renderer(), OneState());
    Place(button);
    button.OnMouseDown();
    EXPECT_EQ(button.GetPressState(), PressState::Idle) << "not under the pointer";
    button.OnHover(kCentre);
    EXPECT_TRUE(button.hovered);
    EXPECT_EQ(button.GetPressState(), PressState::Hovered);
    button.OnMouseDown();
    EXPECT_TRUE(button.IsPressed());
    button.OnHover({kCentre.x + 1, kCentre.y});
    EXPECT_TRUE(button.IsPressed()) << "moving on it keeps it pressed";
    button.OnMouseDown();
    EXPECT_TRUE(button.IsPressed());
    button.OnMouseUp();
    EXPECT_EQ(button.GetPressState(), PressState::Hovered);
    button.OnHover(kOutside);
    EXPECT_FALSE(button.hovered);
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
}

TEST_F(ButtonWithStateTest, CallsNothingWhenDraggedOff) {
    ButtonWithState::Options options = TwoStates();
    options.onClickWhileOff = [] { FAIL(); };
    options.onClickWhileOn = [] { FAIL(); };
    ButtonWithState button(Renderer(), std::move(options));
    Press(button);
    button.OnHover(kOutside);
    button.OnMouseUp();
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
    button.OnHover(kCentre);
    button.OnMouseUp();
    EXPECT_EQ(button.GetPressState(), PressState::Hovered);
    EXPECT_FALSE(button.OnClick());
    EXPECT_FALSE(button.IsOn());
}

TEST_F(ButtonWithStateTest, FlipsAndCallsTheFunctionOfItsOldState) {
    std::string calls;
    ButtonWithState::Options options = TwoStates();
    options.onClickWhileOff = [&] { calls += "off "; };
    options.onClickWhileOn = [&] { calls += "on "; };
    ButtonWithState button(Renderer(), std::move(options));
    Click(button);
    EXPECT_TRUE(button.IsOn());
    Click(button);
    EXPECT_FALSE(button.IsOn());
    EXPECT_EQ(calls, "off on ");
    EXPECT_EQ(button.GetPressState(), PressState::Hovered);
}

TEST_F(ButtonWithStateTest, LeavesItsStateToItsOwnerWhenLatched) {
    std::string calls;
    ButtonWithState::Options options = TwoStates();
    options.latched = true;
    options.onClickWhileOff = [&] { calls += "off "; };
    options.onClickWhileOn = [&] { calls += "on "; };
    ButtonWithState button(Renderer(), std::move(options));
    Click(button);
    Click(button);
    EXPECT_FALSE(button.IsOn());
    button.SetOn(true);
    Click(button);
    EXPECT_TRUE(button.IsOn());
    EXPECT_EQ(calls, "off off on ");
}

TEST_F(ButtonWithStateTest, HasOneStateWithoutAnOnPicture) {
    int clicks = 0;
    ButtonWithState::Options options = OneState();
    options.onClickWhileOff = [&] { ++clicks; };
    options.onClickWhileOn = [] { FAIL(); };
    ButtonWithState button(Renderer(), std::move(options));
    EXPECT_FALSE(button.HasOnState());
    Click(button);
    Click(button);
    button.SetOn(true);
    EXPECT_FALSE(button.IsOn());
    Click(button);
    EXPECT_EQ(clicks, 3);
}

TEST_F(ButtonWithStateTest, HasOneStateWithoutAFunctionForTheOther) {
    ButtonWithState::Options options = TwoStates();
    options.onClickWhileOn = nullptr;
    ButtonWithState button(Renderer(), std::move(options));
    EXPECT_FALSE(button.HasOnState());
    Click(button);
    EXPECT_FALSE(button.IsOn());
    button.SetOn(true);
    EXPECT_FALSE(button.IsOn());
}

TEST_F(ButtonWithStateTest, GetsItsSecondStateWithItsOnPicture) {
    ButtonWithState::Options options = OneState();
    options.onClickWhileOn = [] {};
    ButtonWithState button(Renderer(), std::move(options));
    Click(button);
    button.SetOnIcon(Renderer(), kOtherIcon);
    EXPECT_TRUE(button.HasOnState());
    EXPECT_FALSE(button.IsOn()) << "a click before it was there does not count";
    button.SetOn(true);
    EXPECT_TRUE(button.IsOn());
    button.OnHover(kOutside);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, IgnoresTheMouseWhileDisabled) {
    ButtonWithState::Options options = OneState();
    options.onClickWhileOff = [] { FAIL(); };
    options.offTooltip = "Next frame";
    ButtonWithState button(Renderer(), std::move(options));
    Place(button);
    button.SetDisabled(true);
    button.OnHover(kCentre);
    button.OnMouseDown();
    button.OnMouseUp();
    EXPECT_FALSE(button.hovered);
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, BecomesIdleWhenDisabledWhilePressed) {
    ButtonWithState button(Renderer(), OneState());
    Press(button);
    button.SetDisabled(true);
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
    button.OnHover(kOutside);
    EXPECT_FALSE(button.hovered);
    button.SetDisabled(false);
    EXPECT_EQ(button.GetPressState(), PressState::Idle);
    EXPECT_FALSE(button.OnClick());
}

TEST_F(ButtonWithStateTest, KeepsItsPressWhenEnabledAgain) {
    ButtonWithState button(Renderer(), OneState());
    Press(button);
    button.SetDisabled(false);
    EXPECT_TRUE(button.IsPressed());
}

TEST_F(ButtonWithStateTest, RaisesWithoutAFunctionAfterItsStateHasChanged) {
    ButtonWithState::Options options = TwoStates();
    options.onClickWhileOff = nullptr;
    ButtonWithState button(Renderer(), std::move(options));
    Press(button);
    EXPECT_THROW(button.OnMouseUp(), std::bad_function_call);
    EXPECT_TRUE(button.IsOn());
    EXPECT_TRUE(button.IsPressed());
}

TEST_F(ButtonWithStateTest, MayBeDestroyedByItsFunctions) {
    std::unique_ptr<ButtonWithState> button;
    const std::string seen = "a name that is long enough to lie on the heap";
    int calls = 0;
    for (const bool on : {false, true}) {
        ButtonWithState::Options options = TwoStates();
        options.onClickWhileOff = [&button, &calls, seen] {
            button.reset();
            EXPECT_EQ(seen.size(), 45U);
            ++calls;
        };
        options.onClickWhileOn = options.onClickWhileOff;
        button = std::make_unique<ButtonWithState>(Renderer(), std::move(options));
        button->SetOn(on);
        Press(*button);
        ButtonWithState* const pressed = button.get();
        pressed->OnMouseUp();
        EXPECT_EQ(button, nullptr);
    }
    EXPECT_EQ(calls, 2);
}

TEST_F(ButtonWithStateTest, IsNotDrawnWithoutAPictureThatItNames) {
    for (const bool missesOn : {false, true}) {
        ButtonWithState::Options options = TwoStates();
        (missesOn ? options.onIconName : options.offIconName) = kMissingIcon;
        ButtonWithState button(Renderer(), std::move(options));
        button.Render(Renderer(), kCentre);
        EXPECT_TRUE(NothingDrawn()) << missesOn;
        EXPECT_EQ(button.rect, (SDL_Rect{0, 0, 0, 0}));
        button.OnHover(kOutside);
        EXPECT_FALSE(button.hovered);
    }
}

TEST_F(ButtonWithStateTest, LoadsItsPicturesAtOnceOrInItsFirstDrawing) {
    const ButtonWithState atOnce(Renderer(), TwoStates());
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 2U);
    ButtonWithState later(nullptr, TwoStates());
    EXPECT_FALSE(later.HasOnState());
    later.Render(Renderer(), kCentre);
    EXPECT_TRUE(later.HasOnState());
    ExpectIcon(kSquareIcon, kIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, SurvivesTheLossOfItsRenderer) {
    ButtonWithState::Options options = TwoStates();
    options.offTooltip = "Play";
    ButtonWithState button(nullptr, std::move(options));
    {
        const Testing::PixelReader lost(320, 240);
        button.SetDisabledIcon(lost.Renderer(), kTallIcon);
        button.Render(lost.Renderer(), kCentre);
        button.OnHover(kCentre);
        button.Render(lost.Renderer(), kCentre);
        button.ReleaseTextures();
        ReleaseRendererTextures(lost.Renderer());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
    }
    button.SetDisabled(true);
    button.OnHover(kOutside);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kTallIcon, {158, 111, 5, 18});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonWithStateTest, CostsNothingButItsDrawingWhileNothingChanges) {
    ButtonWithState::Options options = TwoStates();
    options.offTooltip = "A tooltip of many more bytes";
    ButtonWithState button(Renderer(), std::move(options));
    Hover(button);
    button.Render(Renderer(), kCentre);
    Calls().Clear();
    AllocationCounter::Start();
    button.OnHover(kCentre);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_EQ(Measurements(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
