#include "video/WallScroll.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace Corvanta::Video {
namespace {

constexpr int64_t kMs = 1'000'000;
using Order = ScrollbarLinger::Order;

TEST(WallScroll, TakesTheLargerWheelComponentAndYWhenTheyAreEqual) {
    struct Row {
        int x;
        int y;
        int delta;
    };
    for (const Row& row : std::vector<Row>{{0, 0, 0},
                                           {3, 0, 3},
                                           {0, -4, -4},
                                           {-5, 4, -5},
                                           {5, -4, 5},
                                           {5, -5, -5},
                                           {-2, 2, 2},
                                           {INT_MIN, INT_MAX, INT_MIN},
                                           {INT_MAX, INT_MIN, INT_MIN}}) {
        EXPECT_EQ(WheelDelta(row.x, row.y), row.delta) << row.x << ", " << row.y;
    }
}

TEST(EdgeScroll, ScrollsOnlyWithinATenthOfTheAreaAtItsEnds) {
    struct Row {
        int position;
        int amount;
    };
    for (const Row& row : std::vector<Row>{{0, -10},
                                           {-50, -10},
                                           {99, -10},
                                           {100, 0},
                                           {500, 0},
                                           {900, 0},
                                           {901, 10},
                                           {1000, 10},
                                           {4000, 10}}) {
        EdgeScroll scroll;
        EXPECT_EQ(scroll.Step(0, row.position, 1000), 0) << "the first step only starts the clock";
        EXPECT_EQ(scroll.Step(20 * kMs, row.position, 1000), row.amount) << row.position;
    }
}

TEST(EdgeScroll, MovesHalfAPixelPerMillisecondWhateverTheTicks) {
    for (const int tickMs : {1, 2, 4, 8, 16, 40, 250, 1000}) {
        EdgeScroll scroll;
        int moved = 0;
        for (int ms = 0; ms <= 2000; ms += tickMs) moved += scroll.Step(ms * kMs, 950, 1000);
        // A step of an odd number of milliseconds is rounded up.
        EXPECT_EQ(moved, tickMs == 1 ? 2000 : 1000) << tickMs;
    }
}

TEST(EdgeScroll, AddsUpTicksTooShortToMoveByAPixel) {
    EdgeScroll scroll;
    ASSERT_EQ(scroll.Step(0, 950, 1000), 0);
    EXPECT_EQ(scroll.Step(400'000, 950, 1000), 0);
    EXPECT_EQ(scroll.Step(800'000, 950, 1000), 0);
    EXPECT_EQ(scroll.Step(1'200'000, 950, 1000), 1);
    EXPECT_EQ(scroll.Step(1'600'000, 950, 1000), 0);
}

TEST(EdgeScroll, StartsItsClockAnewAfterThePointerWasAway) {
    EdgeScroll scroll;
    (void)scroll.Step(0, 950, 1000);
    EXPECT_EQ(scroll.Step(1000 * kMs, 500, 1000), 0);
    EXPECT_EQ(scroll.Step(2000 * kMs, 950, 1000), 0);
    EXPECT_EQ(scroll.Step(2010 * kMs, 950, 1000), 5);
    scroll.Stop();
    EXPECT_EQ(scroll.Step(3000 * kMs, 950, 1000), 0);
}

TEST(EdgeScroll, LivesInAnyAreaAndWithAnyPause) {
    for (const int extent : {INT_MIN, -100, 0, 1, INT_MAX}) {
        for (const int position : {INT_MIN, -1, 0, 1, INT_MAX}) {
            EdgeScroll scroll;
            (void)scroll.Step(0, position, extent);
            const int amount = scroll.Step(INT64_MAX, position, extent);
            EXPECT_TRUE(amount == 0 || amount == INT_MAX || amount == INT_MIN) << amount;
        }
    }
}

TEST(ScrollbarLinger, StaysTwoSecondsAfterThePointerHasLeft) {
    ScrollbarLinger linger;
    EXPECT_EQ(linger.Step(0, {.hovered = true}), Order::None);
    EXPECT_FALSE(linger.IsLingering());
    EXPECT_EQ(linger.Step(10 * kMs, {.wasHovered = true}), Order::Show);
    EXPECT_TRUE(linger.IsLingering());
    EXPECT_EQ(linger.Step(2010 * kMs, {}), Order::None);
    EXPECT_EQ(linger.Step(2011 * kMs - 1, {}), Order::None);
    EXPECT_TRUE(linger.IsLingering());
    EXPECT_EQ(linger.Step(2011 * kMs, {}), Order::Hide);
    EXPECT_FALSE(linger.IsLingering());
    EXPECT_EQ(linger.Step(9000 * kMs, {}), Order::None);
}

TEST(ScrollbarLinger, StaysTwoSecondsAfterTheLastWheelStep) {
    ScrollbarLinger linger;
    EXPECT_EQ(linger.Step(0, {.wheelMoved = true}), Order::None);
    EXPECT_EQ(linger.Step(1000 * kMs, {.wheelMoved = true, .wheelMovedBefore = true}), Order::Show);
    EXPECT_EQ(linger.Step(1500 * kMs, {.wheelMovedBefore = true}), Order::Show);
    EXPECT_EQ(linger.Step(3500 * kMs, {}), Order::None);
    EXPECT_EQ(linger.Step(3501 * kMs, {}), Order::Hide);
}

TEST(ScrollbarLinger, IsUsedAsLongAsThePointerIsOnIt) {
    ScrollbarLinger linger;
    ASSERT_EQ(linger.Step(0, {.wasHovered = true}), Order::Show);
    EXPECT_EQ(linger.Step(5000 * kMs, {.hovered = true}), Order::None);
    EXPECT_FALSE(linger.IsLingering());
}

}  // namespace
}  // namespace Corvanta::Video
