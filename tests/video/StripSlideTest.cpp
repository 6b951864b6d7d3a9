#include "video/StripSlide.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvanta::Video {
namespace {

constexpr int64_t kMs = 1'000'000;
constexpr int64_t kStart = 5'000 * kMs;

struct Row {
    int64_t elapsedNs;
    int yOffset;
    bool hide;
};

TEST(StripSlide, StandsStillUntilItIsStarted) {
    StripSlide slide;
    const StripSlide::Step step = slide.Advance(kStart, 160);
    EXPECT_EQ(step.yOffset, 0);
    EXPECT_FALSE(step.hide);
}

TEST(StripSlide, ComesInWithinItsTimeByWholeMilliseconds) {
    for (const Row& row : std::vector<Row>{{0, -160, false},
                                           {kMs - 1, -160, false},
                                           {kMs, -159, false},
                                           {100 * kMs, -106, false},
                                           {150 * kMs, -80, false},
                                           {299 * kMs, 0, false},
                                           {300 * kMs, 0, false},
                                           {9000 * kMs, 0, false}}) {
        StripSlide slide;
        slide.StartIn(kStart);
        const StripSlide::Step step = slide.Advance(kStart + row.elapsedNs, 160);
        EXPECT_EQ(step.yOffset, row.yOffset) << row.elapsedNs;
        EXPECT_FALSE(step.hide);
    }
}

TEST(StripSlide, GoesOutWithinItsTimeAndIsHiddenAtTheEnd) {
    for (const Row& row : std::vector<Row>{{0, 0, false},
                                           {100 * kMs, -53, false},
                                           {150 * kMs, -80, false},
                                           {299 * kMs + kMs - 1, -159, false},
                                           {300 * kMs, -160, true}}) {
        StripSlide slide;
        slide.StartOut(kStart);
        EXPECT_TRUE(slide.IsSlidingOut());
        const StripSlide::Step step = slide.Advance(kStart + row.elapsedNs, 160);
        EXPECT_EQ(step.yOffset, row.yOffset) << row.elapsedNs;
        EXPECT_EQ(step.hide, row.hide);
        EXPECT_EQ(slide.IsSlidingOut(), !row.hide);
    }
}

TEST(StripSlide, ReachesEveryWholePixelOnItsWayOut) {
    struct Way {
        int tileHeight;
        int elapsedMs;
        int yOffset;
    };
    // A fraction of the way that was rounded first would end a hair short of these.
    for (const Way& way : {Way{200, 87, -58}, Way{200, 171, -114}, Way{200, 174, -116}, Way{150, 110, -55},
                           Way{50, 174, -29}, Way{200, 86, -57}}) {
        StripSlide slide;
        slide.StartOut(kStart);
        EXPECT_EQ(slide.Advance(kStart + way.elapsedMs * kMs, way.tileHeight).yOffset, way.yOffset)
            << way.elapsedMs << " ms of a tile of " << way.tileHeight;
    }
}

TEST(StripSlide, EndsOnce) {
    StripSlide slide;
    slide.StartOut(kStart);
    EXPECT_TRUE(slide.Advance(kStart + 300 * kMs, 160).hide);
    const StripSlide::Step next = slide.Advance(kStart + 301 * kMs, 160);
    EXPECT_EQ(next.yOffset, 0);
    EXPECT_FALSE(next.hide);
}

TEST(StripSlide, KeepsTheStartOfASlideOutThatIsUnderWay) {
    StripSlide slide;
    slide.StartOut(kStart);
    slide.StartOut(kStart + 200 * kMs);
    EXPECT_TRUE(slide.Advance(kStart + 300 * kMs, 160).hide);
}

TEST(StripSlide, StartsASlideInAnew) {
    StripSlide slide;
    slide.StartIn(kStart);
    slide.StartIn(kStart + 200 * kMs);
    EXPECT_EQ(slide.Advance(kStart + 300 * kMs, 300).yOffset, -200);
}

TEST(StripSlide, LetsSlidingOutWinButHidesNothingThatComesIn) {
    StripSlide slide;
    slide.StartOut(kStart);
    slide.StartIn(kStart + 100 * kMs);
    EXPECT_EQ(slide.Advance(kStart + 150 * kMs, 300).yOffset, -150);
    const StripSlide::Step end = slide.Advance(kStart + 300 * kMs, 300);
    EXPECT_EQ(end.yOffset, -300);
    EXPECT_FALSE(end.hide);
    // What remains is the slide in; in double a fifth of the way is left by a hair less.
    EXPECT_EQ(slide.Advance(kStart + 340 * kMs, 300).yOffset, -59);
}

TEST(StripSlide, StopsAtOnce) {
    StripSlide slide;
    slide.StartIn(kStart);
    slide.StartOut(kStart);
    slide.Stop();
    EXPECT_FALSE(slide.IsSlidingOut());
    EXPECT_EQ(slide.Advance(kStart, 160).yOffset, 0);
}

}  // namespace
}  // namespace Corvanta::Video
