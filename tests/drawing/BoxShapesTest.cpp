// Rectangle and ellipse.
#include <SDL2_gfxPrimitives.h>

#include <limits>

#include "drawing/Ellipse.h"
#include "drawing/Rectangle.h"
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

constexpr uint32_t kOpaqueBlue = 0xFF0000FF;

class BoxShapesTest : public Testing::ShapeTest {
protected:
    template <typename Box>
    static void Drag(Box& box, double fromX, double fromY, double toX, double toY) {
        box.SetStart(fromX, fromY);
        box.SetEnd(toX, toY);
        box.strokeColor = Color(255, 0, 0, 255);
        box.fillColor = Color(0, 0, 255, 255);
        box.strokeWidth = 20;
    }
};

TEST_F(BoxShapesTest, RectangleHasAFrameOfTheStrokesWidthAroundItsFill) {
    Rectangle box;
    Drag(box, 100, 80, 300, 280);
    const Picture picture = Drawn(box);
    EXPECT_TRUE(AreaIs(picture, {60, 50, 80, 80}, kOpaqueBlue));
    EXPECT_TRUE(AreaIs(picture, {50, 40, 100, 10}, kOpaqueRed));
    EXPECT_TRUE(AreaIs(picture, {50, 40, 10, 100}, kOpaqueRed));
    EXPECT_TRUE(AreaIs(picture, {140, 40, 10, 100}, kOpaqueRed));
    EXPECT_TRUE(AreaIs(picture, {50, 130, 100, 10}, kOpaqueRed));
    EXPECT_EQ(CountOf(picture, kBackground), 640U * 360U - 100U * 100U);
}

TEST_F(BoxShapesTest, RectangleIsTheSameDraggedFromAnyCorner) {
    Rectangle forward;
    Drag(forward, 100, 80, 300, 280);
    Rectangle backward;
    Drag(backward, 300, 280, 100, 80);
    EXPECT_EQ(backward.width, -200);
    EXPECT_EQ(backward.height, -200);
    EXPECT_TRUE(Identical(Drawn(forward), Drawn(backward)));
    EXPECT_DOUBLE_EQ(backward.outerX, forward.outerX);
    EXPECT_DOUBLE_EQ(backward.outerY, forward.outerY);
    EXPECT_DOUBLE_EQ(backward.outerWidth, 200 / 1280.0);
    EXPECT_DOUBLE_EQ(backward.outerHeight, 200 / 720.0);
    EXPECT_DOUBLE_EQ(backward.innerX, 120 / 1280.0);
    EXPECT_DOUBLE_EQ(backward.innerHeight, 160 / 720.0);
    EXPECT_EQ(backward.width, -200) << "the wire keeps the sign";
}

TEST_F(BoxShapesTest, RectangleNarrowerThanTwoStrokesIsAllStroke) {
    Rectangle box;
    Drag(box, 100, 80, 138, 280);
    const Picture picture = Drawn(box);
    EXPECT_EQ(box.innerWidth, 0);
    EXPECT_GT(box.innerHeight, 0);
    EXPECT_TRUE(AreaIs(picture, {50, 40, 19, 100}, kOpaqueRed));
    EXPECT_EQ(CountOf(picture, kOpaqueBlue), 0U);
}

TEST_F(BoxShapesTest, RectangleShowsItsStrokeThroughATranslucentFill) {
    Rectangle box;
    Drag(box, 100, 80, 300, 280);
    box.fillColor = Color(0, 0, 255, 128);
    const Picture picture = Drawn(box);
    EXPECT_TRUE(PixelIs(picture, 100, 90, 0xFF7F0080, 2));
}

TEST_F(BoxShapesTest, AreNothingWithoutASize) {
    Rectangle line;
    Drag(line, 100, 80, 100, 280);
    Rectangle level;
    Drag(level, 100, 80, 300, 80);
    Ellipse dot;
    Drag(dot, 100, 80, 100, 80);
    Ellipse flat;
    Drag(flat, 100, 80, 300, 80);
    Ellipse upright;
    Drag(upright, 100, 80, 100, 280);
    for (Shape* const shape : std::initializer_list<Shape*>{&line, &level, &dot, &flat, &upright})
        EXPECT_EQ(CountOf(Drawn(*shape), kBackground), 640U * 360U);
}

TEST_F(BoxShapesTest, NormalizeOnlyUntilTheyAreChanged) {
    Rectangle box;
    Drag(box, 100, 80, 300, 280);
    box.Normalize(1280, 720);
    box.Normalize(640, 360);
    EXPECT_DOUBLE_EQ(box.outerX, 100 / 1280.0);
    box.SetEnd(640, 360);
    EXPECT_FALSE(box.normalized);
    box.Normalize(640, 360);
    EXPECT_DOUBLE_EQ(box.outerX, 100 / 640.0);
    Ellipse ellipse;
    Drag(ellipse, 100, 80, 300, 280);
    ellipse.Normalize(1280, 720);
    ellipse.Normalize(640, 360);
    EXPECT_DOUBLE_EQ(ellipse.radiusX, 100 / 1280.0);
    ellipse.SetStart(10, 10);
    EXPECT_FALSE(ellipse.normalized);
}

TEST_F(BoxShapesTest, EllipseIsTheLibrarysTwiceOver) {
    for (const double right : {180.0, 640.0, 1100.0}) {
        Ellipse ellipse;
        Drag(ellipse, right, 450, 100, 90);
        const Picture picture = Drawn(ellipse);
        Start(kBackground);
        const auto radius = static_cast<Sint16>((right - 100) / 4);
        const auto center = static_cast<Sint16>(100 / 2 + (right - 100) / 4);
        filledEllipseRGBA(Renderer(), center, 135, radius, 90, 255, 0, 0, 255);
        filledEllipseRGBA(Renderer(), center, 135, static_cast<Sint16>(radius - 10), 80, 0, 0, 255, 255);
        EXPECT_TRUE(Identical(picture, reader.Read())) << right;
        EXPECT_GT(CountOf(picture, kOpaqueBlue), 100U);
    }
}

TEST_F(BoxShapesTest, EllipseIsTheSameDraggedFromAnyCorner) {
    Ellipse forward;
    Drag(forward, 100, 80, 300, 280);
    Ellipse backward;
    Drag(backward, 300, 280, 100, 80);
    EXPECT_TRUE(Identical(Drawn(forward), Drawn(backward)));
    EXPECT_DOUBLE_EQ(backward.centerX, 200 / 1280.0);
    EXPECT_DOUBLE_EQ(backward.innerRadiusY, 80 / 720.0);
    EXPECT_EQ(backward.height, -200);
}

TEST_F(BoxShapesTest, EllipseNeverHasALessThanEmptyInside) {
    Ellipse ellipse;
    Drag(ellipse, 100, 80, 130, 110);
    ellipse.Normalize(1280, 720);
    EXPECT_EQ(ellipse.innerRadiusX, 0);
    EXPECT_EQ(ellipse.innerRadiusY, 0);
}

TEST_F(BoxShapesTest, EllipseOverAWholeLayerHasNoHoles) {
    Testing::PixelReader layer(2560, 1440);
    Ellipse ellipse;
    Drag(ellipse, 0, 0, 1280, 720);
    ellipse.Normalize(1280, 720);
    ellipse.Render(layer.Renderer());
    const Picture picture = layer.Read();
    for (int x = 50; x < 2510; ++x) ASSERT_TRUE(PixelIs(picture, x, 720, kOpaqueBlue)) << x;
    EXPECT_TRUE(PixelIs(picture, 10, 720, kOpaqueRed));
}

TEST_F(BoxShapesTest, SurviveEveryNumber) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double numbers[] = {
        0, -1, 1e308, -1e308, kInfinity, -kInfinity, 1e10, 640, std::numeric_limits<double>::quiet_NaN()};
    for (const double a : numbers) {
        for (const double b : numbers) {
            for (const uint32_t width : {0U, 255U, 70000U, 4294967295U}) {
                Rectangle box;
                Drag(box, a, b, b, a);
                box.strokeWidth = width;
                Draw(box);
                Ellipse ellipse;
                Drag(ellipse, a, b, b, a);
                ellipse.strokeWidth = width;
                Draw(ellipse);
            }
        }
    }
    Rectangle everything;
    Drag(everything, -1e9, -1e9, 1e9, 1e9);
    EXPECT_EQ(CountOf(Drawn(everything), kOpaqueBlue), 640U * 360U);
}

TEST_F(BoxShapesTest, RectangleIsCutTowardZero) {
    // 50.5 pixels from a place of 50.5, and 50 from -1.5 on.
    Rectangle box;
    Drag(box, 101, 101, 202, 202);
    box.strokeWidth = 0;
    Picture picture = Drawn(box);
    EXPECT_TRUE(AreaIs(picture, {50, 50, 50, 50}, kOpaqueBlue));
    EXPECT_EQ(CountOf(picture, kOpaqueBlue), 50U * 50U);
    Drag(box, -3, -3, 97, 97);
    box.strokeWidth = 0;
    picture = Drawn(box);
    EXPECT_TRUE(AreaIs(picture, {0, 0, 49, 49}, kOpaqueBlue));
    EXPECT_EQ(CountOf(picture, kOpaqueBlue), 49U * 49U);
}

TEST_F(BoxShapesTest, RectangleIsFilledUnderTheBlendModeInForce) {
    Rectangle box;
    Drag(box, 100, 80, 300, 280);
    box.fillColor = Color(0, 0, 255, 128);
    box.Normalize(1280, 720);
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
    Calls().Clear();
    box.Render(Renderer());
    EXPECT_EQ(Calls().Count("SDL_SetRenderDrawBlendMode"), 0U);
    EXPECT_EQ(reader.Read().At(100, 90), 0x800000FFU) << "in the stroke's place, not over it";
}

TEST_F(BoxShapesTest, BeginAnewWithoutASize) {
    Rectangle box;
    Ellipse ellipse;
    Drag(box, 100, 80, 300, 280);
    Drag(ellipse, 100, 80, 300, 280);
    box.SetStart(7, 8);
    ellipse.SetStart(7, 8);
    EXPECT_EQ(box.x, 7);
    EXPECT_EQ(ellipse.y, 8);
    for (const double size : {box.width, box.height, ellipse.width, ellipse.height}) EXPECT_EQ(size, 0);
}

TEST_F(BoxShapesTest, EllipseOfARadiusThatWrapsBelowZeroIsNothing) {
    // 40000 pixels are -25536 in 16 bits.
    Ellipse ellipse;
    Drag(ellipse, 0, 80, 160000, 480);
    ellipse.Normalize(1280, 720);
    Calls().Clear();
    ellipse.Render(Renderer());
    EXPECT_EQ(Calls().Count("SDL_SetRenderDrawBlendMode"), 0U);
    EXPECT_EQ(CountOf(reader.Read(), kBackground), 640U * 360U);
}

}  // namespace
}  // namespace Corvanta::Drawing
