#include "host/SettledMetrics.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

using std::chrono::milliseconds;

constexpr SurfaceMetrics kSmall{640, 360, 1.0F};
constexpr SurfaceMetrics kLarge{1280, 720, 1.0F};
constexpr SettledMetrics::Clock::time_point kStart{std::chrono::seconds{100}};

TEST(SettledMetrics, SayNothingOfWhatIsKnown) {
    SettledMetrics settled;
    settled.SetTold(kSmall);
    EXPECT_FALSE(settled.TakeDue(kSmall, kStart));
    EXPECT_FALSE(settled.TakeDue(kSmall, kStart + milliseconds(5000)));
}

TEST(SettledMetrics, TellANewSizeOnceWhenItHasStoodStill) {
    SettledMetrics settled;
    settled.SetTold(kSmall);
    EXPECT_FALSE(settled.TakeDue(kLarge, kStart));
    EXPECT_FALSE(settled.TakeDue(kLarge, kStart + milliseconds(119)));
    EXPECT_EQ(settled.TakeDue(kLarge, kStart + milliseconds(120)), kLarge);
    EXPECT_FALSE(settled.TakeDue(kLarge, kStart + milliseconds(240)));
}

TEST(SettledMetrics, WaitWhileTheSizeGoesOnChanging) {
    SettledMetrics settled;
    settled.SetTold(kSmall);
    for (int step = 0; step < 50; ++step) {
        EXPECT_FALSE(settled.TakeDue({700 + step, 400, 1.0F}, kStart + milliseconds(100) * step));
    }
}

TEST(SettledMetrics, ForgetASizeThatWasTakenBack) {
    SettledMetrics settled;
    settled.SetTold(kSmall);
    EXPECT_FALSE(settled.TakeDue(kLarge, kStart));
    EXPECT_FALSE(settled.TakeDue(kSmall, kStart + milliseconds(50)));
    EXPECT_FALSE(settled.TakeDue(kLarge, kStart + milliseconds(130)));
    EXPECT_TRUE(settled.TakeDue(kLarge, kStart + milliseconds(250)));
}

TEST(SettledMetrics, TellAnotherScaleOfTheSameSize) {
    SettledMetrics settled;
    settled.SetTold(kSmall);
    const SurfaceMetrics scaled{640, 360, 2.0F};
    EXPECT_FALSE(settled.TakeDue(scaled, kStart));
    EXPECT_EQ(settled.TakeDue(scaled, kStart + milliseconds(120)), scaled);
}

}  // namespace
}  // namespace Corvanta::Host
