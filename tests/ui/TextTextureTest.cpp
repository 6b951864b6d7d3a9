#include "ui/TextTexture.h"

#include <functional>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/ui/TextTextureTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using Testing::Fake;
using Testing::kLongText;
using Testing::LogLine;
using Testing::Measurements;
using Testing::RasterisedTexts;
using Testing::Sdl;
using Testing::Texts;

class TextTextureTest : public Testing::TextTextureTestBase {};

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

}  // namespace
}  // namespace Corvanta::UI
