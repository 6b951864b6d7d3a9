// The brush's primitives against those of SDL2_gfx, pixel by pixel.
#include "drawing/Brush.h"

#include <SDL2_gfxPrimitives.h>

#include <functional>
#include <random>

#include "drawing/StrokeGeometry.h"
#include "tests/drawing/ShapeTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AreaIs;
using Testing::Calls;
using Testing::CountOf;
using Testing::Identical;
using Testing::kBackground;
using Testing::kOpaqueRed;
using Testing::kRedColor;
using Testing::Picture;
using Testing::PixelIs;

constexpr SDL_Rect kAll{0, 0, 640, 360};
constexpr unsigned kSeed = 20;

class BrushTest : public Testing::ShapeTest {
protected:
    int Number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(numbers_); }
    // Mostly inside, now and then far outside.
    SDL_Point Place() {
        const int margin = Number(0, 9) == 0 ? 12000 : 100;
        return {Number(-margin, 640 + margin), Number(-margin, 360 + margin)};
    }
    Picture Painted(const std::function<void(Brush&)>& paint, const SDL_Rect& bounds = kAll) {
        Start(kBackground);
        SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
        Brush brush(bounds);
        paint(brush);
        brush.Draw(Renderer(), kRedColor);
        return reader.Read();
    }
    Picture Expected(const std::function<void(SDL_Renderer*)>& paint) {
        Start(kBackground);
        paint(Renderer());
        return reader.Read();
    }

private:
    std::mt19937 numbers_{kSeed};
};

TEST_F(BrushTest, PaintsCirclesOfTheLibrarysPixels) {
    for (int i = 0; i < 300; ++i) {
        const SDL_Point center = Place();
        const int radius = i < 150 ? i - 1 : Number(0, 1000);
        const Picture expected = Expected([&](SDL_Renderer* renderer) {
            filledCircleRGBA(renderer, static_cast<Sint16>(center.x), static_cast<Sint16>(center.y),
                             static_cast<Sint16>(radius), 255, 0, 0, 255);
        });
        ASSERT_TRUE(Identical(Painted([&](Brush& brush) { brush.FilledCircle(center, radius); }), expected))
            << "radius " << radius << " at " << center.x << ' ' << center.y;
    }
}

TEST_F(BrushTest, PaintsEllipsesOfTheLibrarysPixelsAsLongAsItsNumbersHold) {
    int compared = 0;
    for (int i = 0; i < 300; ++i) {
        const int radiusX = Number(0, i % 2 == 0 ? 1300 : 60);
        const int radiusY = Number(0, i % 3 == 0 ? 800 : 60);
        if (!IsWithinLibrary(radiusX, radiusY)) continue;
        ++compared;
        const Picture expected = Expected([&](SDL_Renderer* renderer) {
            filledEllipseRGBA(renderer, 320, 180, static_cast<Sint16>(radiusX), static_cast<Sint16>(radiusY),
                              255, 0, 0, 255);
        });
        ASSERT_TRUE(Identical(Painted([&](Brush& brush) {
                                  brush.FilledEllipse({320, 180}, radiusX, radiusY);
                              }),
                              expected))
            << radiusX << " by " << radiusY;
    }
    EXPECT_GT(compared, 200);
}

TEST_F(BrushTest, PaintsPolygonsOfTheLibrarysPixels) {
    for (int i = 0; i < 400; ++i) {
        std::vector<SDL_Point> corners(static_cast<size_t>(Number(3, 7)));
        std::vector<Sint16> x;
        std::vector<Sint16> y;
        for (SDL_Point& corner : corners) {
            corner = Place();
            x.push_back(static_cast<Sint16>(corner.x));
            y.push_back(static_cast<Sint16>(corner.y));
        }
        const Picture expected = Expected([&](SDL_Renderer* renderer) {
            filledPolygonRGBA(renderer, x.data(), y.data(), static_cast<int>(x.size()), 255, 0, 0, 255);
        });
        ASSERT_TRUE(Identical(Painted([&](Brush& brush) { brush.FilledPolygon(corners); }), expected)) << i;
    }
}

TEST_F(BrushTest, PaintsThickLinesOfTheLibrarysPixels) {
    for (int i = 0; i < 600; ++i) {
        const SDL_Point from = Place();
        SDL_Point to = Place();
        if (i % 5 == 0) to.x = from.x;
        if (i % 10 == 1) to.y = from.y;
        if (i % 20 == 0) to = from;
        const int width = i % 3 == 0 ? Number(0, 255) : Number(0, 12);
        const Picture expected = Expected([&](SDL_Renderer* renderer) {
            thickLineRGBA(renderer, static_cast<Sint16>(from.x), static_cast<Sint16>(from.y),
                          static_cast<Sint16>(to.x), static_cast<Sint16>(to.y), static_cast<Uint8>(width),
                          255, 0, 0, 255);
        });
        ASSERT_TRUE(Identical(Painted([&](Brush& brush) { brush.ThickLine(from, to, width); }), expected))
            << "width " << width << " from " << from.x << ' ' << from.y << " to " << to.x << ' ' << to.y;
    }
}

TEST_F(BrushTest, LeavesTheBlendModeAlone) {
    for (const SDL_BlendMode mode : {SDL_BLENDMODE_NONE, SDL_BLENDMODE_BLEND, SDL_BLENDMODE_ADD}) {
        SDL_SetRenderDrawBlendMode(Renderer(), mode);
        Calls().Clear();
        Brush brush(kAll);
        brush.FilledCircle({50, 50}, 10);
        brush.ThickLine({5, 5}, {5, 5}, 4);
        brush.ThickLine({5, 5}, {50, 9}, 1);
        brush.ThickLine({5, 5}, {50, 90}, 7);
        brush.Draw(Renderer(), {255, 0, 0, 0});
        EXPECT_EQ(BlendMode(), mode);
        EXPECT_EQ(Calls().Count("SDL_SetRenderDrawBlendMode"), 0U);
    }
}

TEST_F(BrushTest, ErasesWithATransparentColourAndNoBlending) {
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
    Brush brush(kAll);
    brush.FilledCircle({100, 100}, 10);
    brush.ThickLine({200, 100}, {200, 100}, 4);
    brush.ThickLine({300, 100}, {340, 100}, 1);
    brush.Draw(Renderer(), {0, 0, 0, 0});
    const Picture picture = reader.Read();
    EXPECT_EQ(picture.At(100, 100), 0U);
    EXPECT_EQ(picture.At(200, 100), 0U);
    EXPECT_EQ(picture.At(320, 100), 0U);
    EXPECT_EQ(picture.At(320, 101), kBackground);
}

TEST_F(BrushTest, PaintsNothingTwice) {
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_BLEND);
    Brush brush(kAll);
    brush.FilledCircle({100, 100}, 30);
    brush.FilledCircle({110, 100}, 30);
    brush.ThickLine({60, 100}, {140, 100}, 9);
    brush.Draw(Renderer(), {255, 255, 255, 128});
    const Picture picture = reader.Read();
    EXPECT_EQ(picture.At(82, 100), picture.At(105, 100));
    EXPECT_EQ(picture.At(105, 100), picture.At(105, 80));
}

TEST_F(BrushTest, DrawsAllItGatheredByOneCall) {
    Calls().Clear();
    Brush brush(kAll);
    for (int i = 0; i < 100; ++i) brush.FilledCircle({i * 5, i * 3}, 20);
    brush.Draw(Renderer(), kRedColor);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 1U);
    EXPECT_EQ(Calls().Count("SDL_SetRenderDrawColor"), 1U);
    EXPECT_EQ(Calls().All().size(), 2U);
}

TEST_F(BrushTest, IsCutAtItsBounds) {
    const SDL_Rect bounds{70, 50, 65, 33};
    const Picture picture = Painted(
        [](Brush& brush) {
            brush.FilledPolygon(std::vector<SDL_Point>{{-5, -5}, {700, -5}, {700, 700}, {-5, 700}});
        },
        bounds);
    EXPECT_TRUE(AreaIs(picture, bounds, kOpaqueRed));
    EXPECT_EQ(CountOf(picture, kOpaqueRed), 65U * 33U);
}

TEST_F(BrushTest, PaintsNothingForWhatIsNone) {
    const std::vector<SDL_Point> two{{10, 10}, {200, 200}};
    const std::vector<SDL_Point> three{{10, 10}, {200, 200}, {300, 10}};
    const Picture picture = Painted([&](Brush& brush) {
        brush.FilledCircle({50, 50}, -1);
        brush.FilledEllipse({50, 50}, -1, 20);
        brush.FilledEllipse({50, 50}, 20, -1);
        brush.FilledPolygon(two);
        brush.ThickLine({5, 5}, {80, 80}, 0);
        brush.ThickLine({5, 5}, {5, 5}, 0);
        brush.ThickBezier(two, 2, 5);
        brush.ThickBezier(three, 1, 5);
        brush.ThickBezier(three, 2, 0);
    });
    EXPECT_EQ(CountOf(picture, kOpaqueRed), 0U);
    Brush nowhere(SDL_Rect{0, 0, 0, 0});
    nowhere.FilledCircle({0, 0}, 50);
    nowhere.FilledPolygon(three);
    nowhere.Draw(Renderer(), kRedColor);
    EXPECT_EQ(CountOf(reader.Read(), kOpaqueRed), 0U);
}

TEST_F(BrushTest, DrawsACurveInSixthsWithClosedJoints) {
    const std::vector<SDL_Point> control{{50, 50}, {300, 20}, {300, 300}};
    const Picture picture = Painted([&](Brush& brush) { brush.ThickBezier(control, 2, 30); });
    const Picture expected = Painted([&](Brush& brush) {
        std::vector<Corners> pieces;
        SDL_Point from = control[0];
        for (int sixth = 1; sixth <= 6; ++sixth) {
            const auto at = [&](auto axis) {
                const int before = 6 - sixth;
                return (before * before * axis(control[0]) + 2 * before * sixth * axis(control[1]) +
                        sixth * sixth * axis(control[2])) /
                       36;
            };
            const SDL_Point to{at([](SDL_Point p) { return p.x; }), at([](SDL_Point p) { return p.y; })};
            pieces.push_back(ThickLineCorners(from, to, 30));
            from = to;
        }
        for (size_t i = 0; i < pieces.size(); ++i) {
            brush.FilledPolygon(pieces[i]);
            if (i == 0) continue;
            brush.FilledPolygon(Corners{pieces[i - 1][2], pieces[i - 1][3], pieces[i][0], pieces[i][1]});
        }
    });
    EXPECT_TRUE(Identical(picture, expected));
    EXPECT_GT(CountOf(picture, kOpaqueRed), 30U * 300U);
}

TEST_F(BrushTest, DrawsOnlyTheFirstPieceOfACurveOneWide) {
    const std::vector<SDL_Point> control{{100, 100}, {100, 100}, {460, 100}};
    // In sixths: 110, 140, 190, and so on.
    const Picture picture = Painted([&](Brush& brush) { brush.ThickBezier(control, 2, 1); });
    EXPECT_TRUE(AreaIs(picture, {100, 100, 11, 1}, kOpaqueRed));
    EXPECT_EQ(CountOf(picture, kOpaqueRed), 11U);
}

TEST_F(BrushTest, DrawsNothingForACurveOnOnePixel) {
    const std::vector<SDL_Point> control{{100, 100}, {100, 100}, {100, 100}};
    EXPECT_EQ(CountOf(Painted([&](Brush& brush) { brush.ThickBezier(control, 2, 9); }), kOpaqueRed), 0U);
}

TEST_F(BrushTest, IsBoundedByWhatIsSeenOfGiants) {
    const std::vector<SDL_Point> giant{{-32768, -32768}, {32767, -32768}, {32767, 32767}, {-32768, 32767}};
    for (int i = 0; i < 200; ++i) {
        Brush brush(kAll);
        brush.FilledPolygon(giant);
        brush.FilledCircle({320, 180}, 32767);
        brush.FilledEllipse({320, 180}, 32767, 3);
        brush.Draw(Renderer(), kRedColor);
    }
    EXPECT_EQ(CountOf(reader.Read(), kOpaqueRed), 640U * 360U);
}

TEST_F(BrushTest, DrawsAnEllipseAsLargeAsALayerWhole) {
    Testing::PixelReader layer(2560, 1440);
    Brush brush(SDL_Rect{0, 0, 2560, 1440});
    EXPECT_FALSE(IsWithinLibrary(1280, 720));
    brush.FilledEllipse({1280, 720}, 1280, 720);
    brush.Draw(layer.Renderer(), kRedColor);
    const Picture picture = layer.Read();
    const auto count = static_cast<double>(CountOf(picture, kOpaqueRed));
    EXPECT_NEAR(count, 3.14159265 * 1280 * 720, 6000);
    for (int x = 0; x < 2560; ++x) ASSERT_TRUE(PixelIs(picture, x, 720, kOpaqueRed)) << x;
}

TEST_F(BrushTest, PaintsThickLinesOfTheLibrarysPixelsWhereTheyLeaveThe16Bits) {
    size_t painted = 0;
    for (int i = 0; i < 300; ++i) {
        const auto place = [&] {
            const int inwards = Number(0, 100);
            return SDL_Point{i % 2 == 0 ? SDL_MAX_SINT16 - inwards : SDL_MIN_SINT16 + inwards,
                             Number(0, 360)};
        };
        const SDL_Point from = place();
        const SDL_Point to = i % 5 == 0 ? from : place();
        const int width = Number(2, 255);
        const Picture expected = Expected([&](SDL_Renderer* renderer) {
            thickLineRGBA(renderer, static_cast<Sint16>(from.x), static_cast<Sint16>(from.y),
                          static_cast<Sint16>(to.x), static_cast<Sint16>(to.y), static_cast<Uint8>(width),
                          255, 0, 0, 255);
        });
        painted += CountOf(expected, kOpaqueRed);
        ASSERT_TRUE(Identical(Painted([&](Brush& brush) { brush.ThickLine(from, to, width); }), expected))
            << "width " << width << " from " << from.x << ' ' << from.y << " to " << to.x << ' ' << to.y;
    }
    EXPECT_GT(painted, 100000U);
}

}  // namespace
}  // namespace Corvanta::Drawing
