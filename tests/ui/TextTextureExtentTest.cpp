// How large a text is: measured, drawn, and at every scale of its renderer.
#include <cmath>

#include "tests/ui/TextTextureTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::Fake;
using Testing::kLongText;
using Testing::Measurements;
using Testing::Sdl;

class TextTextureExtentTest : public Testing::TextTextureTestBase {};

TEST_F(TextTextureExtentTest, IsRasterisedAtItsPhysicalSize) {
    text_.SetText("Hello");
    SetContentScale(2.0F);
    text_.RenderAt(Renderer(), {10, 20});
    ASSERT_EQ(Calls().Count("TTF_OpenFont"), 1U);
    EXPECT_EQ(Calls().Of("TTF_OpenFont")[0].arguments[1], "28");
    const SDL_Point physical = SizeOf(FontRegular, 28, "Hello");
    EXPECT_EQ(text_.GetWidth(), static_cast<int>(std::round(physical.x / 2.0)));
    EXPECT_EQ(text_.GetHeight(), static_cast<int>(std::round(physical.y / 2.0)));
}

TEST_F(TextTextureExtentTest, IsSharpAtEveryContentScale) {
    // Of an even extent at twice the scale, so that it is drawn pixel for pixel.
    const auto isEven = [](const std::string& text, int size) {
        const SDL_Point extent = SizeOf(FontRegular, size, text);
        return extent.x % 2 == 0 && extent.y % 2 == 0;
    };
    int size = 12;
    std::string text = "Hello";
    while (SizeOf(FontRegular, 2 * size, text).y % 2 != 0) ++size;
    while (!isEven(text, 2 * size)) text += 'l';
    text_.SetText(text);
    text_.SetFontSize(size);
    SetContentScale(2.0F);
    text_.RenderAt(Renderer(), {10, 20});
    ExpectText(FontRegular, 2 * size, text, {20, 40});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureExtentTest, RoundsItsPhysicalSize) {
    text_.SetText("Hello");
    SetContentScale(1.25F);
    text_.Rebuild(Renderer());
    text_.SetFontSize(13);
    text_.Rebuild(Renderer());
    const auto opened = Calls().Of("TTF_OpenFont");
    ASSERT_EQ(opened.size(), 2U);
    EXPECT_EQ(opened[0].arguments[1], "18");  // 17.5
    EXPECT_EQ(opened[1].arguments[1], "16");  // 16.25
}

TEST_F(TextTextureExtentTest, FollowsTheHorizontalScaleAlone) {
    text_.SetText("Hello");
    SDL_RenderSetScale(Renderer(), 2.0F, 3.0F);
    text_.Rebuild(Renderer());
    EXPECT_EQ(Calls().Of("TTF_OpenFont").at(0).arguments[1], "28");
    const SDL_Point physical = SizeOf(FontRegular, 28, "Hello");
    EXPECT_EQ(text_.GetHeight(), static_cast<int>(std::round(physical.y / 2.0)));
}

TEST_F(TextTextureExtentTest, KeepsItsRasterWhenOnlyTheScaleChanges) {
    text_.SetText("Hello");
    Settle();
    SetContentScale(2.0F);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(Rebuilds(), 0U);
}

TEST_F(TextTextureExtentTest, IsMeasuredInLogicalPixelsWithoutARaster) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(50);
    SetContentScale(2.0F);
    const SDL_Point expected = SizeOf(FontRegular, 14, kLongText);
    Calls().Clear();
    EXPECT_EQ(text_.MeasureText(), expected);
    EXPECT_TRUE(text_.IsDirty());
    EXPECT_EQ(Rebuilds(), 0U);
    EXPECT_EQ(Calls().Of("TTF_OpenFont")[0].arguments[1], "14");
}

TEST_F(TextTextureExtentTest, IsMeasuredAboutAsItIsDrawn) {
    text_.SetText("Hello");
    SetContentScale(2.0F);
    text_.Rebuild(Renderer());
    EXPECT_NEAR(text_.MeasureText().x, text_.GetWidth(), 2);
    EXPECT_NEAR(text_.MeasureText().y, text_.GetHeight(), 2);
}

TEST_F(TextTextureExtentTest, IsMeasuredOnceForEachChangeOfItsExtent) {
    text_.SetText("Hello");
    (void)text_.MeasureText();
    (void)text_.MeasureText();
    EXPECT_EQ(Measurements(), 1U);
    text_.SetColor({1, 2, 3, 255});
    text_.SetMaxWidth(10);
    text_.SetText("Hello");
    (void)text_.MeasureText();
    EXPECT_EQ(Measurements(), 1U);

    text_.SetText("Hello you");
    EXPECT_EQ(text_.MeasureText(), SizeOf(FontRegular, 14, "Hello you"));
    text_.SetFontName(FontBolder);
    EXPECT_EQ(text_.MeasureText(), SizeOf(FontBolder, 14, "Hello you"));
    text_.SetFontSize(20);
    EXPECT_EQ(text_.MeasureText(), SizeOf(FontBolder, 20, "Hello you"));
}

TEST_F(TextTextureExtentTest, HasNoExtentWithoutTextFontOrSize) {
    const SDL_Point nothing{0, 0};
    EXPECT_EQ(text_.MeasureText(), nothing);
    text_.SetText("Hello");
    EXPECT_FALSE(text_.MeasureText() == nothing);
    text_.SetFontSize(0);
    EXPECT_EQ(text_.MeasureText(), nothing);
    text_.SetFontSize(-14);
    EXPECT_EQ(text_.MeasureText(), nothing);
    text_.SetFontSize(14);
    text_.SetFontName("");
    EXPECT_EQ(text_.MeasureText(), nothing);
    text_.SetFontName("NoSuchFont");
    EXPECT_EQ(text_.MeasureText(), nothing);
    text_.SetFontName(FontRegular);
    text_.SetText("");
    EXPECT_EQ(text_.MeasureText(), nothing);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextTextureExtentTest, IsMeasuredAgainOnceItsFontIsThere) {
    text_.SetText("Hello");
    Sdl().Fail("TTF_OpenFont");
    EXPECT_EQ(text_.MeasureText(), (SDL_Point{0, 0}));
    EXPECT_EQ(text_.MeasureText(), SizeOf(FontRegular, 14, "Hello"));
}

TEST_F(TextTextureExtentTest, HasNoExtentWhereTheLibraryGivesNone) {
    text_.SetText("Hello");
    Sdl().Fail("TTF_SizeUTF8");
    EXPECT_EQ(text_.MeasureText(), (SDL_Point{0, 0}));
}

TEST_F(TextTextureExtentTest, HasItsOwnStyleOnTheSharedFont) {
    TextTexture underlined;
    underlined.SetFontName(FontRegular);
    underlined.SetFontSize(14);
    underlined.SetText("Hello");
    underlined.SetStyle(TTF_STYLE_UNDERLINE);
    text_.SetText("Hello");

    underlined.RenderAt(Renderer(), {10, 20});
    text_.RenderAt(Renderer(), {10, 60});
    ExpectText(FontRegular, 14, "Hello", {10, 20}, {255, 255, 255, 255}, TTF_STYLE_UNDERLINE);
    ExpectText(FontRegular, 14, "Hello", {10, 60});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureExtentTest, IsMeasuredInItsOwnStyle) {
    constexpr int kSize = 40;
    const SDL_Point plain = SizeOf(FontBolder, kSize, "Hello");
    TextTexture underlined;
    underlined.SetFontName(FontBolder);
    underlined.SetFontSize(kSize);
    underlined.SetText("Hello");
    underlined.SetStyle(TTF_STYLE_UNDERLINE);
    underlined.Rebuild(Renderer());
    ASSERT_GT(underlined.GetHeight(), plain.y);

    text_.SetFontName(FontBolder);
    text_.SetFontSize(kSize);
    text_.SetText("Hello");
    EXPECT_EQ(text_.MeasureText(), plain);
    EXPECT_EQ(underlined.MeasureText().y, underlined.GetHeight());
    text_.SetStyle(TTF_STYLE_UNDERLINE);
    EXPECT_EQ(text_.MeasureText().y, underlined.GetHeight());
}

}  // namespace
}  // namespace Corvanta::UI
