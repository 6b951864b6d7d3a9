// How much of a text is drawn, against the lines that the font library makes of it.
#include "drawing/TextRaster.h"

#include <memory>
#include <string>

#include "drawing/TextLines.h"
#include "tests/drawing/ShapeTest.h"
#include "tests/drawing/TestFont.h"
#include "tests/drawing/WrappedTexts.h"
#include "ui/SystemFontProvider.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using Testing::Sdl;
using Testing::WrappedTexts;

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

constexpr SDL_Color kWhite{255, 255, 255, 255};
constexpr int kWidest = 4096;
constexpr int64_t kMostPixels = int64_t{64} << 20U;
constexpr unsigned kSeed = 11;

TTF_Font* Font() {
    return UI::SystemFontProvider::Instance().GetFont("Arial");
}

class TextRasterTest : public Testing::ShapeTest {
protected:
    static void SetUpTestSuite() {
        static const bool isReady = (Testing::UseTestFont(), true);
        ASSERT_TRUE(isReady);
    }
    TextRasterTest() { TTF_SetFontStyle(Font(), TTF_STYLE_NORMAL); }

    int Number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(numbers_); }
    // Words and breaks, and of the wild ones other scripts and bytes that are no text.
    std::string Text(int pieces, bool isWild) {
        static const std::vector<std::string> kPieces = {"a",
                                                         "word",
                                                         "longwordlongwordlongword",
                                                         " ",
                                                         "  ",
                                                         "\t",
                                                         "\n",
                                                         "\n\n",
                                                         "i",
                                                         "WWWW",
                                                         "AVAVAV",
                                                         "\u0418\u0432",
                                                         "\u4E2D\u6587",
                                                         "\xC3",
                                                         "\xFF",
                                                         "\x80",
                                                         "e\u0301",
                                                         "fi",
                                                         "\uFEFF",
                                                         "\U0001F600",
                                                         "\xC0\xAF",
                                                         "\xC0\x8A",
                                                         "\r"};
        constexpr int kTame = 12;
        const int last = isWild ? static_cast<int>(kPieces.size()) - 1 : kTame;
        std::string text = "text";
        for (int i = 0; i < pieces; ++i) text += kPieces[static_cast<size_t>(Number(0, last))];
        return text;
    }
    static std::string Words(size_t bytes) {
        std::string text;
        while (text.size() < bytes) text += "lorem ipsum dolor ";
        text.resize(bytes);
        return text;
    }
    static Surface Library(const std::string& text, int wrapWidth) {
        return {TTF_RenderUTF8_Blended_Wrapped(Font(), text.c_str(), kWhite, static_cast<Uint32>(wrapWidth)),
                &SDL_FreeSurface};
    }
    Surface Raster(const std::string& text, int wrapWidth) {
        return {RasteriseText(Renderer(), Font(), text, kWhite, wrapWidth), &SDL_FreeSurface};
    }
    static int LinesOf(const std::string& text, int wrapWidth) {
        int lines = 0;
        for (size_t from = 0; from < text.size(); ++lines) from = NextLine(Font(), text, from, wrapWidth);
        return lines;
    }

private:
    std::mt19937 numbers_{kSeed};
};

TEST_F(TextRasterTest, BreaksLinesWhereTheLibraryDoes) {
    for (int i = 0; i < 300; ++i) {
        const std::string text = Text(Number(1, 60), true);
        const int wrapWidth = i % 10 == 0 ? 0 : Number(1, i % 3 == 0 ? 300 : 2500);
        SDL_Point size{0, 0};
        TTF_SizeUTF8(Font(), text.c_str(), &size.x, &size.y);
        const Surface whole = Library(text, wrapWidth);
        ASSERT_NE(whole, nullptr);
        const int skip = TTF_FontLineSkip(Font());
        ASSERT_EQ(std::max(size.y, skip) + (LinesOf(text, wrapWidth) - 1) * skip, whole->h)
            << text << " at " << wrapWidth;
    }
}

TEST_F(TextRasterTest, DrawsAllThatTheRenderersTexturesHoldAndALineLessOtherwise) {
    for (int i = 0; i < 30; ++i) {
        const std::string shown = Text(Number(20, 80), false) + 'x';
        const int wrapWidth = Number(300, 1500);
        const Surface whole = Library(shown, wrapWidth);
        ASSERT_NE(whole, nullptr);
        Calls().Clear();
        Sdl().LimitTextureSides(whole->h);
        EXPECT_EQ(Raster(shown, wrapWidth)->h, whole->h) << i;
        ASSERT_EQ(WrappedTexts().size(), 1U);
        EXPECT_EQ(WrappedTexts()[0].text, shown);
        Sdl().LimitTextureSides(whole->h - 1);
        EXPECT_EQ(Raster(shown, wrapWidth)->h, whole->h - TTF_FontLineSkip(Font())) << shown;
        Sdl().LimitTextureSides(0);
    }
}

TEST_F(TextRasterTest, DrawsALongParagraphWhole) {
    const int lines = static_cast<int>(kMostPixels / kWidest) / TTF_FontLineSkip(Font());
    std::string text = Words(4000);
    for (const std::string& more : {Words(1000), Words(90), std::string("lorem ")}) {
        while (LinesOf(text + more, kWidest) <= lines) text += more;
    }
    const Surface picture = Raster(text, kWidest);
    ASSERT_NE(picture, nullptr);
    ASSERT_EQ(WrappedTexts().back().text.size(), text.size());
    EXPECT_GT(picture->h, (lines - 1) * TTF_FontLineSkip(Font()));
}

TEST_F(TextRasterTest, FillsThePictureWithAParagraphThatIsTooLong) {
    for (const int wrapWidth : {kWidest, 2000}) {
        const Surface picture = Raster(Words(size_t{1} << 20U), wrapWidth);
        ASSERT_NE(picture, nullptr);
        const int64_t row = int64_t{wrapWidth} * TTF_FontLineSkip(Font());
        EXPECT_LE(int64_t{picture->w} * picture->h, kMostPixels);
        EXPECT_GT(int64_t{picture->w} * picture->h, kMostPixels - row) << wrapWidth;
    }
}

TEST_F(TextRasterTest, CutsBetweenCharacters) {
    std::string text;
    for (int i = 0; i < 4000; ++i) text += "\u4E2D";
    Sdl().LimitTextureSides(1000);
    ASSERT_NE(Raster(text, 1000), nullptr);
    EXPECT_EQ(WrappedTexts().back().text.size() % 3, 0U);
    EXPECT_GT(WrappedTexts().back().text.size(), 20U);
    EXPECT_LT(WrappedTexts().back().text.size(), 300U);
}

TEST_F(TextRasterTest, DrawsAsManyEmptyLinesAsThereIsRoomFor) {
    const int skip = TTF_FontLineSkip(Font());
    Sdl().LimitTextureSides(10 * skip + skip / 2);
    for (const int wrapWidth : {0, 500})
        EXPECT_EQ(Raster(std::string(5000, '\n'), wrapWidth)->h, 10 * skip) << wrapWidth;
}

// The library looks at all of the rest of a text for each of its lines.
TEST_F(TextRasterTest, GivesTheLibraryABoundedWork) {
    for (const std::string& text : {Words(1000000), std::string(1000000, '\n'), std::string(1000000, ' ')}) {
        for (const int wrapWidth : {0, 1, 500}) {
            (void)Raster(text, wrapWidth);
            const std::string drawn = WrappedTexts().back().text;
            const auto work = static_cast<size_t>(LinesOf(drawn, wrapWidth)) * drawn.size();
            EXPECT_LE(work, size_t{2} << 20U) << text[0] << " at " << wrapWidth;
        }
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
