#include "drawing/PointerMapping.h"

#include <gmock/gmock.h>

#include <limits>

namespace Corvanta::Drawing {
namespace {

constexpr int kHighest = std::numeric_limits<int>::max();
constexpr int kLowest = std::numeric_limits<int>::min();
constexpr SDL_Point kCanvas{1280, 720};
constexpr SDL_Rect kArea{100, 50, 640, 360};

::testing::AssertionResult Maps(SDL_Point position, SDL_Point point, const SDL_Rect& area = kArea) {
    const auto mapped = MapToCanvas(position, area, kCanvas);
    if (!mapped) return ::testing::AssertionFailure() << "is nowhere";
    if (mapped->x == point.x && mapped->y == point.y) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "is at " << mapped->x << ", " << mapped->y;
}

TEST(PointerMapping, FollowsThePlaceInTheVideo) {
    EXPECT_TRUE(Maps({100, 50}, {0, 0}));
    EXPECT_TRUE(Maps({420, 230}, {640, 360}));
    EXPECT_TRUE(Maps({739, 409}, {1278, 718}));
}

TEST(PointerMapping, CutsTheProductToWholeUnits) {
    EXPECT_TRUE(Maps({1, 2}, {426, 480}, {0, 0, 3, 3}));
    EXPECT_TRUE(Maps({1, 1}, {0, 0}, {0, 0, 2000, 2000}));
}

TEST(PointerMapping, StopsAtTheFarEdges) {
    EXPECT_TRUE(Maps({740, 410}, {1280, 720}));
    EXPECT_TRUE(Maps({5000, 5000}, {1280, 720}));
    EXPECT_TRUE(Maps({kHighest, kHighest}, {1280, 720}, {-10, -10, 640, 360}));
}

TEST(PointerMapping, IsNegativeBeforeTheNearEdges) {
    EXPECT_TRUE(Maps({90, 40}, {-20, -20}));
    EXPECT_TRUE(Maps({kLowest, kLowest}, {kLowest, kLowest}, {10, 10, 1, 1}));
}

TEST(PointerMapping, IsNowhereOnAVideoWithoutSize) {
    EXPECT_FALSE(MapToCanvas({100, 50}, {100, 50, 0, 360}, kCanvas));
    EXPECT_FALSE(MapToCanvas({100, 50}, {100, 50, 640, 0}, kCanvas));
    EXPECT_FALSE(MapToCanvas({100, 50}, {100, 50, -640, -360}, kCanvas));
}

TEST(PointerMapping, MeasuresTheCanvasInWholeUnits) {
    const SDL_Point size = WholeUnits(1706.9, 0.9);
    EXPECT_EQ(size.x, 1706);
    EXPECT_EQ(size.y, 0);
    const SDL_Point wild = WholeUnits(1e300, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(wild.x, kHighest);
    EXPECT_EQ(wild.y, 0);
}

TEST(PointerMapping, LeavesTheFarEdgesOutOfTheCanvas) {
    EXPECT_TRUE(IsOnCanvas({0, 0}, kCanvas));
    EXPECT_TRUE(IsOnCanvas({1279, 719}, kCanvas));
    EXPECT_FALSE(IsOnCanvas({1280, 719}, kCanvas));
    EXPECT_FALSE(IsOnCanvas({1279, 720}, kCanvas));
    EXPECT_FALSE(IsOnCanvas({-1, 0}, kCanvas));
    EXPECT_FALSE(IsOnCanvas({0, -1}, kCanvas));
}

::testing::AssertionResult Hits(SDL_Point point, bool inside, bool nearby) {
    const TextHit hit = HitTestText(point, {400, 400, 161, 81}, {2560, 1440}, kCanvas);
    if (hit.inside == inside && hit.nearby == nearby) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "inside " << hit.inside << ", nearby " << hit.nearby;
}

TEST(PointerMapping, FindsThePointerOnTheTextButNotOnItsFarEdges) {
    EXPECT_TRUE(Hits({200, 200}, true, true));
    EXPECT_TRUE(Hits({279, 239}, true, true));
    EXPECT_TRUE(Hits({280, 239}, false, true));
    EXPECT_TRUE(Hits({279, 240}, false, true));
    EXPECT_TRUE(Hits({199, 200}, false, true));
    EXPECT_TRUE(Hits({200, 199}, false, true));
}

TEST(PointerMapping, FindsThePointerWithinThirtyUnitsAroundTheText) {
    EXPECT_TRUE(Hits({170, 170}, false, true));
    EXPECT_TRUE(Hits({309, 269}, false, true));
    EXPECT_TRUE(Hits({169, 200}, false, false));
    EXPECT_TRUE(Hits({200, 169}, false, false));
    EXPECT_TRUE(Hits({310, 200}, false, false));
    EXPECT_TRUE(Hits({200, 270}, false, false));
}

TEST(PointerMapping, FindsNothingOnALayerWithoutSize) {
    const TextHit hit = HitTestText({0, 0}, {0, 0, 100, 100}, {0, 0}, {0, 0});
    EXPECT_FALSE(hit.inside);
    EXPECT_FALSE(hit.nearby);
}

TEST(PointerMapping, BearsATextOfAnySize) {
    const SDL_Rect wild{kHighest, kLowest, kHighest, kHighest};
    EXPECT_FALSE(HitTestText({0, 0}, wild, {1, 1}, {kHighest, kHighest}).inside);
    EXPECT_TRUE(HitTestText({kHighest, kLowest}, wild, {1, 1}, {1, 1}).inside);
}

}  // namespace
}  // namespace Corvanta::Drawing
