#include "ui/TextTexture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/ui/ToolkitTest.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using Testing::Fake;
using Testing::LogLine;
using Testing::Measurements;
using Testing::RasterisedTexts;
using Testing::Sdl;
using Texts = std::vector<std::string>;

const std::string kLongText = "A rather long text for its place";

class TextTextureTest : public Testing::ToolkitTest {
protected:
    TextTextureTest() {
        text_.SetFontName(FontRegular);
        text_.SetFontSize(14);
    }

    // Draws it, and forgets the calls.
    void Settle(SDL_Point topLeft = {10, 20}) {
        text_.RenderAt(Renderer(), topLeft);
        Calls().Clear();
    }

    TextTexture text_;
};

TEST_F(TextTextureTest, StartsEmptyAndOutOfDate) {
    const TextTexture text;
    EXPECT_TRUE(text.IsDirty());
    EXPECT_EQ(text.GetText(), "");
    EXPECT_EQ(text.GetWidth(), 0);
    EXPECT_EQ(text.GetHeight(), 0);
    EXPECT_EQ(text.GetTexture(), nullptr);
    EXPECT_FALSE(text.IsHovered());
    EXPECT_FALSE(text.IsExpanded());
    EXPECT_FALSE(text.IsLongText());
}

TEST_F(TextTextureTest, DrawsItsTextInWhiteAtItsTopLeftCorner) {
    text_.SetText("Hello");
    text_.RenderAt(Renderer(), {10, 20});
    ExpectText(FontRegular, 14, "Hello", {10, 20});
    EXPECT_TRUE(DrawnAsExpected());
    const SDL_Point size = SizeOf(FontRegular, 14, "Hello");
    EXPECT_EQ(text_.GetWidth(), size.x);
    EXPECT_EQ(text_.GetHeight(), size.y);
    EXPECT_FALSE(text_.IsDirty());
}

TEST_F(TextTextureTest, ComparesBeforeItStores) {
    const std::vector<std::function<void()>> changes = {
        [this] { text_.SetText("Hello you"); },
        [this] { text_.SetFontName(FontBolder); },
        [this] { text_.SetFontSize(15); },
        [this] {
            text_.SetColor({255, 255, 255, 254});
        },
        [this] {
            text_.SetColor({255, 255, 254, 254});
        },
        [this] {
            text_.SetColor({255, 254, 254, 254});
        },
        [this] {
            text_.SetColor({254, 254, 254, 254});
        },
        [this] { text_.SetStyle(TTF_STYLE_UNDERLINE); },
        [this] { text_.SetMaxWidth(20); },
        [this] { text_.SetExpandOnHover(true); },
    };
    text_.SetText("Hello");
    Settle();
    for (size_t index = 0; index < changes.size(); ++index) {
        changes[index]();
        EXPECT_TRUE(text_.IsDirty()) << index;
        Settle();
        EXPECT_FALSE(text_.IsDirty()) << index;
        changes[index]();
        EXPECT_FALSE(text_.IsDirty()) << index;
    }
}

TEST_F(TextTextureTest, StartsFromTheValuesThatItsSettersCompareWith) {
    TextTexture text;
    text.Rebuild(Renderer());
    ASSERT_FALSE(text.IsDirty());
    text.SetText("");
    text.SetFontName("");
    text.SetFontSize(0);
    text.SetColor({255, 255, 255, 255});
    text.SetStyle(TTF_STYLE_NORMAL);
    text.SetMaxWidth(-1);
    text.SetExpandOnHover(false);
    EXPECT_FALSE(text.IsDirty());
}

TEST_F(TextTextureTest, NeedsNoRebuildForItsClipLines) {
    text_.SetText("Hello");
    Settle();
    text_.SetClipTop(3);
    text_.SetClipBottom(100);
    EXPECT_FALSE(text_.IsDirty());
}

TEST_F(TextTextureTest, IsRasterisedOnceForAnyNumberOfChanges) {
    text_.SetText("Hello");
    Settle();
    text_.RenderAt(Renderer(), {30, 40});
    EXPECT_EQ(Rebuilds(), 0U);
    text_.SetText("Bye");
    text_.SetColor({1, 2, 3, 255});
    text_.SetFontSize(20);
    text_.RenderAt(Renderer(), {30, 40});
    text_.RenderAt(Renderer(), {31, 40});
    EXPECT_EQ(Rebuilds(), 1U);
    EXPECT_EQ(RasterisedTexts(), Texts{"Bye"});
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
}

TEST_F(TextTextureTest, AllocatesAndMeasuresNothingWhileNothingChanges) {
    const std::string label = "A label of 24 characters";
    const auto draw = [&] {
        text_.SetText(label);
        text_.SetFontName(FontRegular);
        text_.SetFontSize(14);
        text_.SetColor({255, 255, 255, 255});
        (void)text_.MeasureText();
        text_.RenderAt(Renderer(), {10, 20});
    };
    draw();
    Calls().Clear();
    AllocationCounter::Start();
    draw();
    draw();
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_EQ(Measurements(), 0U);
    EXPECT_EQ(Rebuilds(), 0U);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 0U);
}

TEST_F(TextTextureTest, IsLongAboveThreeBytes) {
    text_.SetText("abc");
    EXPECT_FALSE(text_.IsLongText());
    text_.SetText("abcd");
    EXPECT_TRUE(text_.IsLongText());
    text_.SetText("\u00E9\u00E9");
    EXPECT_TRUE(text_.IsLongText());
}

TEST_F(TextTextureTest, IsNeverShortenedWhenShort) {
    text_.SetText("WWW");
    Settle();
    const int width = text_.GetWidth();
    text_.SetMaxWidth(10);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(RasterisedTexts(), Texts{"WWW"});
    EXPECT_EQ(text_.GetWidth(), width);
}

TEST_F(TextTextureTest, IsShortenedToItsMaxWidth) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(100);
    const int perByte = SizeOf(FontRegular, 14, kLongText).x / static_cast<int>(kLongText.size());
    const auto kept = static_cast<size_t>(100 / perByte - 3);
    const std::string shortened = kLongText.substr(0, kept) + "...";
    Calls().Clear();
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(RasterisedTexts(), Texts{shortened});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, shortened).x);
    ExpectText(FontRegular, 14, shortened, {10, 20});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_EQ(text_.GetText(), kLongText);
}

TEST_F(TextTextureTest, IsWholeAtExactlyItsMaxWidth) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(SizeOf(FontRegular, 14, kLongText).x);
    Calls().Clear();
    text_.RenderAt(Renderer(), {10, 20});
    text_.SetMaxWidth(text_.GetWidth() - 1);
    text_.RenderAt(Renderer(), {10, 20});
    const Texts texts = RasterisedTexts();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0], kLongText);
    EXPECT_NE(texts[1], kLongText);
}

TEST_F(TextTextureTest, JudgesItsMaxWidthInLogicalPixels) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(SizeOf(FontRegular, 14, kLongText).x + 4);
    SetContentScale(2.0F);
    Calls().Clear();
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(RasterisedTexts(), Texts{kLongText});
}

TEST_F(TextTextureTest, HasNoLimitBelowOne) {
    text_.SetText(kLongText);
    for (const int width : {0, -1, -1000}) {
        text_.SetMaxWidth(width);
        Calls().Clear();
        text_.Rebuild(Renderer());
        EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, kLongText).x) << width;
    }
}

TEST_F(TextTextureTest, IsWholeWhereNotEvenTheDotsFit) {
    text_.SetText(kLongText);
    const int perByte = SizeOf(FontRegular, 14, kLongText).x / static_cast<int>(kLongText.size());
    text_.SetMaxWidth(3 * perByte - 1);
    Calls().Clear();
    text_.RenderAt(Renderer(), {0, 0});
    EXPECT_EQ(RasterisedTexts(), Texts{kLongText});
    text_.SetMaxWidth(3 * perByte);
    Calls().Clear();
    text_.RenderAt(Renderer(), {0, 0});
    EXPECT_EQ(RasterisedTexts(), Texts{"A..."});
}

TEST_F(TextTextureTest, IsWholeWithMoreBytesThanPixels) {
    // Each is three bytes, and of no width.
    std::string text;
    for (int count = 0; count < 40; ++count) text += "\u200B";
    text += "wwww";
    ASSERT_LT(SizeOf(FontRegular, 14, text).x, static_cast<int>(text.size()));
    text_.SetText(text);
    text_.SetMaxWidth(5);
    Calls().Clear();
    text_.RenderAt(Renderer(), {0, 0});
    EXPECT_EQ(RasterisedTexts(), Texts{text});
}

TEST_F(TextTextureTest, ShowsTheWholeTextWhileHovered) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(100);
    text_.SetExpandOnHover(true);
    Settle();
    const int shortened = text_.GetWidth();

    text_.OnHover({12, 22});
    EXPECT_TRUE(text_.IsExpanded());
    text_.RenderAt(Renderer(), {10, 20});
    text_.OnHover({12, 22});
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(RasterisedTexts(), Texts{kLongText});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, kLongText).x);

    Calls().Clear();
    text_.OnHover({9, 22});
    EXPECT_FALSE(text_.IsExpanded());
    text_.RenderAt(Renderer(), {10, 20});
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(RasterisedTexts().size(), 1U);
    EXPECT_EQ(text_.GetWidth(), shortened);
}

TEST_F(TextTextureTest, StaysShortenedUnderThePointerUnlessToldToExpand) {
    text_.SetText(kLongText);
    text_.SetMaxWidth(100);
    Settle();
    text_.OnHover({12, 22});
    EXPECT_TRUE(text_.IsHovered());
    EXPECT_TRUE(text_.IsDirty());
    EXPECT_FALSE(text_.IsExpanded());
    text_.RenderAt(Renderer(), {10, 20});
    ASSERT_EQ(RasterisedTexts().size(), 1U);
    EXPECT_NE(RasterisedTexts()[0], kLongText);
}

TEST_F(TextTextureTest, IsHoveredWhereItWasLastDrawn) {
    text_.SetText("Hello");
    Settle({10, 20});
    const int right = 10 + text_.GetWidth();
    const int bottom = 20 + text_.GetHeight();
    const auto hits = [this](int x, int y) {
        text_.OnHover({x, y});
        return text_.IsHovered();
    };
    EXPECT_TRUE(hits(10, 20));
    EXPECT_TRUE(hits(right - 1, bottom - 1));
    EXPECT_FALSE(hits(9, 20));
    EXPECT_FALSE(hits(10, 19));
    EXPECT_FALSE(hits(right, 20));
    EXPECT_FALSE(hits(10, bottom));
    Settle({110, 120});
    EXPECT_FALSE(hits(10, 20));
    EXPECT_TRUE(hits(110, 120));
}

TEST_F(TextTextureTest, IsNotHoveredBeforeItWasDrawn) {
    text_.SetText("Hello");
    text_.OnHover({0, 0});
    EXPECT_FALSE(text_.IsHovered());
}

TEST_F(TextTextureTest, KeepsItsPlaceWhenNothingWasDrawn) {
    text_.SetText("Hello");
    Settle({10, 20});
    text_.ReleaseTexture();
    Sdl().Fail("TTF_RenderUTF8_Blended");
    text_.RenderAt(Renderer(), {100, 100});
    text_.SetColor({9, 9, 9, 255});
    text_.Rebuild(Renderer());
    text_.OnHover({10, 20});
    EXPECT_TRUE(text_.IsHovered());
}

TEST_F(TextTextureTest, IsRasterisedAtItsPhysicalSize) {
    text_.SetText("Hello");
    SetContentScale(2.0F);
    text_.RenderAt(Renderer(), {10, 20});
    ASSERT_EQ(Calls().Count("TTF_OpenFont"), 1U);
    EXPECT_EQ(Calls().Of("TTF_OpenFont")[0].arguments[1], "28");
    const SDL_Point physical = SizeOf(FontRegular, 28, "Hello");
    EXPECT_EQ(text_.GetWidth(), static_cast<int>(std::round(physical.x / 2.0)));
    EXPECT_EQ(text_.GetHeight(), static_cast<int>(std::round(physical.y / 2.0)));
}

TEST_F(TextTextureTest, IsSharpAtEveryContentScale) {
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

TEST_F(TextTextureTest, RoundsItsPhysicalSize) {
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

TEST_F(TextTextureTest, FollowsTheHorizontalScaleAlone) {
    text_.SetText("Hello");
    SDL_RenderSetScale(Renderer(), 2.0F, 3.0F);
    text_.Rebuild(Renderer());
    EXPECT_EQ(Calls().Of("TTF_OpenFont").at(0).arguments[1], "28");
    const SDL_Point physical = SizeOf(FontRegular, 28, "Hello");
    EXPECT_EQ(text_.GetHeight(), static_cast<int>(std::round(physical.y / 2.0)));
}

TEST_F(TextTextureTest, KeepsItsRasterWhenOnlyTheScaleChanges) {
    text_.SetText("Hello");
    Settle();
    SetContentScale(2.0F);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(Rebuilds(), 0U);
}

TEST_F(TextTextureTest, IsMeasuredInLogicalPixelsWithoutARaster) {
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

TEST_F(TextTextureTest, IsMeasuredAboutAsItIsDrawn) {
    text_.SetText("Hello");
    SetContentScale(2.0F);
    text_.Rebuild(Renderer());
    EXPECT_NEAR(text_.MeasureText().x, text_.GetWidth(), 2);
    EXPECT_NEAR(text_.MeasureText().y, text_.GetHeight(), 2);
}

TEST_F(TextTextureTest, IsMeasuredOnceForEachChangeOfItsExtent) {
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

TEST_F(TextTextureTest, HasNoExtentWithoutTextFontOrSize) {
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

TEST_F(TextTextureTest, IsMeasuredAgainOnceItsFontIsThere) {
    text_.SetText("Hello");
    Sdl().Fail("TTF_OpenFont");
    EXPECT_EQ(text_.MeasureText(), (SDL_Point{0, 0}));
    EXPECT_EQ(text_.MeasureText(), SizeOf(FontRegular, 14, "Hello"));
}

TEST_F(TextTextureTest, HasNoExtentWhereTheLibraryGivesNone) {
    text_.SetText("Hello");
    Sdl().Fail("TTF_SizeUTF8");
    EXPECT_EQ(text_.MeasureText(), (SDL_Point{0, 0}));
}

TEST_F(TextTextureTest, HasItsOwnStyleOnTheSharedFont) {
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

TEST_F(TextTextureTest, IsMeasuredInItsOwnStyle) {
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

TEST_F(TextTextureTest, KeepsItsRasterWithoutTextFontOrSize) {
    const std::vector<std::function<void()>> changes = {
        [this] { text_.SetText(""); },
        [this] {
            text_.SetText("Hello");
            text_.SetFontName("");
        },
        [this] {
            text_.SetFontName(FontRegular);
            text_.SetFontSize(0);
        },
        [this] { text_.SetFontSize(-1); },
    };
    text_.SetText("Hello");
    Settle();
    const int width = text_.GetWidth();
    for (size_t index = 0; index < changes.size(); ++index) {
        changes[index]();
        Clear();
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_FALSE(text_.IsDirty()) << index;
        EXPECT_EQ(text_.GetWidth(), width) << index;
        ExpectText(FontRegular, 14, "Hello", {10, 20});
        EXPECT_TRUE(DrawnAsExpected()) << index;
    }
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextTextureTest, DrawsNothingWithoutTextFontOrSize) {
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_FALSE(text_.IsDirty());
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 0U);
    EXPECT_TRUE(NothingDrawn());
}

TEST_F(TextTextureTest, ReportsAMissingFontOncePerChange) {
    text_.SetText("Hello");
    text_.SetFontName("NoSuchFont");
    const std::vector<LogLine> once = {{4, "Couldn't find requested font 'NoSuchFont'."}};
    text_.RenderAt(Renderer(), {10, 20});
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_FALSE(text_.IsDirty());
    EXPECT_EQ(Fake().Logs(), once);
    EXPECT_TRUE(NothingDrawn());
    text_.SetText("Bye");
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(Fake().Logs().size(), 2U);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 2U);
}

TEST_F(TextTextureTest, DrawsItsOldRasterWhenItsNewFontIsMissing) {
    text_.SetText("Hello");
    Settle();
    text_.SetFontName("NoSuchFont");
    Clear();
    text_.RenderAt(Renderer(), {10, 20});
    ExpectText(FontRegular, 14, "Hello", {10, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureTest, IsGoneWhenItCannotBeRasterised) {
    for (const char* call : {"TTF_RenderUTF8_Blended", "SDL_CreateTextureFromSurface"}) {
        text_.SetText("Hello");
        Settle();
        text_.SetText("Bye");
        Sdl().Fail(call);
        Clear();
        text_.RenderAt(Renderer(), {10, 20});
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_EQ(Calls().Count(call), 1U);
        EXPECT_EQ(text_.GetTexture(), nullptr) << call;
        EXPECT_EQ(text_.GetWidth(), 0) << call;
        EXPECT_EQ(text_.GetHeight(), 0) << call;
        EXPECT_FALSE(text_.IsDirty()) << call;
        EXPECT_EQ(Sdl().LiveTextures(), 0U) << call;
        EXPECT_TRUE(NothingDrawn()) << call;
    }
}

TEST_F(TextTextureTest, WaitsForARenderer) {
    text_.SetText("Hello");
    text_.Rebuild(nullptr);
    text_.RenderAt(nullptr, {10, 20});
    text_.RenderInto(nullptr, nullptr);
    EXPECT_TRUE(text_.IsDirty());
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_FALSE(text_.IsDirty());
}

TEST_F(TextTextureTest, IsCutAtItsLines) {
    text_.SetText("Hello");
    SetContentScale(2.0F);
    Settle({10, 20});
    const SDL_Point physical = SizeOf(FontRegular, 28, "Hello");
    const int width = text_.GetWidth();
    const int height = text_.GetHeight();
    const auto copied = [this](int top, int bottom) {
        text_.SetClipTop(top);
        text_.SetClipBottom(bottom);
        Calls().Clear();
        text_.RenderAt(Renderer(), {10, 20});
        const auto arguments = Calls().Of("SDL_RenderCopy").at(0).arguments;
        return std::make_pair(arguments.at(2), arguments.at(3));
    };
    const auto text = [](const SDL_Rect& rect) {
        return std::to_string(rect.x) + ' ' + std::to_string(rect.y) + ' ' + std::to_string(rect.w) + ' ' +
               std::to_string(rect.h);
    };
    EXPECT_EQ(copied(0, 0), std::make_pair(std::string("null"), text({10, 20, width, height})));

    SDL_Rect cut{10, 20, width, height};
    auto source = ComputeVerticalClip(cut, physical.x, physical.y, {24, 0});
    ASSERT_TRUE(source.has_value());
    EXPECT_EQ(copied(24, 0), std::make_pair(text(*source), text(cut)));
    EXPECT_EQ(cut.y, 24);

    cut = {10, 20, width, height};
    source = ComputeVerticalClip(cut, physical.x, physical.y, {0, 30});
    ASSERT_TRUE(source.has_value());
    EXPECT_EQ(copied(0, 30), std::make_pair(text(*source), text(cut)));
    EXPECT_NEAR(cut.h, 10, 1);
}

TEST_F(TextTextureTest, IsStretchedIntoAnArea) {
    text_.SetText("Hello");
    const SDL_Rect area{30, 40, 100, 50};
    text_.RenderInto(Renderer(), &area);
    EXPECT_EQ(Rebuilds(), 1U);
    const auto copies = Calls().Of("SDL_RenderCopy");
    ASSERT_EQ(copies.size(), 1U);
    EXPECT_EQ(copies[0].arguments[2], "null");
    EXPECT_EQ(copies[0].arguments[3], "30 40 100 50");
    // Where it was drawn at a point counts for hit testing, and it was not.
    text_.OnHover({31, 41});
    EXPECT_FALSE(text_.IsHovered());
}

TEST_F(TextTextureTest, ReleasesItsRaster) {
    text_.SetText("Hello");
    Settle();
    text_.ReleaseTexture();
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 1U);
    EXPECT_EQ(text_.GetWidth(), 0);
    EXPECT_EQ(text_.GetHeight(), 0);
    EXPECT_TRUE(text_.IsDirty());
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(Rebuilds(), 1U);
}

TEST_F(TextTextureTest, HasNothingToReleaseBeforeItWasDrawn) {
    text_.Rebuild(Renderer());
    ASSERT_FALSE(text_.IsDirty());
    text_.ReleaseTexture();
    EXPECT_FALSE(text_.IsDirty());
}

TEST_F(TextTextureTest, SurvivesTheLossOfItsRenderer) {
    text_.SetText("Hello");
    {
        const Testing::PixelReader lost(50, 50);
        text_.RenderAt(lost.Renderer(), {0, 0});
        text_.ReleaseTexture();
    }
    text_.RenderAt(Renderer(), {10, 20});
    ExpectText(FontRegular, 14, "Hello", {10, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureTest, TakesItsTextureAlong) {
    {
        TextTexture text;
        text.SetFontName(FontRegular);
        text.SetFontSize(14);
        text.SetText("Hello");
        text.Rebuild(Renderer());
        EXPECT_EQ(Sdl().LiveTextures(), 1U);
    }
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TextTextureTest, IsDrawnInItsColour) {
    text_.SetText("Hello");
    text_.SetColor({252, 44, 3, 150});
    text_.RenderAt(Renderer(), {10, 20});
    ExpectText(FontRegular, 14, "Hello", {10, 20}, {252, 44, 3, 150});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureTest, IsNeverInvisible) {
    text_.SetText("Hello");
    text_.SetColor({196, 196, 196, 0});
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(Calls().Of("TTF_RenderUTF8_Blended").at(0).arguments[4], "255");
    ExpectText(FontRegular, 14, "Hello", {10, 20}, {196, 196, 196, 255});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(TextTextureTest, IsOfOneExtentMeasuredAndDrawnInAnyScript) {
    const std::string names[] = {
        "\u0418\u0432\u0430\u043D \u041F\u0435\u0442\u0440\u043E\u0432",
        "\u0393\u03B9\u03CE\u03C1\u03B3\u03BF\u03C2",
        "\u00C9mile Zo\u00EB",
    };
    for (const std::string& name : names) {
        text_.SetText(name);
        text_.Rebuild(Renderer());
        EXPECT_EQ(text_.MeasureText().x, text_.GetWidth()) << name;
        EXPECT_EQ(text_.MeasureText(), SizeOf(FontRegular, 14, name)) << name;
    }
    // Each of its letters is two bytes: taken one by one it would come out far wider.
    const SDL_Point latin = SizeOf(FontRegular, 14, "Ivan Petrov");
    text_.SetText(names[0]);
    EXPECT_LT(text_.MeasureText().x, latin.x * 3 / 2);
}

TEST_F(TextTextureTest, DrawsWhatItCanOfBrokenUtf8) {
    const std::string texts[] = {"\xFF\xFE\x80",
                                 "abc\xC3",
                                 "\xE6\x9D",
                                 "\xF0\x9F\x98",
                                 "\xED\xA0\x80 x",
                                 "\xF8\x88\x80\x80\x80",
                                 "a\xC0\xAF"
                                 "b",
                                 "tab\tnew\nline\x01"};
    for (const std::string& text : texts) {
        text_.SetText(text);
        (void)text_.MeasureText();
        text_.RenderAt(Renderer(), {10, 20});
        text_.SetMaxWidth(20);
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_FALSE(text_.IsDirty());
        text_.SetMaxWidth(-1);
    }
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextTextureTest, EndsAtAByteOfZero) {
    text_.SetText(std::string("abc\0def", 7));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, "abc").x);
    text_.SetText(std::string("\0def", 4));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), 0);
}

TEST_F(TextTextureTest, ShortensATextOf100000Bytes) {
    std::string text;
    while (text.size() < 100000) text += "lorem ipsum ";
    text.resize(100000);
    text_.SetText(text);
    text_.SetMaxWidth(100);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_NEAR(text_.GetWidth(), 100, 20);
    EXPECT_GT(text_.MeasureText().x, 300000);
    EXPECT_EQ(RasterisedTexts().at(0).substr(0, 5), "lorem");
}

TEST_F(TextTextureTest, DrawsATextOf100000BytesWhole) {
    text_.SetText(std::string(100000, 'i'));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, std::string(100000, 'i')).x);
}

TEST_F(TextTextureTest, RasterisesNothingBeyondReason) {
    text_.SetText("Settings");
    text_.SetFontSize(10200);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_EQ(text_.GetTexture(), nullptr);
    EXPECT_EQ(text_.GetWidth(), 0);
    EXPECT_FALSE(text_.IsDirty());
    EXPECT_TRUE(NothingDrawn());
    EXPECT_GT(text_.MeasureText().x, 30000);
}

TEST_F(TextTextureTest, SurvivesTheWildestSizes) {
    text_.SetText("Settings");
    for (const int size : {1, 2, 30000, 70000, 1 << 26, 2147483647}) {
        text_.SetFontSize(size);
        (void)text_.MeasureText();
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_FALSE(text_.IsDirty()) << size;
    }
}

}  // namespace
}  // namespace Corvanta::UI
