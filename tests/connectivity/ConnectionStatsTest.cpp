#include "connectivity/ConnectionStats.h"

#include <gtest/gtest.h>

#include <limits>

namespace Corvanta::Connectivity {
namespace {

TEST(ConnectionStats, HasNoFiguresAtFirst) {
    const ConnectionStats stats;
    const ConnectionFigures figures = stats.Get();
    EXPECT_EQ(figures.sample, 0U);
    EXPECT_EQ(figures.uploadBytes, 0.0);
    EXPECT_EQ(figures.downloadBytes, 0.0);
    EXPECT_EQ(figures.roundTripMs, 0);
    EXPECT_EQ(figures.jitterMs, 0);
}

TEST(ConnectionStats, KeepsRatesInBytesAndRoundsTimes) {
    ConnectionStats stats;
    stats.OnConnectionStats(1, 8000.0, 2, 4.0, 99.0, 2.5, 17.49);
    const ConnectionFigures figures = stats.Get();
    EXPECT_EQ(figures.uploadBytes, 1000.0);
    EXPECT_EQ(figures.downloadBytes, 0.5);
    EXPECT_EQ(figures.jitterMs, 3);
    EXPECT_EQ(figures.roundTripMs, 17);
}

TEST(ConnectionStats, CountsEachSample) {
    ConnectionStats stats;
    for (uint64_t sample = 1; sample <= 3; ++sample) {
        stats.OnConnectionStats(0, 0, 0, 0, 0, 0, 0);
        EXPECT_EQ(stats.Get().sample, sample);
    }
}

TEST(ConnectionStats, TakesTimesThatNoIntHolds) {
    ConnectionStats stats;
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    stats.OnConnectionStats(0, 0, 0, 0, 0, kNone, 1e300);
    EXPECT_EQ(stats.Get().jitterMs, 0);
    EXPECT_EQ(stats.Get().roundTripMs, std::numeric_limits<int32_t>::max());
    stats.OnConnectionStats(0, 0, 0, 0, 0, -1e300, -2.5);
    EXPECT_EQ(stats.Get().jitterMs, std::numeric_limits<int32_t>::min());
    EXPECT_EQ(stats.Get().roundTripMs, -3);
}

}  // namespace
}  // namespace Corvanta::Connectivity
