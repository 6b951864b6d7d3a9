#include "ui/TextButton.h"

#include "tests/ui/ToolkitTest.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::RasterisedTexts;
using Testing::Sdl;

class TextButtonTest : public Testing::ToolkitTest {};

TEST_F(TextButtonTest, IsALineOfBoldWhiteTextAtItsTopLeftCorner) {
    TextButton button("Leave", nullptr, 16);
    button.Render(Renderer(), {30, 40});
    ExpectText(FontBolder, 16, "Leave", {30, 40});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
    EXPECT_EQ(button.GetTextWidth(), SizeOf(FontBolder, 16, "Leave").x);
}

TEST_F(TextButtonTest, CannotBeHoveredBeforeItsSecondDrawing) {
    TextButton button("Leave", nullptr, 16);
    button.Render(Renderer(), {30, 40});
    EXPECT_EQ(button.rect, (SDL_Rect{30, 40, 0, 0}));
    button.OnHover({30, 40});
    EXPECT_FALSE(button.hovered);
    button.Render(Renderer(), {30, 40});
    const SDL_Point size = SizeOf(FontBolder, 16, "Leave");
    EXPECT_EQ(button.rect, (SDL_Rect{30, 40, size.x, size.y}));
    button.OnHover({30, 40});
    EXPECT_TRUE(button.hovered);
}

TEST_F(TextButtonTest, IsUnderlinedWhileHovered) {
    TextButton button("Leave", nullptr, 16);
    button.Render(Renderer(), {30, 40});
    button.hovered = true;
    Clear();
    button.Render(Renderer(), {30, 40});
    ExpectText(FontBolder, 16, "Leave", {30, 40}, {255, 255, 255, 255}, TTF_STYLE_UNDERLINE);
    EXPECT_TRUE(DrawnAsExpected());

    button.hovered = false;
    Clear();
    Calls().Clear();
    button.Render(Renderer(), {30, 40});
    button.Render(Renderer(), {30, 40});
    EXPECT_EQ(RasterisedTexts().size(), 1U);
    ExpectText(FontBolder, 16, "Leave", {30, 40});
    ExpectText(FontBolder, 16, "Leave", {30, 40});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextButtonTest, TakesEveryClick) {
    int clicks = 0;
    TextButton button(
        "Leave", [&] { ++clicks; }, 16);
    EXPECT_TRUE(button.OnClick());
    EXPECT_EQ(clicks, 1);
    TextButton idle("Leave", nullptr, 16);
    EXPECT_TRUE(idle.OnClick());
}

TEST_F(TextButtonTest, MayBeDestroyedByItsFunction) {
    std::unique_ptr<TextButton> button;
    std::string seen = "a name that is long enough to lie on the heap";
    button = std::make_unique<TextButton>(
        "Leave",
        [&button, seen] {
            button.reset();
            EXPECT_EQ(seen.size(), 45U);
        },
        16);
    TextButton* const clicked = button.get();
    EXPECT_TRUE(clicked->OnClick());
    EXPECT_EQ(button, nullptr);
}

TEST_F(TextButtonTest, ShowsNothingOnceItsTextIsEmpty) {
    TextButton button("Leave", nullptr, 16);
    button.Render(Renderer(), {30, 40});
    button.SetText("");
    Clear();
    button.Render(Renderer(), {30, 40});
    EXPECT_TRUE(NothingDrawn());
    EXPECT_EQ(button.rect, (SDL_Rect{30, 40, 0, 0}));
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TextButtonTest, FollowsItsTextAndSize) {
    TextButton button("Leave", nullptr, 16);
    button.SetText("Stay");
    button.SetFontSize(20);
    button.Render(Renderer(), {30, 40});
    ExpectText(FontBolder, 20, "Stay", {30, 40});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_EQ(button.GetText().GetText(), "Stay");
}

TEST_F(TextButtonTest, SurvivesTheLossOfItsRenderer) {
    TextButton button("Leave", nullptr, 16);
    {
        const Testing::PixelReader lost(50, 50);
        button.Render(lost.Renderer(), {0, 0});
        button.ReleaseTextures();
    }
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    button.Render(Renderer(), {30, 40});
    ExpectText(FontBolder, 16, "Leave", {30, 40});
    EXPECT_TRUE(DrawnAsExpected());
}

}  // namespace
}  // namespace Corvanta::UI
