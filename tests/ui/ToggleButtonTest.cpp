#include "ui/ToggleButton.h"

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

constexpr SDL_Color kWhite{255, 255, 255, 255};
constexpr SDL_Color kDimmed{255, 255, 255, 150};
constexpr SDL_Color kHighlight{252, 44, 3, 255};
constexpr SDL_Color kHover{255, 255, 255, 30};
constexpr SDL_Color kPlate{107, 107, 107, 255};

constexpr SDL_Point kCentre{160, 120};
// Of a button of 100 x 60 around the centre.
constexpr SDL_Rect kRect{110, 90, 100, 60};
constexpr SDL_Rect kRowIcon{140, 105, 30, 30};
constexpr SDL_Rect kColumnIcon{150, 110, 20, 20};
// Above a label.
constexpr SDL_Rect kUpperIcon{150, 101, 20, 20};

ToggleButton::Options Column() {
    ToggleButton::Options options;
    options.width = 100;
    options.height = 60;
    options.offIconName = kSquareIcon;
    options.onIconName = kOtherIcon;
    options.offLabel = "Off";
    options.onLabel = "On";
    options.onToggledOn = [] {};
    options.onToggledOff = [] {};
    options.labelPlace = LabelPlace::Below;
    return options;
}

ToggleButton::Options Row() {
    ToggleButton::Options options = Column();
    options.labelPlace = LabelPlace::Beside;
    return options;
}

class ToggleButtonTest : public Testing::ToolkitTest {
protected:
    void ExpectLabelBelow(const std::string& text, SDL_Color color = kWhite) {
        const SDL_Point size = SizeOf(FontRegular, 14, text);
        ExpectText(FontRegular, 14, text, {110 + (100 - size.x) / 2, static_cast<int>(150 - size.y * 1.2)},
                   color);
    }
    void ExpectTooltip(const std::string& text) {
        const SDL_Point size = SizeOf(FontBolder, 13, text);
        const SDL_Point place{110 - (size.x - 100) / 2, 56};
        ExpectFill({static_cast<int>(place.x - 24 * 0.2), static_cast<int>(place.y - (24 - size.y) * 0.5),
                    static_cast<int>(2 * 24 * 0.2 + size.x), 24},
                   kPlate);
        ExpectText(FontBolder, 13, text, place);
    }
    void EnterThirdState(ToggleButton& button, const std::string& icon = kWideIcon,
                         const std::string& label = "Third") {
        button.ConfigureThirdState(
            Renderer(), icon, label, [] {}, [] {});
        button.SetThirdState(true);
    }
};

TEST_F(ToggleButtonTest, StartsOff) {
    ToggleButton button(Renderer(), Column());
    EXPECT_FALSE(button.IsToggled());
    EXPECT_FALSE(button.IsInThirdState());
    EXPECT_EQ(button.GetOffIconName(), kSquareIcon);
    EXPECT_NE(button.GetOffTexture(), nullptr);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, kRect);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(ToggleButtonTest, IsFilledWhenOnInABar) {
    ToggleButton button(Renderer(), Column());
    button.SetToggled(true);
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHighlight);
    ExpectIcon(kOtherIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
    // The fill takes the place of the pointer's treatment.
    button.hovered = true;
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHighlight);
    ExpectIcon(kOtherIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, IsNotFilledWhenToldNotTo) {
    ToggleButton button(Renderer(), Column());
    button.SetToggled(true);
    button.SetFillWhenToggled(false);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, IsNotFilledWhenOnInARow) {
    ToggleButton button(Renderer(), Row());
    button.SetToggled(true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, ShowsThePointerByAFillAndInABarByAnOutline) {
    ToggleButton column(Renderer(), Column());
    column.hovered = true;
    column.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectOutline(kRect, kWhite);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());

    Clear();
    ToggleButton row(Renderer(), Row());
    row.hovered = true;
    row.SetToggled(true);
    row.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectIcon(kOtherIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, ShowsThePointerInTheThirdStateThoughItIsOn) {
    ToggleButton button(Renderer(), Column());
    button.SetToggled(true);
    EnterThirdState(button);
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectOutline(kRect, kWhite);
    ExpectIcon(kWideIcon, {145, 110, 30, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, FillsTheVisibleHeightFromWhereItsCutBegins) {
    ToggleButton button(Renderer(), Column());
    button.hovered = true;
    button.SetClipTop(100);
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    SDL_Rect cut = kRect;
    const auto source = ComputeVerticalClip(cut, 100, 60, {100, 0});
    ASSERT_TRUE(source.has_value());
    EXPECT_EQ(Calls().Of("SDL_RenderFillRect").at(0).arguments[1],
              "110 " + std::to_string(90 + source->y) + " 100 " + std::to_string(source->h));
    EXPECT_EQ(Calls().Of("SDL_RenderDrawRect").at(0).arguments[1], "110 90 100 60");
}

TEST_F(ToggleButtonTest, HasNoBackgroundWhenFlat) {
    for (const bool toggled : {false, true}) {
        Clear();
        ToggleButton::Options options = Column();
        options.flat = true;
        ToggleButton button(Renderer(), std::move(options));
        button.SetToggled(toggled);
        button.hovered = true;
        button.Render(Renderer(), kCentre);
        ExpectIcon(toggled ? kOtherIcon : kSquareIcon, {130, 90, 60, 60});
        EXPECT_TRUE(DrawnAsExpected()) << toggled;
    }
}

TEST_F(ToggleButtonTest, IgnoresWhatOnlyPlainButtonsHave) {
    ToggleButton button(Renderer(), Column());
    button.SetHighlighted(true);
    button.SetFitHeight(true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, LabelsItsState) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    ToggleButton button(Renderer(), std::move(options));
    button.SetFillWhenToggled(false);
    button.Render(Renderer(), kCentre);
    ExpectLabelBelow("Off");
    ExpectIcon(kSquareIcon, kUpperIcon);
    EXPECT_TRUE(DrawnAsExpected());

    button.SetToggled(true);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectLabelBelow("On");
    ExpectIcon(kOtherIcon, kUpperIcon);
    EXPECT_TRUE(DrawnAsExpected());

    EnterThirdState(button);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectLabelBelow("Third");
    ExpectIcon(kWideIcon, {145, 101, 30, 20});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(ToggleButtonTest, HasNoLabelUnlessToldTo) {
    ToggleButton::Options options = Row();
    options.fixedLabelMode = true;
    options.fixedLabel = "Fixed";
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, HasNoLabelForAStateWithoutOne) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    options.offLabel = "";
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kUpperIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, LabelsARowAsAPlainButtonDoes) {
    ToggleButton::Options options = Row();
    options.showLabel = true;
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectText(FontRegular, 20, "Off", {200, 108});
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, KeepsOneLabelDimmedInTheThirdState) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    options.fixedLabelMode = true;
    options.fixedLabel = "Fixed";
    ToggleButton button(Renderer(), std::move(options));
    for (const bool toggled : {false, true}) {
        button.SetToggled(toggled);
        button.SetFillWhenToggled(false);
        Clear();
        button.Render(Renderer(), kCentre);
        ExpectLabelBelow("Fixed");
        ExpectIcon(toggled ? kOtherIcon : kSquareIcon, kUpperIcon);
        EXPECT_TRUE(DrawnAsExpected()) << toggled;
    }
    EnterThirdState(button, kTallIcon);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectLabelBelow("Fixed", kDimmed);
    ExpectIcon(kTallIcon, {158, 101, 5, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, IsWidenedByTheLabelOfItsState) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    options.onLabel = "A label wider than it";
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, 100);
    button.SetToggled(true);
    button.Render(Renderer(), kCentre);
    const int wide = static_cast<int>(SizeOf(FontRegular, 14, "A label wider than it").x * 1.1);
    EXPECT_EQ(button.width, wide);
    button.SetToggled(false);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, wide);
}

TEST_F(ToggleButtonTest, ShowsItsStatesLabelAsATooltip) {
    ToggleButton::Options options = Row();
    options.flat = true;
    options.fixedLabelMode = true;
    options.fixedLabel = "Fixed";
    ToggleButton button(Renderer(), std::move(options));
    button.SetShowTooltip(true);
    button.hovered = true;
    const SDL_Rect icon{140, 105, 60, 60};
    button.Render(Renderer(), kCentre);
    ExpectTooltip("Off");
    ExpectIcon(kSquareIcon, icon);
    EXPECT_TRUE(DrawnAsExpected());

    button.SetToggled(true);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectTooltip("On");
    ExpectIcon(kOtherIcon, icon);
    EXPECT_TRUE(DrawnAsExpected());

    EnterThirdState(button);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectTooltip("Third");
    ExpectIcon(kWideIcon, {140, 105, 90, 60});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, ShowsNoTooltipUnlessToldToAndHovered) {
    ToggleButton::Options options = Row();
    options.flat = true;
    ToggleButton button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
    button.SetShowTooltip(true);
    button.hovered = false;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
}

TEST_F(ToggleButtonTest, KeepsItsTooltipAwayUntilItIsAllowed) {
    ToggleButton::Options options = Row();
    options.flat = true;
    ToggleButton button(Renderer(), std::move(options));
    button.SetShowTooltip(true);
    button.hovered = true;
    button.SetTooltipAllowed(false);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
    button.SetTooltipAllowed(true);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 1U);
}

TEST_F(ToggleButtonTest, ShowsNoPlateForAnEmptyTooltip) {
    ToggleButton::Options options = Row();
    options.flat = true;
    options.offLabel = "";
    ToggleButton button(Renderer(), std::move(options));
    button.SetShowTooltip(true);
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
}

TEST_F(ToggleButtonTest, KeepsItsOwnIconInAThirdStateWithoutOne) {
    ToggleButton off(Renderer(), Column());
    EnterThirdState(off, "");
    off.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());

    Clear();
    ToggleButton on(Renderer(), Column());
    on.SetToggled(true);
    EnterThirdState(on, kMissingIcon);
    on.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, KeepsItsThirdIconWhenConfiguredWithoutOne) {
    ToggleButton button(Renderer(), Column());
    EnterThirdState(button);
    EnterThirdState(button, "");
    button.Render(Renderer(), kCentre);
    ExpectIcon(kWideIcon, {145, 110, 30, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, WearsItsBadgeOnTheUpperRightCornerOfItsIcon) {
    ToggleButton button(Renderer(), Column());
    button.SetBadge(Renderer(), kTallIcon);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected()) << "not shown unless told to";

    button.SetShowBadge(true);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    ExpectIcon(kTallIcon, {168, 82, 8, 30});
    EXPECT_TRUE(DrawnAsExpected());

    // An empty name leaves it, a missing picture does not.
    button.SetBadge(Renderer(), "");
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    ExpectIcon(kTallIcon, {168, 82, 8, 30});
    EXPECT_TRUE(DrawnAsExpected());
    button.SetBadge(Renderer(), kMissingIcon);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, WearsItsBadgeOnWhatShowsOfItsIcon) {
    ToggleButton button(Renderer(), Column());
    button.SetBadge(Renderer(), kTallIcon);
    button.SetShowBadge(true);
    button.SetClipTop(120);
    button.Render(Renderer(), kCentre);
    ExpectIconPart(kSquareIcon, {0, 20, 40, 20}, {150, 120, 20, 10});
    ExpectIcon(kTallIcon, {168, 92, 8, 30});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, IsNotDrawnWithoutOneOfItsTwoIcons) {
    for (const bool missesOn : {false, true}) {
        ToggleButton::Options options = Column();
        (missesOn ? options.onIconName : options.offIconName) = kMissingIcon;
        options.showLabel = true;
        ToggleButton button(Renderer(), std::move(options));
        for (const bool toggled : {false, true}) {
            button.SetToggled(toggled);
            button.hovered = true;
            button.SetShowTooltip(true);
            button.Render(Renderer(), kCentre);
            EXPECT_TRUE(NothingDrawn()) << missesOn << toggled;
            EXPECT_EQ(button.rect, (SDL_Rect{0, 0, 0, 0}));
        }
    }
}

TEST_F(ToggleButtonTest, FlipsAndCallsTheFunctionOfItsNewStateOnAClick) {
    std::string calls;
    ToggleButton::Options options = Column();
    options.onToggledOn = [&] { calls += "on "; };
    options.onToggledOff = [&] { calls += "off "; };
    ToggleButton button(nullptr, std::move(options));
    EXPECT_TRUE(button.OnClick());
    EXPECT_TRUE(button.IsToggled());
    EXPECT_TRUE(button.OnClick());
    EXPECT_FALSE(button.IsToggled());
    EXPECT_EQ(calls, "on off ");
}

TEST_F(ToggleButtonTest, CallsNothingWhenItIsToggledFromOutside) {
    ToggleButton::Options options = Column();
    options.onToggledOn = [] { FAIL(); };
    options.onToggledOff = [] { FAIL(); };
    ToggleButton button(nullptr, std::move(options));
    button.SetToggled(true);
    EXPECT_TRUE(button.IsToggled());
    button.SetToggled(true);
    button.Toggle();
    EXPECT_FALSE(button.IsToggled());
    button.Toggle();
    EXPECT_TRUE(button.IsToggled());
    button.SetToggled(false);
    EXPECT_FALSE(button.IsToggled());
}

TEST_F(ToggleButtonTest, HasAClickOfItsOwnInTheThirdState) {
    std::string calls;
    ToggleButton::Options options = Column();
    options.onToggledOn = [] { FAIL(); };
    options.onToggledOff = [] { FAIL(); };
    ToggleButton button(nullptr, std::move(options));
    button.SetToggled(true);
    button.ConfigureThirdState(
        nullptr, "", "", [&] { calls += "enter "; }, [&] { calls += "click "; });
    EXPECT_FALSE(button.IsInThirdState());
    button.SetThirdState(true);
    EXPECT_EQ(calls, "enter ");
    EXPECT_TRUE(button.OnClick());
    EXPECT_TRUE(button.IsInThirdState()) << "a click never leaves it";
    EXPECT_TRUE(button.IsToggled());
    button.SetThirdState(false);
    EXPECT_EQ(calls, "enter click ");
    EXPECT_TRUE(button.IsToggled());
}

TEST_F(ToggleButtonTest, RaisesWithoutAFunctionAfterItsStateHasChanged) {
    ToggleButton::Options options = Column();
    options.onToggledOn = nullptr;
    options.onToggledOff = nullptr;
    ToggleButton button(nullptr, std::move(options));
    EXPECT_THROW(button.OnClick(), std::bad_function_call);
    EXPECT_TRUE(button.IsToggled());
    EXPECT_THROW(button.OnClick(), std::bad_function_call);
    EXPECT_FALSE(button.IsToggled());
    EXPECT_THROW(button.SetThirdState(true), std::bad_function_call);
    EXPECT_TRUE(button.IsInThirdState());
    EXPECT_THROW(button.OnClick(), std::bad_function_call);
    EXPECT_FALSE(button.IsToggled());
    EXPECT_NO_THROW(button.SetThirdState(false));
    EXPECT_FALSE(button.IsInThirdState());
}

TEST_F(ToggleButtonTest, MayBeDestroyedByItsFunctions) {
    std::unique_ptr<ToggleButton> button;
    const std::string seen = "a name that is long enough to lie on the heap";
    int calls = 0;
    const std::function<void()> destroy = [&button, &calls, seen] {
        button.reset();
        EXPECT_EQ(seen.size(), 45U);
        ++calls;
    };
    const auto make = [&] {
        ToggleButton::Options options = Column();
        options.onToggledOn = destroy;
        options.onToggledOff = destroy;
        button = std::make_unique<ToggleButton>(Renderer(), std::move(options));
        return button.get();
    };
    EXPECT_TRUE(make()->OnClick());
    ToggleButton* clicked = make();
    clicked->SetToggled(true);
    EXPECT_TRUE(clicked->OnClick());
    clicked = make();
    clicked->ConfigureThirdState(Renderer(), "", "", destroy, destroy);
    clicked->SetThirdState(true);
    clicked = make();
    clicked->ConfigureThirdState(
        Renderer(), "", "", [] {}, destroy);
    clicked->SetThirdState(true);
    EXPECT_TRUE(clicked->OnClick());
    EXPECT_EQ(calls, 4);
}

TEST_F(ToggleButtonTest, MatchesItsOffLabelWhateverItsState) {
    ToggleButton::Options options = Column();
    options.fixedLabelMode = true;
    options.fixedLabel = "Fixed";
    ToggleButton button(nullptr, std::move(options));
    for (const bool toggled : {false, true}) {
        button.SetToggled(toggled);
        EXPECT_TRUE(button.MatchesLabel("Off"));
        EXPECT_FALSE(button.MatchesLabel("On"));
        EXPECT_FALSE(button.MatchesLabel("Fixed"));
        EXPECT_FALSE(button.MatchesLabel(""));
    }
    EnterThirdState(button);
    EXPECT_TRUE(button.MatchesLabel("Off"));
    EXPECT_FALSE(button.MatchesLabel("Third"));
}

TEST_F(ToggleButtonTest, ReleasesTheRastersOfItsLabels) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    button.SetToggled(true);
    button.Render(Renderer(), kCentre);
    EnterThirdState(button);
    button.Render(Renderer(), kCentre);
    const size_t before = Sdl().LiveTextures();
    button.ReleaseTextTextures();
    EXPECT_EQ(Sdl().LiveTextures(), before - 3);

    options = Column();
    options.showLabel = true;
    options.fixedLabelMode = true;
    options.fixedLabel = "Fixed";
    ToggleButton fixed(Renderer(), std::move(options));
    fixed.Render(Renderer(), kCentre);
    const size_t withLabel = Sdl().LiveTextures();
    fixed.ReleaseTextTextures();
    EXPECT_EQ(Sdl().LiveTextures(), withLabel - 1);
}

TEST_F(ToggleButtonTest, KeepsARasterForEachState) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    ToggleButton button(Renderer(), std::move(options));
    for (int round = 0; round < 3; ++round) {
        button.Render(Renderer(), kCentre);
        button.Toggle();
        button.Render(Renderer(), kCentre);
        button.Toggle();
    }
    EXPECT_EQ(RasterisedTexts(), (std::vector<std::string>{"Off", "On"}));
}

TEST_F(ToggleButtonTest, SurvivesTheLossOfItsRenderer) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    ToggleButton button(nullptr, std::move(options));
    {
        const Testing::PixelReader lost(320, 240);
        button.ConfigureThirdState(
            lost.Renderer(), kWideIcon, "Third", [] {}, [] {});
        button.SetBadge(lost.Renderer(), kTallIcon);
        button.SetShowBadge(true);
        button.SetShowTooltip(true);
        button.hovered = true;
        button.Render(lost.Renderer(), kCentre);
        button.SetThirdState(true);
        button.Render(lost.Renderer(), kCentre);
        button.ReleaseTextures();
        ReleaseRendererTextures(lost.Renderer());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
        EXPECT_EQ(button.GetOffTexture(), nullptr);
    }
    button.hovered = false;
    button.Render(Renderer(), kCentre);
    ExpectLabelBelow("Third");
    ExpectIcon(kWideIcon, {145, 101, 30, 20});
    ExpectIcon(kTallIcon, {173, 73, 8, 30});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ToggleButtonTest, CostsNothingButItsDrawingWhileNothingChanges) {
    ToggleButton::Options options = Column();
    options.showLabel = true;
    ToggleButton button(Renderer(), std::move(options));
    button.SetShowTooltip(true);
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    Calls().Clear();
    AllocationCounter::Start();
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_EQ(Measurements(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
