// The pencil's stroke while it grows.
#include "drawing/LinePath.h"

#include <cmath>

#include "drawing/Brush.h"
#include "drawing/PathTracer.h"
#include "tests/drawing/ShapeTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AddPoints;
using Testing::Calls;
using Testing::CountOf;
using Testing::Identical;
using Testing::kBackground;
using Testing::kOpaqueRed;
using Testing::Picture;
using Testing::PixelIs;
using Testing::Sdl;

const std::vector<std::pair<double, double>> kZigzag{{100, 100}, {300, 500}, {500, 100}, {700, 500},
                                                     {900, 100}, {905, 101}, {1100, 500}};

class LinePathTest : public Testing::ShapeTest {
protected:
    LinePathTest() {
        path.strokeWidth = 20;
        path.color = Color(255, 0, 0, 255);
    }
    ~LinePathTest() override { path.ReleaseTextures(Renderer()); }

    LinePath path;
};

TEST_F(LinePathTest, TakesAPointAtMostOnceIn21Milliseconds) {
    path.SetStart(1, 2);
    EXPECT_EQ(path.lastPointTime, nowNs / 100);
    TurnMs(20);
    nowNs += 999'999;
    path.SetEnd(3, 4);
    EXPECT_EQ(path.points.size(), 1U);
    nowNs += 1;
    path.SetEnd(5, 6);
    EXPECT_EQ(path.points, (std::vector<LinePath::Point>{{1, 2}, {5, 6}}));
    EXPECT_EQ(path.lastPointTime, nowNs / 100);
    path.Normalize(1280, 720);
    TurnMs(20);
    path.SetEnd(7, 8);
    EXPECT_TRUE(path.normalized) << "a dropped point changes nothing";
    TurnMs(1);
    path.SetEnd(9, 10);
    EXPECT_FALSE(path.normalized);
    EXPECT_EQ(path.points.size(), 3U);
}

TEST_F(LinePathTest, NormalizesOnlyThePointsThatItHasNot) {
    AddPoints(path, {{128, 72}, {256, 144}});
    path.Normalize(1280, 720);
    EXPECT_DOUBLE_EQ(path.normalizedStrokeWidth, 20 / 1280.0);
    AddPoints(path, {{64, 36}});
    path.Normalize(640, 360);
    EXPECT_EQ(path.normalizedPoints, (std::vector<LinePath::Point>{{0.1, 0.1}, {0.2, 0.2}, {0.1, 0.1}}));
    EXPECT_DOUBLE_EQ(path.normalizedStrokeWidth, 20 / 640.0);
}

TEST_F(LinePathTest, OfNoPointsDrawsNothing) {
    path.Normalize(1280, 720);
    Calls().Clear();
    path.Render(Renderer());
    EXPECT_TRUE(Calls().All().empty());
}

TEST_F(LinePathTest, OfOnePointIsADotWithoutATail) {
    AddPoints(path, {{200, 200}});
    const Picture picture = Drawn(path);
    Start(kBackground);
    Brush brush(SDL_Rect{0, 0, 640, 360});
    brush.FilledCircle({100, 100}, 5);
    brush.Draw(Renderer(), Testing::kRedColor);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_GT(CountOf(picture, kOpaqueRed), 70U);
}

TEST_F(LinePathTest, CurvesThroughTheMidpointsAndEndsInAStraightTail) {
    AddPoints(path, {{200, 200}, {400, 200}, {400, 401}});
    const Picture picture = Drawn(path);
    Start(kBackground);
    Brush brush(SDL_Rect{0, 0, 640, 360});
    brush.FilledCircle({100, 100}, 5);
    brush.ThickBezier(std::vector<SDL_Point>{{100, 100}, {200, 100}, {200, 150}}, 2, 10);
    brush.FilledCircle({200, 150}, 5);
    brush.ThickLine({200, 150}, {200, 200}, 10);
    brush.FilledCircle({200, 200}, 5);
    brush.Draw(Renderer(), Testing::kRedColor);
    EXPECT_TRUE(Identical(picture, reader.Read()));
    EXPECT_EQ(path.drawnIndex, 2U);
    EXPECT_NEAR(path.penX * 1280, 400, 0.01);
    EXPECT_NEAR(path.penY * 720, 300.5, 0.01);
}

TEST_F(LinePathTest, AddsNoPieceForPointsCloserThanHalfAStroke) {
    // Half of the stroke is 10 units, of which the heights are taken as fractions of the canvas too.
    AddPoints(path, {{200, 200}, {204, 201}, {207, 200}});
    Draw(path);
    EXPECT_DOUBLE_EQ(path.penX, 200 / 1280.0) << "the pen stays";
    EXPECT_EQ(path.drawnIndex, 2U);
    AddPoints(path, {{300, 200}});
    Draw(path);
    EXPECT_NEAR(path.penX * 1280, 253.5, 1e-6);
}

TEST_F(LinePathTest, GrowsToTheSamePixelsAsAtOnce) {
    LinePath whole;
    whole.strokeWidth = path.strokeWidth;
    whole.color = path.color;
    AddPoints(whole, kZigzag);
    const Picture expected = Drawn(whole);
    whole.ReleaseTextures(Renderer());
    for (const auto& point : kZigzag) {
        AddPoints(path, {point});
        Draw(path);
    }
    Start(kBackground);
    Draw(path);
    EXPECT_TRUE(Identical(reader.Read(), expected));
}

TEST_F(LinePathTest, OfATranslucentColourHasOneToneAtItsCrossingAndNoTail) {
    path.color = Color(255, 0, 0, 128);
    AddPoints(path, {{200, 300}, {600, 300}, {600, 100}, {400, 100}, {400, 600}, {400, 602}});
    const Picture picture = Drawn(path);
    EXPECT_EQ(picture.At(200, 150), picture.At(130, 150));
    EXPECT_NE(picture.At(130, 150), kBackground);
    EXPECT_TRUE(path.tailTextures.empty());

    LinePath open;
    open.strokeWidth = 20;
    open.color = path.color;
    AddPoints(open, {{200, 200}, {800, 200}});
    EXPECT_TRUE(PixelIs(Drawn(open), 300, 100, kBackground));
    open.ReleaseTextures(Renderer());
}

TEST_F(LinePathTest, IsDrawnFromTheFirstPointAgainAfterItsTexturesWereReleased) {
    AddPoints(path, kZigzag);
    const Picture before = Drawn(path);
    EXPECT_EQ(Sdl().LiveTextures(), 2U);
    path.ReleaseTextures(Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(path.strokeTextures.empty());
    EXPECT_TRUE(path.tailTextures.empty());
    EXPECT_TRUE(Identical(Drawn(path), before));
}

TEST_F(LinePathTest, IsDrawnAnewForATargetOfAnotherSize) {
    AddPoints(path, kZigzag);
    Draw(path);
    Testing::Picture expected;
    {
        SDL_Texture* const layer =
            SDL_CreateTexture(Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, 320, 180);
        SDL_SetRenderTarget(Renderer(), layer);
        Draw(path);
        SDL_SetRenderTarget(Renderer(), nullptr);
        SDL_DestroyTexture(layer);
    }
    Start(kBackground);
    Draw(path);
    LinePath fresh;
    fresh.strokeWidth = 20;
    fresh.color = path.color;
    AddPoints(fresh, kZigzag);
    const Picture again = reader.Read();
    EXPECT_TRUE(Identical(Drawn(fresh), again));
    fresh.ReleaseTextures(Renderer());
}

TEST_F(LinePathTest, HasTexturesOfTheTargetsSizeThatBlend) {
    AddPoints(path, kZigzag);
    Draw(path);
    for (const auto& textures : {path.strokeTextures, path.tailTextures}) {
        ASSERT_EQ(textures.size(), 1U);
        Uint32 format = 0;
        int access = 0;
        SDL_Point size{0, 0};
        SDL_BlendMode mode = SDL_BLENDMODE_NONE;
        SDL_QueryTexture(textures.at(Renderer()), &format, &access, &size.x, &size.y);
        SDL_GetTextureBlendMode(textures.at(Renderer()), &mode);
        EXPECT_EQ(format, static_cast<Uint32>(SDL_PIXELFORMAT_ARGB8888));
        EXPECT_EQ(access, SDL_TEXTUREACCESS_TARGET);
        EXPECT_EQ(size.x, 640);
        EXPECT_EQ(size.y, 360);
        EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
    }
}

TEST_F(LinePathTest, LeavesTargetViewportAndBlendModeAsTheyWere) {
    SDL_Texture* const layer =
        SDL_CreateTexture(Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, 640, 360);
    SDL_SetRenderTarget(Renderer(), layer);
    const SDL_Rect view{10, 20, 320, 180};
    SDL_RenderSetViewport(Renderer(), &view);
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_ADD);
    AddPoints(path, kZigzag);
    for (const char* const id : {"", "finished"}) {
        path.controlId = id;
        path.ReleaseTextures(Renderer());
        Draw(path);
        SDL_Rect now{};
        SDL_RenderGetViewport(Renderer(), &now);
        EXPECT_TRUE(SDL_RectEquals(&now, &view));
        EXPECT_EQ(SDL_GetRenderTarget(Renderer()), layer);
        EXPECT_EQ(BlendMode(), SDL_BLENDMODE_ADD);
    }
    SDL_SetRenderTarget(Renderer(), nullptr);
    SDL_DestroyTexture(layer);
}

TEST_F(LinePathTest, CostsAsManyCallsForAPointOfAThousandAsOfTen) {
    const auto callsOfAPoint = [&](size_t count) {
        while (path.points.size() < count) {
            const auto i = static_cast<double>(path.points.size());
            AddPoints(path, {{std::fmod(i * 37, 1280), std::fmod(i * 53, 720)}});
        }
        Draw(path);
        AddPoints(path, {{640, 360}});
        Calls().Clear();
        Draw(path);
        return Calls().Names();
    };
    const std::vector<std::string> few = callsOfAPoint(10);
    EXPECT_EQ(callsOfAPoint(1000), few);
    EXPECT_LE(few.size(), 30U);
    Calls().Clear();
    Draw(path);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 0U) << "nothing new";
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 2U);
}

TEST_F(LinePathTest, GrowsItsRoomInLeaps) {
    size_t moves = 0;
    const LinePath::Point* place = nullptr;
    for (int i = 0; i < 10000; ++i) {
        AddPoints(path, {{i % 1280, i % 720}});
        path.Normalize(1280, 720);
        moves += path.normalizedPoints.data() != place ? 1 : 0;
        place = path.normalizedPoints.data();
    }
    EXPECT_LT(moves, 40U);
}

TEST_F(LinePathTest, FreesItsTexturesWithoutAWord) {
    {
        LinePath other;
        other.strokeWidth = 20;
        AddPoints(other, kZigzag);
        Draw(other);
        EXPECT_EQ(Sdl().LiveTextures(), 2U);
    }
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(Testing::Fake().Logs().empty());
}

TEST_F(LinePathTest, DrawsNothingWhereItCannotHaveATexture) {
    AddPoints(path, kZigzag);
    for (const char* const function : {"SDL_CreateTexture", "SDL_SetRenderTarget"}) {
        Sdl().FailAlways(function);
        EXPECT_EQ(CountOf(Drawn(path), kBackground), 640U * 360U) << function;
        EXPECT_TRUE(path.strokeTextures.empty());
        Sdl().Reset();
    }
    EXPECT_GT(CountOf(Drawn(path), kOpaqueRed), 1000U) << "the next frame tries again";
}

TEST_F(LinePathTest, ComesInFromTheOtherSideWhereItLeavesThe16Bits) {
    path.strokeWidth = 510;
    AddPoints(path, {{65400, 100}, {65460, 300}});
    const Picture growing = Drawn(path);
    path.ReleaseTextures(Renderer());
    path.controlId = "finished";
    const Picture finished = Drawn(path);
    Start(kBackground);
    Brush brush(SDL_Rect{0, 0, 640, 360});
    brush.ThickLine({32700, 50}, {32730, 150}, 255);
    brush.Draw(Renderer(), Testing::kRedColor);
    EXPECT_TRUE(Identical(growing, reader.Read()));
    EXPECT_TRUE(Identical(finished, reader.Read()));
    EXPECT_GT(CountOf(growing, kOpaqueRed), 1000U);
}

TEST_F(LinePathTest, KeepsItsCurveWhereOnlyTheTailCannotBeDrawnInto) {
    AddPoints(path, kZigzag);
    const Picture whole = Drawn(path);
    path.ReleaseTextures(Renderer());
    int made = 0;
    Calls().OnCall("SDL_CreateTexture", [&made](const Testing::Call& /*call*/) {
        if (++made == 2) Sdl().Fail("SDL_SetRenderTarget");
    });
    const Picture picture = Drawn(path);
    Calls().OnCall("SDL_CreateTexture", {});
    EXPECT_TRUE(path.tailTextures.empty());
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    EXPECT_GT(CountOf(picture, kOpaqueRed), 1000U);
    EXPECT_FALSE(Identical(picture, whole));
    EXPECT_TRUE(Identical(Drawn(path), whole)) << "the next frame tries again";
}

TEST_F(LinePathTest, IsWholeOnEachOfTwoRenderersInTurn) {
    Testing::PixelReader other(320, 180);
    const auto drawnOnOther = [&] {
        other.Fill(kBackground);
        SDL_SetRenderDrawBlendMode(other.Renderer(), SDL_BLENDMODE_BLEND);
        path.Render(other.Renderer());
        return other.Read();
    };
    AddPoints(path, kZigzag);
    const Picture first = Drawn(path);
    const Picture second = drawnOnOther();
    EXPECT_TRUE(Identical(Drawn(path), first));
    EXPECT_TRUE(Identical(drawnOnOther(), second));
    path.ReleaseTextures(other.Renderer());
    EXPECT_TRUE(Identical(Drawn(path), first));
}

TEST_F(LinePathTest, IsNormalizedAgainAfterItsStart) {
    path.normalized = true;
    path.SetStart(1, 2);
    EXPECT_FALSE(path.normalized);
}

}  // namespace
}  // namespace Corvanta::Drawing
