#include "ui/BarSlide.h"

#include <gtest/gtest.h>

namespace Corvanta::UI {
namespace {

constexpr int64_t kStart = 7'000'000'000;
constexpr int64_t kMs = 1'000'000;
// A bar of height 85 with 15 more to travel, at rest at 600.
constexpr int kRestY = 600;
constexpr int kOffset = 15;
constexpr int kHeight = 85;

class BarSlideTest : public ::testing::Test {
protected:
    // Where the bar is drawn, that many milliseconds after the start.
    int At(int64_t ms) { return AtNs(ms * kMs); }
    int AtNs(int64_t ns) { return slide_.Advance(kRestY, kOffset, kHeight, kStart + ns, gone_); }

    BarSlide slide_;
    bool gone_ = false;
};

TEST_F(BarSlideTest, RestsWithoutAnything) {
    EXPECT_EQ(At(0), kRestY);
    EXPECT_EQ(At(100'000), kRestY);
    EXPECT_FALSE(gone_);
}

TEST_F(BarSlideTest, RisesIntoPlaceIn250Milliseconds) {
    slide_.StartShowing(kStart);
    EXPECT_EQ(At(0), 700);
    EXPECT_EQ(At(25), 690);
    EXPECT_EQ(At(125), 650);
    EXPECT_EQ(At(249), 600);
    EXPECT_TRUE(slide_.IsSliding());
    EXPECT_EQ(At(250), kRestY);
    EXPECT_FALSE(slide_.IsSliding());
    EXPECT_FALSE(gone_);
}

TEST_F(BarSlideTest, CountsWholeMilliseconds) {
    slide_.StartShowing(kStart);
    EXPECT_EQ(AtNs(13 * kMs - 1), 695);  // 95.2 still to go, not 94.8
    EXPECT_EQ(AtNs(250 * kMs - 1), 600);
    EXPECT_TRUE(slide_.IsSliding());
}

TEST_F(BarSlideTest, TruncatesTowardZeroAlsoAboveTheWindow) {
    slide_.StartShowing(kStart);
    // 0.4 - 15 is -14.6.
    EXPECT_EQ(slide_.Advance(0, kOffset, kHeight, kStart + 249 * kMs, gone_), 1);
}

TEST_F(BarSlideTest, WaitsFourSecondsThenGoesIn250Milliseconds) {
    slide_.StartHiding(kStart);
    EXPECT_EQ(At(0), kRestY);
    EXPECT_EQ(At(4000), kRestY);
    EXPECT_EQ(At(4005), 602);
    EXPECT_EQ(At(4125), 650);
    EXPECT_EQ(At(4249), 699);
    EXPECT_TRUE(slide_.IsHiding());
    EXPECT_FALSE(gone_);
    EXPECT_EQ(At(4250), kRestY);
    EXPECT_TRUE(gone_);
    EXPECT_FALSE(slide_.IsHiding());
}

TEST_F(BarSlideTest, DoesNotRestartARunningCountdown) {
    slide_.StartHiding(kStart);
    slide_.StartHiding(kStart + 3000 * kMs);
    At(4250);
    EXPECT_TRUE(gone_);
}

TEST_F(BarSlideTest, RestartsTheCountdownWhenAsked) {
    slide_.StartHiding(kStart);
    slide_.RestartCountdown(kStart + 3000 * kMs);
    EXPECT_EQ(At(7000), kRestY);
    EXPECT_EQ(At(7125), 650);
    At(7250);
    EXPECT_TRUE(gone_);
}

TEST_F(BarSlideTest, RestartsASlideInWhenShownAgain) {
    slide_.StartShowing(kStart);
    slide_.StartShowing(kStart + 200 * kMs);
    EXPECT_EQ(At(325), 650);
}

TEST_F(BarSlideTest, AddsTheWayOutToTheWayInWhileBothRun) {
    slide_.StartHiding(kStart);
    slide_.StartShowing(kStart + 3950 * kMs);
    EXPECT_EQ(At(4075), 680);  // half of the way in, 0.3 of the way out
}

TEST_F(BarSlideTest, CancelsHidingAlone) {
    slide_.StartHiding(kStart);
    slide_.StartShowing(kStart);
    slide_.CancelHiding();
    EXPECT_FALSE(slide_.IsHiding());
    EXPECT_TRUE(slide_.IsSliding());
}

TEST_F(BarSlideTest, StopsBothWays) {
    slide_.StartHiding(kStart);
    slide_.StartShowing(kStart);
    slide_.Stop();
    EXPECT_EQ(At(4125), kRestY);
    EXPECT_FALSE(slide_.IsHiding());
    EXPECT_FALSE(slide_.IsSliding());
}

TEST_F(BarSlideTest, TakesOtherTimes) {
    slide_.times = {.animationMs = 100, .hideDelayMs = 1000};
    slide_.StartHiding(kStart);
    EXPECT_EQ(At(1050), 650);
    At(1100);
    EXPECT_TRUE(gone_);
}

}  // namespace
}  // namespace Corvanta::UI
