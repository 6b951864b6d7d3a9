#include "drawing/StrokeGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "drawing/LineGeometry.h"

namespace Corvanta::Drawing {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr SDL_Rect kViewport{0, 0, 2560, 1440};

TEST(StrokeGeometry, CutsPixelsTowardZeroAndTo16Bits) {
    EXPECT_EQ(ToPixel(1.99), 1);
    EXPECT_EQ(ToPixel(-1.99), -1);
    EXPECT_EQ(ToPixel(32767.9), 32767);
    EXPECT_EQ(ToPixel(32768), -32768);
    EXPECT_EQ(ToPixel(70000), 4464);
    EXPECT_EQ(ToPixel(-40000), 25536);
    EXPECT_EQ(ToPixel(1e308), -1) << "held to 2147483647 first";
    EXPECT_EQ(ToPixel(-kInfinity), 0) << "held to -2147483648 first";
    EXPECT_EQ(ToPixel(kNaN), 0);
}

TEST(StrokeGeometry, CutsAThicknessTo8Bits) {
    EXPECT_EQ(ToThickness(255.9), 255);
    EXPECT_EQ(ToThickness(256), 0);
    EXPECT_EQ(ToThickness(257), 1);
    EXPECT_EQ(ToThickness(70000), 112);
    EXPECT_EQ(ToThickness(kInfinity), 255);
    EXPECT_EQ(ToThickness(kNaN), 0);
}

TEST(StrokeGeometry, TakesPixelsFromTheSidesOfTheViewport) {
    const SDL_Point pixels = ToPixels({0.5004, 0.25}, kViewport);
    EXPECT_EQ(pixels.x, 1281);
    EXPECT_EQ(pixels.y, 360);
}

TEST(StrokeGeometry, FindsTheMiddleInEveryDirection) {
    for (const Fraction& to : {Fraction{0.7, 0.9}, Fraction{0.1, 0.9}, Fraction{0.7, 0.2}, Fraction{0.1, 0.2},
                               Fraction{0.7, 0.5}, Fraction{0.5, 0.1}, Fraction{0.5, 0.5}}) {
        const Fraction middle = MidpointOf({0.5, 0.5}, to);
        EXPECT_NEAR(middle.first, (0.5 + to.first) / 2, 1e-6);
        EXPECT_NEAR(middle.second, (0.5 + to.second) / 2, 1e-6);
    }
}

TEST(StrokeGeometry, TakesEqualCoordinatesForThePositiveDirection) {
    // The guard against an infinite angle moves the middle of an upright piece a little, and to the right.
    const Fraction middle = MidpointOf({0.5, 0.5}, {0.5, 0.7});
    EXPECT_GT(middle.first, 0.5);
    EXPECT_NEAR(middle.first, 0.5, 1e-6);
}

TEST(StrokeGeometry, WidensALevelLineByItsWidthLessOne) {
    const Corners corners = ThickLineCorners({10, 20}, {110, 20}, 9);
    const int expected[4][2] = {{10, 16}, {10, 24}, {110, 24}, {110, 16}};
    for (size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(corners[i].x, expected[i][0]) << i;
        EXPECT_EQ(corners[i].y, expected[i][1]) << i;
    }
}

TEST(StrokeGeometry, WidensADiagonalLineByItsWidthLessATenth) {
    // Half of 9.9 along each axis over the square root of 2.
    const Corners corners = ThickLineCorners({100, 100}, {200, 200}, 10);
    EXPECT_EQ(corners[0].x, 103);
    EXPECT_EQ(corners[0].y, 96);
    EXPECT_EQ(corners[1].x, 96);
    EXPECT_EQ(corners[1].y, 103);
    EXPECT_EQ(corners[2].x, 196);
    EXPECT_EQ(corners[3].y, 196);
}

TEST(StrokeGeometry, SamplesACurveInSixthsUpToItsLastPoint) {
    const std::vector<SDL_Point> control{{0, 0}, {36, 360}, {72, -36}};
    const int expected[7][2] = {{12, 99}, {24, 156}, {36, 171}, {48, 144}, {60, 75}, {72, -36}, {72, -36}};
    for (int i = 1; i <= 7; ++i) {
        const SDL_Point sample = BezierSample(control, 2, i);
        EXPECT_EQ(sample.x, expected[i - 1][0]) << i;
        EXPECT_EQ(sample.y, expected[i - 1][1]) << i;
    }
}

TEST(StrokeGeometry, KeepsALevelCurveLevel) {
    for (int level = -300; level < 3000; ++level) {
        const std::vector<SDL_Point> control{{0, level}, {50, level}, {99, level}};
        for (int i = 1; i <= 7; ++i) ASSERT_EQ(BezierSample(control, 2, i).y, level);
    }
}

TEST(StrokeGeometry, SamplesCurvesOfMorePoints) {
    const std::vector<SDL_Point> control{{0, 0}, {0, 100}, {100, 100}, {100, 0}};
    const SDL_Point middle = BezierSample(control, 2, 4);
    EXPECT_EQ(middle.x, 50);
    EXPECT_EQ(middle.y, 75);
}

TEST(LineGeometry, PullsBothEndsIn) {
    const LineSpan span = PullIn({{0.1, 0.2}, {0.9, 0.2}}, {1, 0}, 0.05);
    EXPECT_DOUBLE_EQ(span.from.first, 0.15);
    EXPECT_DOUBLE_EQ(span.to.first, 0.85);
    EXPECT_DOUBLE_EQ(span.from.second, 0.2);
}

TEST(LineGeometry, MakesAHeadThreeStrokesWideAndTwoAndAHalfLong) {
    const auto [side, tip, other] = ArrowHead({0.5, 0.5}, {1, 0}, 0.02);
    EXPECT_DOUBLE_EQ(side.first, 0.5);
    EXPECT_DOUBLE_EQ(side.second, 0.47);
    EXPECT_DOUBLE_EQ(tip.first, 0.55);
    EXPECT_DOUBLE_EQ(tip.second, 0.5);
    EXPECT_DOUBLE_EQ(other.second, 0.53);
}

TEST(LineGeometry, BeginsEveryDashOfALineInSight) {
    const DashRange range = VisibleDashes({{0.1, 0.5}, {1, 0}, 0.8}, 0.01, 0.002, kViewport, 10);
    EXPECT_DOUBLE_EQ(range.first, 0);
    EXPECT_DOUBLE_EQ(range.end, 0.8);
    EXPECT_DOUBLE_EQ(range.step, 0.03);
}

TEST(LineGeometry, SkipsDashesOutOfSightByWholeSteps) {
    const DashRange range = VisibleDashes({{-1000, 0.5}, {1, 0}, 5000}, 0.01, 0.002, kViewport, 10);
    EXPECT_GT(range.first, 999);
    EXPECT_LT(range.first, 1000);
    EXPECT_NEAR(std::remainder(range.first, 0.03), 0, 1e-9);
    EXPECT_LT(range.end, 1002);
    const DashRange none = VisibleDashes({{0.1, 2}, {1, 0}, 0.8}, 0.01, 0.002, kViewport, 10);
    EXPECT_GE(none.first, none.end);
}

TEST(LineGeometry, HasNoMoreDashesThanPixels) {
    const DashRange range = VisibleDashes({{0, 0.5}, {1, 0}, 1}, 1e-12, 0.002, kViewport, 10);
    EXPECT_LT((range.end - range.first) / range.step, 4 * 2560 + 1);
    EXPECT_LT(range.step * 2560, 0.26);
    for (const double dash : {0.0, -1.0, kNaN}) {
        const DashRange none = VisibleDashes({{0, 0.5}, {1, 0}, 1}, dash, 0.002, kViewport, 10);
        EXPECT_GE(none.first, none.end);
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
