#include "drawing/TextBox.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "drawing/Brush.h"
#include "drawing/DashedBox.h"
#include "tests/drawing/ShapeTest.h"
#include "tests/drawing/TestFont.h"
#include "tests/drawing/WrappedTexts.h"
#include "ui/SystemFontProvider.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using Testing::CountOf;
using Testing::Fake;
using Testing::Identical;
using Testing::kBackground;
using Testing::kOpaqueRed;
using Testing::LogLine;
using Testing::Picture;
using Testing::Sdl;
using Testing::WrappedTexts;

// Size 120 of the shipped font.
TTF_Font* Font() {
    return UI::SystemFontProvider::Instance().GetFont("Arial");
}

class TextBoxTest : public Testing::ShapeTest {
protected:
    static void SetUpTestSuite() {
        static const bool isReady = (Testing::UseTestFont(), true);
        ASSERT_TRUE(isReady);
    }
    TextBoxTest() {
        Fake().ClearLogs();
        box.SetStart(200, 180);
        box.fontSize = 48;
        box.fontFamily = "Arial";
        box.text = "Hello";
        box.color = Color(255, 255, 255, 255);
    }
    ~TextBoxTest() override { box.ReleaseTextures(Renderer()); }

    [[nodiscard]] static SDL_Point SizeOf(const std::string& text) {
        SDL_Point size{0, 0};
        TTF_SetFontStyle(Font(), TTF_STYLE_NORMAL);
        TTF_SizeUTF8(Font(), text.c_str(), &size.x, &size.y);
        return size;
    }
    // Anew, as after a change.
    Picture Redrawn() {
        box.normalized = false;
        return Drawn(box);
    }

    TextBox box;
};

TEST_F(TextBoxTest, IsRasterisedAtOneSizeAndScaled) {
    Draw(box);
    const SDL_Point size = SizeOf("Hello");
    // 48 of 720 units are 24 of 360 pixels.
    EXPECT_EQ(box.drawnRect.x, 100);
    EXPECT_EQ(box.drawnRect.y, 90);
    EXPECT_EQ(box.drawnRect.w, static_cast<int>(static_cast<float>(size.x) * (24 / 120.0F)));
    EXPECT_EQ(box.drawnRect.h, static_cast<int>(static_cast<float>(size.y) * (24 / 120.0F)));
    SDL_Point texture{0, 0};
    SDL_QueryTexture(box.textures.at(Renderer()), nullptr, nullptr, &texture.x, &texture.y);
    EXPECT_EQ(texture.x, size.x);
    EXPECT_GT(CountOf(reader.Read(), 0xFFFFFFFF), 20U);
}

TEST_F(TextBoxTest, IsRasterisedAgainOnlyAfterAChange) {
    Draw(box);
    Calls().Clear();
    Draw(box);
    EXPECT_EQ(Calls().Count("SDL_CreateTextureFromSurface"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 1U);
    box.text = "Hello there";
    box.normalized = false;
    const int before = box.drawnRect.w;
    Draw(box);
    EXPECT_EQ(Calls().Count("SDL_CreateTextureFromSurface"), 1U);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    EXPECT_GT(box.drawnRect.w, before);
}

TEST_F(TextBoxTest, EndingInALineFeedIsOneLineTaller) {
    Draw(box);
    const int one = box.drawnRect.h;
    box.text = "Hello\n";
    Redrawn();
    EXPECT_GT(box.drawnRect.h, one * 3 / 2);
    EXPECT_LT(box.drawnRect.h, one * 5 / 2);
    EXPECT_EQ(box.text, "Hello\n");
}

TEST_F(TextBoxTest, BreaksItsLinesAtTheRightEdge) {
    box.text = "words and words and words and words and words and words";
    Draw(box);
    const int right = box.drawnRect.x + box.drawnRect.w;
    EXPECT_LE(right, 640);
    EXPECT_GT(box.drawnRect.h, 48);
    box.SetStart(0, 180);
    Draw(box);
    EXPECT_LE(box.drawnRect.w, 640);
}

TEST_F(TextBoxTest, IsNotWiderThanTheRastersLimit) {
    box.fontSize = 4;
    box.SetStart(0, 0);
    box.text.clear();
    for (int i = 0; i < 60; ++i) box.text += "wordswords ";
    Draw(box);
    SDL_Point texture{0, 0};
    SDL_QueryTexture(box.textures.at(Renderer()), nullptr, nullptr, &texture.x, &texture.y);
    EXPECT_LE(texture.x, 4096);
    EXPECT_GT(texture.x, 3000);
}

TEST_F(TextBoxTest, ShowsEveryScript) {
    box.text = "\u0418\u0432\u0430\u043D";
    Draw(box);
    EXPECT_EQ(box.drawnRect.w, static_cast<int>(static_cast<float>(SizeOf(box.text).x) * (24 / 120.0F)));
}

TEST_F(TextBoxTest, HasItsStyleWhateverAnotherTextLeftOnTheFont) {
    const Picture plain = Drawn(box);
    box.fontStyle = TTF_STYLE_BOLD | TTF_STYLE_ITALIC;
    const Picture styled = Redrawn();
    EXPECT_FALSE(Identical(plain, styled));
    box.fontStyle = TTF_STYLE_NORMAL;
    EXPECT_TRUE(Identical(Redrawn(), plain));
}

TEST_F(TextBoxTest, FallsBackToArial) {
    const Picture arial = Drawn(box);
    box.fontFamily = "Nobody's Face";
    EXPECT_TRUE(Identical(Redrawn(), arial));
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextBoxTest, StandsInADashedBoxWhileItIsOpen) {
    for (const TextBox::State state : {TextBox::State::Editing, TextBox::State::Moving}) {
        box.state = state;
        const Picture open = Drawn(box);
        EXPECT_GT(CountOf(open, kOpaqueRed), 300U);
        EXPECT_EQ(open.At(box.drawnRect.x - 28, box.drawnRect.y - 30), kOpaqueRed);
    }
    box.state = TextBox::State::Finished;
    EXPECT_EQ(CountOf(Drawn(box), kOpaqueRed), 0U);
}

TEST_F(TextBoxTest, WithoutATextIsABoxOfTheFontsHeightWhileItIsEdited) {
    box.text.clear();
    box.drawnRect = {1, 2, 3, 4};
    box.state = TextBox::State::Editing;
    const Picture open = Drawn(box);
    Start(kBackground);
    DrawDashedBox(Renderer(), {100, 90, 24, 24}, kTextBoxMargin);
    EXPECT_TRUE(Identical(open, reader.Read()));
    EXPECT_EQ(box.drawnRect.w, 3) << "stays as it was";
    for (const TextBox::State state : {TextBox::State::Moving, TextBox::State::Finished}) {
        box.state = state;
        EXPECT_EQ(CountOf(Drawn(box), kBackground), 640U * 360U);
    }
}

TEST_F(TextBoxTest, HasDashesOfFiveEveryFifteenPixels) {
    DrawDashedBox(Renderer(), {100, 100, 40, 20}, 30);
    const Picture picture = reader.Read();
    Start(kBackground);
    Brush brush(SDL_Rect{0, 0, 640, 360});
    for (const int y : {70, 150}) {
        for (int x = 70; x < 170; x += 15) brush.ThickLine({x, y}, {std::min(x + 5, 170), y}, 5);
    }
    for (const int x : {70, 170}) {
        for (int y = 70; y < 150; y += 15) brush.ThickLine({x, y}, {x, std::min(y + 5, 150)}, 5);
    }
    brush.Draw(Renderer(), Testing::kRedColor);
    EXPECT_TRUE(Identical(picture, reader.Read()));
}

TEST_F(TextBoxTest, CutsADashedBoxAtTheView) {
    const SDL_Rect wide{-2000000000, 100, 2147483647, 20};
    Calls().Clear();
    DrawDashedBox(Renderer(), wide, 30);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 1U);
    const Picture picture = reader.Read();
    EXPECT_GT(CountOf(picture, kOpaqueRed), 640U / 15 * 25);
    DrawDashedBox(Renderer(), {100, 100, 2147483647, 2147483647}, 30);
}

TEST_F(TextBoxTest, HoldsItsCornerAtZero) {
    box.SetStart(-5, -1e300);
    EXPECT_EQ(box.x, 0);
    EXPECT_EQ(box.y, 0);
    EXPECT_FALSE(box.normalized);
    box.SetStart(std::numeric_limits<double>::quiet_NaN(), 7);
    EXPECT_EQ(box.x, 0);
    EXPECT_EQ(box.y, 7);
    box.SetEnd(50, 60);
    EXPECT_EQ(box.y, 7);
}

TEST_F(TextBoxTest, NormalizesItsFontByTheHeight) {
    Draw(box);
    EXPECT_DOUBLE_EQ(box.normalizedX, 200 / 1280.0);
    EXPECT_DOUBLE_EQ(box.normalizedY, 0.25);
    EXPECT_DOUBLE_EQ(box.normalizedFontSize, 48 / 720.0);
    box.Normalize(10, 10);
    EXPECT_DOUBLE_EQ(box.normalizedY, 0.25);
    EXPECT_EQ(box.textures.size(), 1U);
    box.normalized = false;
    box.Normalize(1280, 720);
    EXPECT_TRUE(box.textures.empty());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TextBoxTest, OfLessThanAPixelDrawsNothing) {
    box.state = TextBox::State::Editing;
    box.fontSize = 1;
    EXPECT_EQ(CountOf(Redrawn(), kBackground), 640U * 360U);
    for (const double size : {0.0, -10.0, std::numeric_limits<double>::quiet_NaN()}) {
        box.fontSize = size;
        EXPECT_EQ(CountOf(Redrawn(), kBackground), 640U * 360U) << size;
    }
}

TEST_F(TextBoxTest, RightOfTheViewDrawsNothing) {
    box.SetStart(1300, 180);
    Calls().Clear();
    Draw(box);
    EXPECT_EQ(Calls().Count("SDL_CreateTextureFromSurface"), 0U);
    EXPECT_TRUE(box.textures.empty());
}

TEST_F(TextBoxTest, ReleasesItsTextureForThatRenderer) {
    Testing::PixelReader other(320, 180);
    Draw(box);
    box.Render(other.Renderer());
    EXPECT_EQ(box.textures.size(), 2U);
    box.ReleaseTextures(other.Renderer());
    EXPECT_EQ(box.textures.size(), 1U);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    box.ReleaseTextures(other.Renderer());
    box.ReleaseTextures(Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TextBoxTest, ComplainsOfTexturesThatWereLeftToIt) {
    {
        TextBox lost;
        lost.fontSize = 48;
        lost.text = "lost";
        Draw(lost);
    }
    EXPECT_EQ(Fake().LogsOf(4),
              (std::vector<std::string>{
                  "Destroying TextBox texture when it should have been previously disposed of."}));
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TextBoxTest, SurvivesATextureThatCannotBeMade) {
    Sdl().FailAlways("SDL_CreateTextureFromSurface");
    EXPECT_EQ(CountOf(Drawn(box), kBackground), 640U * 360U);
    EXPECT_TRUE(box.textures.empty());
    Sdl().Reset();
    EXPECT_LT(CountOf(Drawn(box), kBackground), 640U * 360U) << "the next frame tries again";
}

TEST_F(TextBoxTest, EndsAtAByteOfZero) {
    box.text = std::string("Hel\0lo", 6);
    Draw(box);
    EXPECT_EQ(box.drawnRect.w, static_cast<int>(static_cast<float>(SizeOf("Hel").x) * (24 / 120.0F)));
    box.text = std::string("\0Hello", 6);
    EXPECT_EQ(CountOf(Redrawn(), kBackground), 640U * 360U);
}

TEST_F(TextBoxTest, DrawsWhatItCanOfBrokenTexts) {
    for (const char* const text : {"\xFF\xFE\x80", "abc\xC3", "\xE6\x9D", "\xF0\x9F\x98", "\xED\xA0\x80 x",
                                   "\n", "\n\n\n", " ", "tab\tbell\a\x01\x7F", "\r\n", "a\xC0\xAF\x62"}) {
        box.text = text;
        Redrawn();
    }
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextBoxTest, OfAMegabyteIsAPictureOfBoundedSize) {
    std::string words;
    while (words.size() < 1000000) words += "lorem ipsum ";
    for (const std::string& text :
         {words, std::string(1000000, 'i'), std::string(1000000, '\n'), std::string(1000000, '\xE2')}) {
        for (const double x : {0.0, 1279.0, 1280.0}) {
            box.SetStart(x, 0);
            box.text = text;
            Redrawn();
            if (box.textures.empty()) continue;
            SDL_Point size{0, 0};
            SDL_QueryTexture(box.textures.at(Renderer()), nullptr, nullptr, &size.x, &size.y);
            EXPECT_LE(int64_t{size.x} * size.y, int64_t{64} << 20U);
        }
    }
}

TEST_F(TextBoxTest, IsNoHigherThanTheRenderersTextures) {
    Sdl().LimitTextureSides(2000);
    box.text = std::string(100, '\n');
    Draw(box);
    SDL_Point size{0, 0};
    SDL_QueryTexture(box.textures.at(Renderer()), nullptr, nullptr, &size.x, &size.y);
    EXPECT_LE(size.y, 2000);
    EXPECT_GT(size.y, 500);
}

TEST_F(TextBoxTest, SurvivesEveryNumber) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double number :
         {0.0, -1.0, 1e308, -1e308, kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()}) {
        for (const TextBox::State state : {TextBox::State::Editing, TextBox::State::Finished}) {
            box.state = state;
            box.fontSize = number;
            box.text = "Hello";
            Redrawn();
            box.text.clear();
            Redrawn();
            box.fontSize = 48;
            box.x = number;
            box.y = number;
            Redrawn();
            box.text = "Hello";
            Redrawn();
            box.SetStart(10, 10);
        }
    }
}

TEST_F(TextBoxTest, IsCutTowardZero) {
    box.x = 101;
    box.y = -3;
    box.fontSize = 49;
    bool wouldRound = false;
    for (const char* const text : {"Hello", "Hello!", "Hello!!", "a", "ab", "abc"}) {
        box.text = text;
        Redrawn();
        EXPECT_EQ(box.drawnRect.x, 50);
        EXPECT_EQ(box.drawnRect.y, -1);
        const float width = static_cast<float>(SizeOf(text).x) * (24 / 120.0F);
        EXPECT_EQ(box.drawnRect.w, static_cast<int>(width));
        wouldRound |= std::round(width) > width;
    }
    EXPECT_TRUE(wouldRound);
}

TEST_F(TextBoxTest, BreaksItsLinesAtTheRestOfTheViewInTheRastersPixels) {
    const auto wrapOf = [this](double x, double fontSize) {
        box.SetStart(x, 0);
        box.fontSize = fontSize;
        Redrawn();
        return WrappedTexts().back().wrapLength;
    };
    EXPECT_EQ(wrapOf(200, 48), 2700) << "540 pixels at 120 / 24";
    EXPECT_EQ(wrapOf(200, 94), 1378) << "1378.7";
    EXPECT_EQ(wrapOf(1280, 48), 0);
    EXPECT_EQ(wrapOf(0, 38), 4042);
    EXPECT_EQ(wrapOf(0, 36), 4096) << "4266.7";
}

TEST_F(TextBoxTest, FarBelowTheViewDrawsNothing) {
    box.y = 1e308;
    for (const TextBox::State state : {TextBox::State::Editing, TextBox::State::Finished}) {
        box.state = state;
        box.text = "Hello";
        EXPECT_EQ(CountOf(Redrawn(), kBackground), 640U * 360U);
        box.text.clear();
        EXPECT_EQ(CountOf(Redrawn(), kBackground), 640U * 360U);
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
