// A finished stroke is drawn without a texture of its target's size, to the same pixels.
#include <limits>

#include "drawing/ErasedLinePath.h"
#include "drawing/LinePath.h"
#include "tests/drawing/ShapeTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AddPoints;
using Testing::Calls;
using Testing::CountOf;
using Testing::Identical;
using Testing::kBackground;
using Testing::Picture;
using Testing::Sdl;

constexpr unsigned kSeed = 7;

class FinishedStrokeTest : public Testing::ShapeTest {
protected:
    double Number(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(numbers_);
    }
    // Around any place, some outside of the picture, some with points in one place.
    std::vector<LinePath::Point> Stroke() {
        const double left = Number(-300, 1400);
        const double top = Number(-300, 800);
        const double size = Number(0, 1) < 0.2 ? 6 : Number(20, 900);
        std::vector<LinePath::Point> points(static_cast<size_t>(Number(1, 40)));
        for (auto& [x, y] : points) {
            x = left + Number(0, size);
            y = top + Number(0, size);
        }
        return points;
    }
    void Fill(LinePath& path, const std::vector<LinePath::Point>& points, uint32_t width, uint8_t alpha) {
        path.strokeWidth = width;
        path.color = Color(255, 130, 30, alpha);
        AddPoints(path, points);
    }
    void ExpectSame(const std::vector<LinePath::Point>& points, uint32_t width, uint8_t alpha,
                    uint32_t background) {
        LinePath growing;
        Fill(growing, points, width, alpha);
        LinePath finished;
        Fill(finished, points, width, alpha);
        finished.controlId = "finished";
        const Picture expected = Drawn(growing, background);
        growing.ReleaseTextures(Renderer());
        const Picture picture = Drawn(finished, background);
        EXPECT_TRUE(finished.strokeTextures.empty() || width / 2 % 256 == 1);
        finished.ReleaseTextures(Renderer());
        ASSERT_TRUE(Identical(picture, expected))
            << points.size() << " points, width " << width << ", alpha " << int{alpha};
    }

private:
    std::mt19937 numbers_{kSeed};
};

TEST_F(FinishedStrokeTest, HasEveryPixelOfTheGrowingOne) {
    const uint32_t widths[] = {1, 2, 3, 5, 8, 13, 20, 60, 200, 400, 512, 514};
    const uint8_t alphas[] = {255, 255, 254, 128, 77, 1, 0};
    const uint32_t backgrounds[] = {kBackground, 0x00000000, 0x80306090};
    for (int i = 0; i < 420; ++i) {
        const auto n = static_cast<size_t>(i);
        ASSERT_NO_FATAL_FAILURE(ExpectSame(Stroke(), widths[n % std::size(widths)],
                                           alphas[n % std::size(alphas)],
                                           backgrounds[n % std::size(backgrounds)]));
    }
}

TEST_F(FinishedStrokeTest, HasEveryPixelOfTheGrowingOneBeyond16Bits) {
    for (const double far : {65535.0, 65700.0, 131072.0, -65600.0, 1e10, 1e308}) {
        for (const uint8_t alpha : {uint8_t{255}, uint8_t{100}}) {
            ASSERT_NO_FATAL_FAILURE(ExpectSame({{100, 100}, {far, 300}, {400, far}, {far, far}, {900, 500}},
                                               20, alpha, kBackground));
        }
    }
}

TEST_F(FinishedStrokeTest, OfAnOpaqueColourNeedsNoTexture) {
    LinePath path;
    Fill(path, {{100, 100}, {300, 400}, {700, 200}, {800, 600}}, 20, 255);
    path.controlId = "finished";
    path.Normalize(1280, 720);
    Calls().Clear();
    path.Render(Renderer());
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 1U);
    EXPECT_LE(Calls().All().size(), 4U);
}

TEST_F(FinishedStrokeTest, OfATranslucentColourHasATextureOfItsOwnSizeForAMoment) {
    LinePath path;
    Fill(path, {{100, 100}, {200, 150}, {150, 200}}, 20, 100);
    path.controlId = "finished";
    path.Normalize(1280, 720);
    Calls().Clear();
    path.Render(Renderer());
    const auto made = Calls().Of("SDL_CreateTexture");
    ASSERT_EQ(made.size(), 1U);
    EXPECT_LT(std::stoi(made[0].arguments[4]), 90);
    EXPECT_LT(std::stoi(made[0].arguments[5]), 90);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(path.strokeTextures.empty());
}

TEST_F(FinishedStrokeTest, GoesOnInTheTextureThatItGrewIn) {
    LinePath path;
    Fill(path, {{100, 100}, {300, 400}, {700, 200}}, 20, 255);
    Draw(path);
    path.controlId = "finished";
    Calls().Clear();
    const Picture picture = Drawn(path);
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 2U);
    path.ReleaseTextures(Renderer());
    EXPECT_TRUE(Identical(Drawn(path), picture));
}

TEST_F(FinishedStrokeTest, IsNotLostWhereItCannotHaveATexture) {
    LinePath path;
    Fill(path, {{100, 100}, {300, 400}, {700, 200}}, 20, 100);
    path.controlId = "finished";
    Sdl().FailAlways("SDL_CreateTexture");
    const Picture picture = Drawn(path);
    EXPECT_GT(CountOf(picture, picture.At(50, 50)), 500U) << "one tone";
    EXPECT_NE(picture.At(50, 50), kBackground);
}

TEST_F(FinishedStrokeTest, SurvivesEveryNumber) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double numbers[] = {0,         -1,         1e308, -1e308,
                              kInfinity, -kInfinity, 640,   std::numeric_limits<double>::quiet_NaN()};
    for (const double a : numbers) {
        for (const double b : numbers) {
            for (const uint32_t width : {0U, 255U, 256U, 70000U, 4294967295U}) {
                for (const char* const id : {"", "finished"}) {
                    LinePath path;
                    Fill(path, {{100, 100}, {a, b}, {b, a}, {300, 200}, {a, a}}, width, 255);
                    path.controlId = id;
                    Draw(path);
                    path.ReleaseTextures(Renderer());
                    ErasedLinePath eraser(path);
                    Draw(eraser);
                }
            }
        }
    }
}

TEST_F(FinishedStrokeTest, DrawsAHundredThousandPoints) {
    LinePath path;
    std::vector<LinePath::Point> points;
    for (int i = 0; i < 100000; ++i) points.emplace_back((i * 37) % 1280, (i * 53) % 720);
    Fill(path, points, 6, 255);
    path.controlId = "finished";
    Calls().Clear();
    Draw(path);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 1U);
    ErasedLinePath eraser(path);
    Draw(eraser);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 2U);
}

class EraserTest : public FinishedStrokeTest {};

TEST_F(EraserTest, WritesFullTransparencyAlongItsPoints) {
    ErasedLinePath eraser;
    Fill(eraser, {{200, 200}, {600, 200}}, 40, 255);
    const Picture picture = Drawn(eraser);
    EXPECT_EQ(picture.At(100, 100), 0U);
    EXPECT_EQ(picture.At(200, 100), 0U);
    EXPECT_EQ(picture.At(309, 100), 0U);
    EXPECT_EQ(picture.At(200, 115), kBackground);
    EXPECT_EQ(BlendMode(), SDL_BLENDMODE_BLEND);
    EXPECT_EQ(eraser.color.a, 0);
    EXPECT_EQ(eraser.color.r, 255) << "only the alpha of its colour is cleared";
    EXPECT_TRUE(eraser.strokeTextures.empty());
}

TEST_F(EraserTest, ErasesAsLineOfOnePixelToo) {
    ErasedLinePath eraser;
    Fill(eraser, {{200, 200}, {600, 200}}, 2, 255);
    EXPECT_EQ(CountOf(Drawn(eraser), 0U), 201U);
}

TEST_F(EraserTest, LeavesOutPointsWithinHalfAStrokeOfTheLastOne) {
    ErasedLinePath eraser;
    Fill(eraser, {{200, 200}, {215, 200}, {219, 200}}, 40, 255);
    const Picture dot = Drawn(eraser);
    ErasedLinePath single;
    Fill(single, {{200, 200}}, 40, 255);
    EXPECT_TRUE(Identical(dot, Drawn(single)));
    ErasedLinePath further;
    Fill(further, {{200, 200}, {215, 200}, {220, 200}}, 40, 255);
    EXPECT_FALSE(Identical(dot, Drawn(further)));
}

TEST_F(EraserTest, TakesAPathsPointsAndNoneOfItsColour) {
    LinePath path;
    Fill(path, {{200, 200}, {600, 200}}, 40, 255);
    path.controlId = "id";
    Draw(path);
    ErasedLinePath eraser(path);
    EXPECT_EQ(eraser.points, path.points);
    EXPECT_EQ(eraser.strokeWidth, 40U);
    EXPECT_EQ(eraser.color, Color(0, 0, 0, 0));
    EXPECT_EQ(ErasedLinePath().color, Color(0, 0, 0, 0));
    path.ReleaseTextures(Renderer());
}

TEST_F(EraserTest, DrawsItAllEveryTimeByOneCall) {
    ErasedLinePath eraser;
    Fill(eraser, {{200, 200}, {600, 200}, {400, 600}}, 40, 255);
    Draw(eraser);
    Start(kBackground);
    Calls().Clear();
    Draw(eraser);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRects"), 1U);
    EXPECT_EQ(reader.Read().At(100, 100), 0U);
}

}  // namespace
}  // namespace Corvanta::Drawing
