#include "ui/Tooltip.h"

#include "tests/ui/ToolkitTest.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;

TEST(Tooltip, IsCentredOverAButton) {
    const TooltipLayout layout = LayoutButtonTooltip({10, 200, 101, 57}, {80, 12});
    EXPECT_EQ(layout.text, (SDL_Point{20, 168}));
    EXPECT_EQ(layout.plate, (SDL_Rect{15, 163, 88, 22}));
}

TEST(Tooltip, SticksOutOnBothSidesOfANarrowButton) {
    const TooltipLayout layout = LayoutButtonTooltip({10, 200, 101, 57}, {151, 13});
    EXPECT_EQ(layout.text, (SDL_Point{-15, 168}));
    EXPECT_EQ(layout.plate, (SDL_Rect{-19, 163, 159, 22}));
}

TEST(Tooltip, MayStandAboveTheWindow) {
    const TooltipLayout layout = LayoutButtonTooltip({0, 5, 40, 40}, {40, 10});
    EXPECT_EQ(layout.text, (SDL_Point{0, -17}));
    EXPECT_EQ(layout.plate, (SDL_Rect{-3, -20, 46, 16}));
}

TEST(Tooltip, MayBeHigherThanItsPlate) {
    const TooltipLayout layout = LayoutButtonTooltip({0, 100, 20, 10}, {20, 9});
    EXPECT_EQ(layout.text, (SDL_Point{0, 94}));
    EXPECT_EQ(layout.plate, (SDL_Rect{0, 96, 21, 4}));
}

TEST(Tooltip, KeepsMarginsByTheScaleOfItsControl) {
    const SDL_Rect control{10, 200, 100, 40};
    const TooltipLayout one = LayoutScaledTooltip(control, {60, 14}, 1.0F);
    EXPECT_EQ(one.text, (SDL_Point{30, 176}));
    EXPECT_EQ(one.plate, (SDL_Rect{26, 175, 68, 16}));
    const TooltipLayout larger = LayoutScaledTooltip(control, {60, 14}, 2.25F);
    EXPECT_EQ(larger.text, (SDL_Point{30, 173}));
    EXPECT_EQ(larger.plate, (SDL_Rect{21, 171, 78, 18}));
}

TEST(Tooltip, TruncatesItsMarginsAndItsDistance) {
    const SDL_Rect control{10, 200, 100, 40};
    const TooltipLayout half = LayoutScaledTooltip(control, {60, 15}, 1.5F);
    EXPECT_EQ(half.text, (SDL_Point{30, 175}));
    EXPECT_EQ(half.plate, (SDL_Rect{24, 174, 72, 17}));
    const TooltipLayout small = LayoutScaledTooltip(control, {61, 14}, 0.9F);
    EXPECT_EQ(small.text, (SDL_Point{29, 179}));
    EXPECT_EQ(small.plate, (SDL_Rect{26, 179, 67, 14}));
}

using TooltipDrawing = Testing::ToolkitTest;

TEST_F(TooltipDrawing, IsAPlateUnderAText) {
    TextTexture text;
    text.SetText("Mute");
    text.SetFontName(FontBolder);
    text.SetFontSize(12);
    RenderTooltip(Renderer(), text, {{50, 60, 70, 30}, {60, 65}}, {107, 107, 107, 255});
    ExpectFill({50, 60, 70, 30}, {107, 107, 107, 255});
    ExpectText(FontBolder, 12, "Mute", {60, 65});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TooltipDrawing, LeavesTheDrawColourWhite) {
    TextTexture text;
    RenderTooltip(Renderer(), text, {{0, 0, 4, 4}, {0, 0}}, {107, 107, 107, 255});
    EXPECT_EQ(Calls().Of("SDL_SetRenderDrawColor").back().arguments,
              (std::vector<std::string>{Testing::ToText(static_cast<const void*>(Renderer())), "255", "255",
                                        "255", "255"}));
}

}  // namespace
}  // namespace Corvanta::UI
