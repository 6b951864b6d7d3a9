#include "drawing/Line.h"

#include <SDL2_gfxPrimitives.h>

#include <chrono>
#include <cmath>
#include <limits>

#include "drawing/LineGeometry.h"
#include "tests/drawing/ShapeTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AreaIs;
using Testing::Calls;
using Testing::CountOf;
using Testing::Identical;
using Testing::kBackground;
using Testing::kOpaqueRed;
using Testing::Picture;
using Testing::PixelIs;

class LineTest : public Testing::ShapeTest {
protected:
    static void Drag(Line& line, double fromX, double fromY, double toX, double toY) {
        line.SetStart(fromX, fromY);
        line.SetEnd(toX, toY);
        line.SetColor(Color(255, 0, 0, 255));
        line.strokeWidth = 20;
    }
    // One piece with its caps, in pixels.
    void Piece(int fromX, int toX, int y) {
        thickLineRGBA(Renderer(), static_cast<Sint16>(fromX), static_cast<Sint16>(y),
                      static_cast<Sint16>(toX), static_cast<Sint16>(y), 10, 255, 0, 0, 255);
        for (const int x : {fromX, toX}) {
            filledCircleRGBA(Renderer(), static_cast<Sint16>(x), static_cast<Sint16>(y), 5, 255, 0, 0, 255);
        }
    }
};

TEST_F(LineTest, ReachesFromEndToEndWithRoundCaps) {
    Line line;
    Drag(line, 100, 180, 500, 180);
    const Picture picture = Drawn(line);
    Start(kBackground);
    Piece(55, 245, 90);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_TRUE(PixelIs(picture, 50, 90, kOpaqueRed));
    EXPECT_TRUE(PixelIs(picture, 250, 90, kOpaqueRed));
    EXPECT_TRUE(PixelIs(picture, 49, 90, kBackground));
    EXPECT_TRUE(PixelIs(picture, 251, 90, kBackground));
}

TEST_F(LineTest, LeavesABlendModeOfBlend) {
    Line line;
    Drag(line, 100, 180, 500, 180);
    line.Normalize(1280, 720);
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
    line.Render(Renderer());
    EXPECT_EQ(BlendMode(), SDL_BLENDMODE_BLEND);
}

TEST_F(LineTest, OfNoLengthDrawsNothingAndTouchesNoBlendMode) {
    Line line;
    Drag(line, 100, 200, 100, 200);
    line.arrow = true;
    line.dash = 3;
    line.Normalize(1280, 720);
    Calls().Clear();
    line.Render(Renderer());
    EXPECT_TRUE(Calls().All().empty());
}

TEST_F(LineTest, OfHardlyAnyLengthLeavesBlendingOff) {
    Line line;
    line.normalized = true;
    line.endX = 1e-17;
    line.Render(Renderer());
    EXPECT_EQ(BlendMode(), SDL_BLENDMODE_NONE);
    EXPECT_EQ(CountOf(reader.Read(), kBackground), 640U * 360U);
}

TEST_F(LineTest, IsNormalizedFromLeftToRight) {
    Line line;
    Drag(line, 500, 200, 100, 300);
    line.dash = 7;
    line.Normalize(1280, 720);
    EXPECT_TRUE(line.reversed);
    EXPECT_DOUBLE_EQ(line.startX, 100 / 1280.0);
    EXPECT_DOUBLE_EQ(line.startY, 300 / 720.0);
    EXPECT_DOUBLE_EQ(line.endX, 500 / 1280.0);
    EXPECT_DOUBLE_EQ(line.endY, 200 / 720.0);
    EXPECT_DOUBLE_EQ(line.normalizedStrokeWidth, 20 / 1280.0);
    EXPECT_DOUBLE_EQ(line.normalizedDash, 7 / 1280.0);
    EXPECT_EQ(line.x1, 500);
    line.Normalize(640, 360);
    EXPECT_DOUBLE_EQ(line.startX, 100 / 1280.0);
    line.SetEnd(700, 300);
    line.Normalize(1280, 720);
    EXPECT_FALSE(line.reversed);
    line.SetStart(1, 1);
    EXPECT_FALSE(line.normalized);
}

TEST_F(LineTest, HasDashesFromItsLeftEndAndGapsOfTwiceTheirLength) {
    // 100 units of dash are 50 pixels: 50 to 100, 200 to 250, 350 to 400, and 500 to the end at 520.
    for (const bool backwards : {false, true}) {
        Line line;
        if (backwards) {
            Drag(line, 1040, 180, 100, 180);
        } else {
            Drag(line, 100, 180, 1040, 180);
        }
        line.dash = 100;
        const Picture picture = Drawn(line);
        Start(kBackground);
        Piece(55, 95, 90);
        Piece(205, 245, 90);
        Piece(355, 395, 90);
        Piece(505, 515, 90);
        EXPECT_TRUE(Identical(picture, reader.Read())) << backwards;
    }
}

TEST_F(LineTest, HasItsHeadWhereItWasDrawnTo) {
    // The head's sides stand 1.5 strokes off in fractions of either side of the canvas: 8 pixels of the
    // height.
    Line right;
    Drag(right, 400, 180, 800, 180);
    right.arrow = true;
    Picture picture = Drawn(right);
    Start(kBackground);
    Piece(205, 395, 90);
    filledTrigonRGBA(Renderer(), 395, 81, 420, 90, 395, 98, 255, 0, 0, 255);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_TRUE(PixelIs(picture, 418, 90, kOpaqueRed));

    Line left;
    Drag(left, 800, 180, 400, 180);
    left.arrow = true;
    picture = Drawn(left);
    Start(kBackground);
    Piece(205, 395, 90);
    filledTrigonRGBA(Renderer(), 205, 98, 180, 90, 205, 81, 255, 0, 0, 255);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_TRUE(PixelIs(picture, 182, 90, kOpaqueRed));
}

TEST_F(LineTest, BlendsTheCapsOfATranslucentLineOverItsBody) {
    Line line;
    Drag(line, 100, 180, 500, 180);
    line.SetColor(Color(255, 0, 0, 128));
    const Picture picture = Drawn(line, 0x00000000);
    EXPECT_EQ(picture.At(150, 90), 0x80FF0000U) << "written, not blended";
    EXPECT_NE(picture.At(57, 90), picture.At(150, 90));
    EXPECT_NE(picture.At(51, 90), 0U);
}

TEST_F(LineTest, SkipsWhatLiesFarOutsideOfTheView) {
    Line line;
    Drag(line, -1e12, 180, 1e12, 180);
    line.dash = 100;
    const auto before = std::chrono::steady_clock::now();
    const Picture picture = Drawn(line);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds{5});
    EXPECT_GT(CountOf(picture, kOpaqueRed), 640U * 10 / 4);
    EXPECT_GT(CountOf(picture, kBackground), 640U * 350);
    EXPECT_LT(Calls().Count("SDL_RenderFillRects"), 10U);
}

TEST_F(LineTest, BoundsDashesByThePixelsThatTheyCanTouch) {
    Line line;
    Drag(line, 0, 180, 1280, 180);
    line.dash = 1;
    line.strokeWidth = 2;
    line.Normalize(1280, 720);
    line.normalizedDash = 1e-9;
    Calls().Clear();
    line.Render(Renderer());
    const Picture picture = reader.Read();
    EXPECT_LE(Calls().Count("SDL_RenderDrawPoint") + Calls().Count("SDL_RenderFillRects"), 4U * 640 + 1);
    for (int x = 2; x < 638; ++x) ASSERT_TRUE(PixelIs(picture, x, 90, kOpaqueRed)) << x;
}

TEST_F(LineTest, OfHugeDashesThatCoverTheViewComesToAnEnd) {
    for (const int alpha : {255, 3}) {
        Line line;
        Drag(line, 0, 200, 1280, 210);
        line.dash = 1;
        line.SetColor(Color(255, 0, 0, static_cast<uint8_t>(alpha)));
        for (const uint32_t width : {1000U, 70000U, 4294967295U}) {
            line.strokeWidth = width;
            line.normalized = false;
            Calls().Clear();
            Draw(line);
            EXPECT_LT(Calls().Count("SDL_RenderFillRects"), 2000U) << width;
        }
    }
}

TEST_F(LineTest, SurvivesEveryNumber) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double numbers[] = {0,         -1,         1e308, -1e308,
                              kInfinity, -kInfinity, 640,   std::numeric_limits<double>::quiet_NaN()};
    for (const double a : numbers) {
        for (const double b : numbers) {
            for (const uint32_t width : {0U, 255U, 70000U, 4294967295U}) {
                for (const uint32_t dash : {0U, 1U, 4294967295U}) {
                    Line line;
                    Drag(line, a, 100, b, a);
                    line.strokeWidth = width;
                    line.dash = dash;
                    line.arrow = true;
                    Draw(line);
                }
            }
        }
    }
}

TEST_F(LineTest, OfEndlessLengthTouchesNothing) {
    Line line;
    Drag(line, 0, 0, std::numeric_limits<double>::infinity(), 0);
    line.Normalize(1280, 720);
    Calls().Clear();
    line.Render(Renderer());
    EXPECT_TRUE(Calls().All().empty());
}

TEST_F(LineTest, OfATranslucentColourHasItsUsualToneWhereItsFirstDashesCannotBeSeen) {
    // Dashes of 50 pixels at 50, 200, 350: the first one of the line is written, the others are blended.
    const auto drawnFrom = [this](double x, uint8_t alpha) {
        Line line;
        Drag(line, x, 180, 1280, 180);
        line.SetColor(Color(255, 0, 0, alpha));
        line.dash = 100;
        return Drawn(line);
    };
    const Picture inView = drawnFrom(100, 128);
    ASSERT_NE(inView.At(75, 90), inView.At(225, 90));
    for (const double x : {-200.0, -500.0, -50000.0}) {
        const Picture picture = drawnFrom(x, 128);
        EXPECT_EQ(picture.At(75, 90), inView.At(225, 90)) << x;
        EXPECT_EQ(picture.At(225, 90), inView.At(225, 90)) << x;
    }
    EXPECT_EQ(drawnFrom(-500, 255).At(75, 90), kOpaqueRed);
}

TEST_F(LineTest, ReachesItsFarEndHoweverOftenItsDashesOverlap) {
    Testing::PixelReader layer(2560, 1440);
    Line line;
    Drag(line, 0, 180, 1280, 180);
    line.dash = 1;
    line.strokeWidth = 400;
    line.Normalize(1280, 720);
    Calls().Clear();
    line.Render(layer.Renderer());
    const Picture picture = layer.Read();
    EXPECT_TRUE(AreaIs(picture, {0, 300, 2560, 120}, kOpaqueRed));
    EXPECT_LT(Calls().Count("SDL_RenderFillRects"), 300U) << "of more than 400 dashes";
}

TEST_F(LineTest, ComesInFromTheOtherSideWhereItLeavesThe16Bits) {
    Line line;
    Drag(line, 65400, 100, 65460, 300);
    line.strokeWidth = 510;
    const Picture picture = Drawn(line);
    const double dx = line.endX - line.startX;
    const double dy = line.endY - line.startY;
    const double length = std::sqrt(dx * dx + dy * dy);
    const auto [from, to] = PullIn({{line.startX, line.startY}, {line.endX, line.endY}},
                                   {dx / length, dy / length}, line.normalizedStrokeWidth / 2);
    const SDL_Point a = ToPixels(from, {0, 0, 640, 360});
    const SDL_Point b = ToPixels(to, {0, 0, 640, 360});
    Start(kBackground);
    thickLineRGBA(Renderer(), static_cast<Sint16>(a.x), static_cast<Sint16>(a.y), static_cast<Sint16>(b.x),
                  static_cast<Sint16>(b.y), 255, 255, 0, 0, 255);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_GT(CountOf(picture, kOpaqueRed), 1000U);
}

TEST_F(LineTest, BeginsAnewWithBothEndsAtOnePlace) {
    Line line;
    Drag(line, 100, 180, 500, 300);
    line.SetStart(7, 8);
    EXPECT_EQ(line.x1, 7);
    EXPECT_EQ(line.y1, 8);
    EXPECT_EQ(line.x2, 7);
    EXPECT_EQ(line.y2, 8);
}

}  // namespace
}  // namespace Corvanta::Drawing
